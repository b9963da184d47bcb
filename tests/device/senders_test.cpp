// The operations that send one frame and report little or nothing; the frames themselves are those
// of frames_test.cpp.

#include <string>
#include <vector>

#include "device/logo_frame.h"
#include "tests/support/device_link.h"

namespace {

using support::byteText;
using support::callLines;

/// A sender with one controller on the bus.
class Sender : public support::DeviceLink {
protected:
    /// The one line between `setup` and `release`.
    void expectSent(const std::string& line) {
        EXPECT_EQ(callLines(), support::connection({line}));
    }

    std::shared_ptr<simulator::Controller> controller = bus.plugController();
};

class SendUsb : public Sender {};

TEST_F(SendUsb, SendsOnlyAsMuchAsItIsToldAndLeavesTheBufferAsItWas) {
    std::vector<unsigned char> buffer = {0x02, 0xC3, 0xE8, 0x04};
    EXPECT_TRUE(usb.sendUSB(buffer.data(), 2));
    expectSent("out 0x01 2 1000ms #0: 02 C3");
    EXPECT_THAT(buffer, testing::ElementsAre(0x02, 0xC3, 0xE8, 0x04));
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

TEST_F(Sender, SendsACommandsCodeAndArgumentAsRawBytes) {
    EXPECT_TRUE(usb.sendConfigCmd('\x81', '\xFE'));
    expectSent("out 0x01 2052 1000ms #0: 81 C3 E7 FF 81 FE 00*2046");
}

TEST_F(Sender, SendsTheWholeLogo) {
    EXPECT_TRUE(usb.sendLogo());
    ASSERT_TRUE(controller->image().has_value());
    EXPECT_EQ(byteText(*controller->image()), byteText(logoFrame()));
    EXPECT_EQ(byteText(std::span(*controller->image()).first(20)),
              "81 C3 E7 00 00 7F 00 7F 00 7F 00 7F 00 7F 00 7F 00 7F 00 7F");
}

}  // namespace
