// The operations that send one frame and report little or nothing.

#include <chrono>
#include <climits>
#include <string>
#include <vector>

#include "device/logo_frame.h"
#include "tests/support/device_link.h"

namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;
using support::byteText;
using support::callLines;
using support::joined;
using support::Lines;

/// A sender with one controller on the bus.
class Sender : public support::DeviceLink {
protected:
    /// The one line between `setup` and `release`.
    void expectSent(const std::string& line) {
        EXPECT_EQ(callLines(), joined({support::setupLines(), {line}, support::releaseLines()}));
    }

    std::shared_ptr<simulator::Controller> controller = bus.plugController();
};

class SendUsb : public Sender {};

TEST_F(SendUsb, SendsTheWholeBufferAndLeavesItAsItWas) {
    std::vector<unsigned char> buffer = {0x02, 0xC3, 0xE8, 0x04, 0x00, 0xFF};
    EXPECT_TRUE(usb.sendUSB(buffer.data(), 6));
    expectSent("out 0x01 6 1000ms #0: 02 C3 E8 04 00 FF");
    EXPECT_THAT(buffer, testing::ElementsAre(0x02, 0xC3, 0xE8, 0x04, 0x00, 0xFF));
}

TEST_F(SendUsb, SendsOnlyAsMuchAsItIsTold) {
    std::vector<unsigned char> buffer = {0x02, 0xC3, 0xE8, 0x04};
    EXPECT_TRUE(usb.sendUSB(buffer.data(), 2));
    expectSent("out 0x01 2 1000ms #0: 02 C3");
}

TEST_F(SendUsb, SendsABufferLongerThanAFrame) {
    std::vector<unsigned char> buffer(5000);
    buffer.back() = 0x5A;
    EXPECT_TRUE(usb.sendUSB(buffer.data(), 5000));
    expectSent("out 0x01 5000 1000ms #0: 00*4999 5A");
}

TEST_F(SendUsb, SendsAnEmptyBuffer) {
    unsigned char nothing = 0;
    EXPECT_TRUE(usb.sendUSB(&nothing, 0));
    expectSent("out 0x01 0 1000ms #0");
}

TEST_F(SendUsb, ReportsTrueAfterASecondWhenTheControllerNeverAcceptsData) {
    bus.reset();
    bus.plug({});  // A device with no controller behind it.
    unsigned char byte = 0x81;
    const auto before = bus.now();
    EXPECT_TRUE(usb.sendUSB(&byte, 1));
    EXPECT_GE(bus.now() - before, 1000U);
    expectSent("out 0x01 1 1000ms #0");
    EXPECT_EQ(bus.calls().at(7).result, LIBUSB_ERROR_TIMEOUT);
    expectReleased();
}

TEST_F(SendUsb, ReportsTrueWhenTheControllerIsPulledOutDuringTheTransfer) {
    bus.inject({.function = "libusb_bulk_transfer", .unplug = true});
    unsigned char byte = 0x81;
    EXPECT_TRUE(usb.sendUSB(&byte, 1));
    expectSent("out 0x01 1 1000ms #0");
    expectReleased();
}

class SendUsbWithTransferError : public Sender, public testing::WithParamInterface<int> {};

TEST_P(SendUsbWithTransferError, ReportsTrueAndReleases) {
    failTransfer(0x01, GetParam());
    unsigned char byte = 0x81;
    EXPECT_TRUE(usb.sendUSB(&byte, 1));
    expectReleased();
}

INSTANTIATE_TEST_SUITE_P(Every, SendUsbWithTransferError, testing::Range(-12, 0),
                         [](const auto& test) { return "Error" + std::to_string(-test.param); });

struct CommandCase {
    std::string name;
    int code;
    int argument;
    std::string line;
};

class SendConfigCmd : public Sender, public testing::WithParamInterface<CommandCase> {};

TEST_P(SendConfigCmd, SendsCodeAndArgumentAsRawBytes) {
    EXPECT_TRUE(usb.sendConfigCmd(static_cast<char>(GetParam().code),
                                  static_cast<char>(GetParam().argument)));
    expectSent("out 0x01 2052 1000ms #0: 81 C3 E7 FF " + GetParam().line);
}

INSTANTIATE_TEST_SUITE_P(Sample, SendConfigCmd,
                         testing::Values(CommandCase{"Reset", 0x00, 0, "00*2048"},
                                         CommandCase{"Store", 0x01, 0, "01 00*2047"},
                                         CommandCase{"SelectFirstMode", 0x02, 0, "02 00*2047"},
                                         CommandCase{"SelectLastMode", 0x02, 15, "02 0F 00*2046"},
                                         CommandCase{"SelectFirstPreset", 0x03, 0, "03 00*2047"},
                                         CommandCase{"SelectLastPreset", 0x03, 8, "03 08 00*2046"},
                                         CommandCase{"StorePalette", 0x12, 0, "12 00*2047"},
                                         CommandCase{"Argument127", 0x02, 0x7F, "02 7F 00*2046"},
                                         CommandCase{"Argument128", 0x02, 0x80, "02 80 00*2046"},
                                         CommandCase{"Argument129", 0x02, 0x81, "02 81 00*2046"},
                                         CommandCase{"Argument255", 0x02, 0xFF, "02 FF 00*2046"},
                                         CommandCase{"Code128", 0x80, 0, "80 00*2047"},
                                         CommandCase{"Code129", 0x81, 0x01, "81 01 00*2046"},
                                         CommandCase{"Code255", 0xFF, 0xFE, "FF FE 00*2046"}),
                         [](const auto& test) { return test.param.name; });

struct BrightnessCase {
    std::string name;
    int value;
    std::string sent;
};

class SetBrightness : public Sender, public testing::WithParamInterface<BrightnessCase> {};

TEST_P(SetBrightness, SendsTheClampedValueInByte17) {
    usb.setBrightness(GetParam().value);
    expectSent("out 0x01 2052 1000ms #0: 81 C3 E7 FF 08 00*12 " + GetParam().sent + " 00*2034");
}

INSTANTIATE_TEST_SUITE_P(
    Sample, SetBrightness,
    testing::Values(BrightnessCase{"Smallest", INT_MIN, "0A"}, BrightnessCase{"Minus1", -1, "0A"},
                    BrightnessCase{"Zero", 0, "0A"}, BrightnessCase{"Five", 5, "0A"},
                    BrightnessCase{"Nine", 9, "0A"}, BrightnessCase{"Ten", 10, "0A"},
                    BrightnessCase{"Eleven", 11, "0B"}, BrightnessCase{"Thirty", 30, "1E"},
                    BrightnessCase{"Of127", 127, "7F"}, BrightnessCase{"Of128", 128, "80"},
                    BrightnessCase{"Of254", 254, "FE"}, BrightnessCase{"Of255", 255, "FF"},
                    BrightnessCase{"Of256", 256, "FF"}, BrightnessCase{"Of300", 300, "FF"},
                    BrightnessCase{"Largest", INT_MAX, "FF"}),
    [](const auto& test) { return test.param.name; });

class BrightnessPause : public Sender {};

TEST_F(BrightnessPause, Of50MsFollowsTheFrame) {
    usb.setBrightness(30);
    EXPECT_GE(steady_clock::now() - bus.calls().back().at, 50ms);
}

TEST_F(BrightnessPause, Of50MsIsMadeWithoutControllerToo) {
    bus.unplug(0);
    usb.setBrightness(30);
    EXPECT_GE(steady_clock::now() - bus.calls().back().at, 50ms);
    EXPECT_EQ(callLines(), support::emptyBusLines());
}

TEST_F(BrightnessPause, KeepsSuccessiveFrames50MsApart) {
    usb.setBrightness(30);
    usb.setBrightness(31);
    EXPECT_GE(bus.calls().at(17).at - bus.calls().at(7).at, 50ms);
    EXPECT_EQ(bus.calls().at(17).function, "libusb_bulk_transfer");
}

class SendPal : public Sender {};

TEST_F(SendPal, SendsAll48BytesBehindTheMark) {
    unsigned char colours[48] = {0x00, 0x00, 0x00, 0x80, 0x00, 0x00, 0xFF, 0x00, 0x00, 0xFF,
                                 0x00, 0xFF, 0x00, 0x80, 0x80, 0x00, 0x80, 0x00, 0x00, 0xFF,
                                 0x00, 0x00, 0xFF, 0xFF, 0x00, 0x00, 0x80, 0x80, 0x00, 0x80,
                                 0x00, 0x00, 0xFF, 0x40, 0x40, 0x40, 0x80, 0x80, 0x80, 0x80,
                                 0x80, 0x00, 0xFF, 0xFF, 0x00, 0xFF, 0xFF, 0xFF};
    usb.sendPal(colours);
    expectSent(
        "out 0x01 2052 1000ms #0: 81 C3 E7 FF 04 00 01 "
        "00 00 00 80 00 00 FF 00 00 FF 00 FF 00 80 80 00 80 00 00 FF 00 00 FF FF "
        "00 00 80 80 00 80 00 00 FF 40 40 40 80 80 80 80 80 00 FF FF 00 FF FF FF 00*1997");
}

TEST_F(SendPal, SendsABlackPalette) {
    unsigned char colours[48] = {};
    usb.sendPal(colours);
    expectSent("out 0x01 2052 1000ms #0: 81 C3 E7 FF 04 00 01 00*2045");
}

class SendLogo : public Sender {};

TEST_F(SendLogo, SendsTheWholeImage) {
    EXPECT_TRUE(usb.sendLogo());
    ASSERT_TRUE(controller->image().has_value());
    EXPECT_THAT(*controller->image(), testing::ElementsAreArray(logoFrame()));
    EXPECT_EQ(byteText(std::span(*controller->image()).first(20)),
              "81 C3 E7 00 00 7F 00 7F 00 7F 00 7F 00 7F 00 7F 00 7F 00 7F");
}

TEST_F(SendLogo, LeavesTheBuiltInImageAsItWas) {
    const ImageFrame before = logoFrame();
    usb.sendLogo();
    EXPECT_EQ(logoFrame(), before);
}

}  // namespace
