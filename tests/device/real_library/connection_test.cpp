// Finding, claiming, giving back and losing a controller.

#include "tests/device/real_library/real_library.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <string>

namespace {

using namespace support;
using testing::ElementsAre;
using testing::IsEmpty;

// Finding and opening

struct Name {
    const char* what;
    std::string product;
    int variant;
};

class RealLibraryProduct : public RealLibrary, public testing::WithParamInterface<Name> {};

TEST_P(RealLibraryProduct, IsToldByItsName) {
    const MockedUsbfs controller({.product = GetParam().product});
    EXPECT_EQ(usb_.setup(), GetParam().variant);
    EXPECT_EQ(usb_.release(), 1);
    EXPECT_EQ(MyLibusbDeviceHandle, nullptr);
}

INSTANTIATE_TEST_SUITE_P(Names, RealLibraryProduct,
                         testing::Values(Name{"standard", "LUMADOT", 2},
                                         Name{"xl", "LUMADOT XL", 3},
                                         Name{"trailing_blank", "LUMADOT XL ", 1},
                                         Name{"lower_case", "lumadot", 1},
                                         Name{"another", "Pinball display", 1}),
                         [](const auto& row) { return row.param.what; });

TEST_F(RealLibrary, UnreadableProductNameIsAnErrorCodeAndTheControllerIsOpen) {
    const MockedUsbfs controller;
    controller->setFaults({.stallStrings = true});
    EXPECT_EQ(usb_.setup(), -9);
    EXPECT_EQ(claimByAnotherProgram(), LIBUSB_ERROR_BUSY);
    usb_.release();
}

TEST_F(RealLibrary, EmptyProductNameIsNoControllerAlthoughItIsOpen) {
    const MockedUsbfs controller({.product = ""});
    EXPECT_EQ(usb_.setup(), 0);
    EXPECT_EQ(claimByAnotherProgram(), LIBUSB_ERROR_BUSY);
    usb_.release();
}

TEST_F(RealLibrary, WithoutControllerNothingHappens) {
    Bytes packet(64);
    std::array<unsigned char, 48> colours{};
    std::array<char, 9> version{};
    std::array<char, 64> uid{};

    EXPECT_EQ(usb_.setup(), 0);
    EXPECT_EQ(MyLibusbDeviceHandle, nullptr);
    EXPECT_FALSE(usb_.sendUSB(packet.data(), 64));
    EXPECT_FALSE(usb_.sendConfigCmd(0x01, 0));
    EXPECT_FALSE(usb_.sendLogo());
    usb_.sendPal(colours.data());
    usb_.setBrightness(100);
    usb_.sendConfig(record(OtherRecord));
    usb_.getUniqueId(uid.data());
    EXPECT_EQ(bytesOf(usb_.getSettings(record(OtherRecord), version.data())),
              bytesOf(record(OtherRecord)));
    EXPECT_STREQ(version.data(), "");
    EXPECT_STREQ(uid.data(), "");
}

TEST_F(RealLibrary, OfTwoControllersTheFirstOneListedIsUsed) {
    const MockedUsbfs one;
    const MockedUsbfs two;
    ASSERT_TRUE(usb_.sendConfigCmd(0x02, 7));

    libusb_device** list = nullptr;
    const auto count = libusb_get_device_list(nullptr, &list);
    const auto first = std::find_if(list, list + count, [&](libusb_device* device) {
        const int address = libusb_get_device_address(device);
        return address == one.address() || address == two.address();
    });
    ASSERT_NE(first, list + count);
    const bool oneIsFirst = libusb_get_device_address(*first) == one.address();
    libusb_free_device_list(list, 1);

    const MockedUsbfs& used = oneIsFirst ? one : two;
    const MockedUsbfs& unused = oneIsFirst ? two : one;
    EXPECT_THAT(used->received(), ElementsAre(frame({0x81, 0xC3, 0xE7, 0xFF, 0x02, 7})));
    EXPECT_THAT(unused->transfers(), IsEmpty());
}

// Claiming and giving back

TEST_F(RealLibrary, InterfaceIsHeldFromSetupToRelease) {
    const MockedUsbfs controller;
    ASSERT_EQ(usb_.setup(), 2);
    EXPECT_EQ(claimByAnotherProgram(), LIBUSB_ERROR_BUSY);
    usb_.release();
    EXPECT_EQ(claimByAnotherProgram(), 0);
}

TEST_F(RealLibrary, ControllerThatAnotherProgramHoldsIsNoController) {
    const MockedUsbfs controller;
    OtherProgram other;
    ASSERT_TRUE(other.hasOpened());
    ASSERT_EQ(other.claim(), 0);
    EXPECT_FALSE(usb_.sendConfigCmd(0x01, 0));
    MyLibusbDeviceHandle = nullptr;

    other.release();
    EXPECT_TRUE(usb_.sendConfigCmd(0x02, 5));
    EXPECT_THAT(controller->received(), ElementsAre(frame({0x81, 0xC3, 0xE7, 0xFF, 0x02, 5})));
}

TEST_F(RealLibrary, RefusedClaimIsNoController) {
    const MockedUsbfs controller;
    controller->setFaults({.claimError = EACCES});
    EXPECT_EQ(usb_.setup(), 0);
    EXPECT_FALSE(usb_.sendLogo());
    EXPECT_THAT(controller->transfers(), IsEmpty());
}

TEST_F(RealLibrary, OperationsInARowEachReachTheBoard) {
    const MockedUsbfs controller;
    EXPECT_TRUE(usb_.sendConfigCmd(0x02, 3));
    EXPECT_TRUE(usb_.sendConfigCmd(0x01, 0));
    std::array<char, 9> version{};
    EXPECT_EQ(usb_.getSettings({}, version.data()).inputMode, 3);
    EXPECT_THAT(controller->received(), ElementsAre(frame({0x81, 0xC3, 0xE7, 0xFF, 0x02, 3}),
                                                    frame({0x81, 0xC3, 0xE7, 0xFF, 0x01}),
                                                    frame({0x81, 0xC3, 0xE7, 0xFF, 0x10})));
    EXPECT_EQ(controller->board([](auto& board) { return board.permanent()[0]; }), 3);
}

// Unplugging

TEST_F(RealLibrary, UnpluggedControllerIsNoLongerFound) {
    MockedUsbfs controller;
    ASSERT_TRUE(usb_.sendConfigCmd(0x02, 1));
    controller.unplug();
    EXPECT_FALSE(usb_.sendConfigCmd(0x02, 2));
    EXPECT_EQ(controller->received().size(), 1U);
}

TEST_F(RealLibrary, ControllerThatIsPluggedInAgainIsFound) {
    MockedUsbfs first;
    ASSERT_EQ(usb_.setup(), 2);
    usb_.release();
    first.unplug();
    ASSERT_EQ(usb_.setup(), 0);
    const MockedUsbfs second({.product = "LUMADOT XL"});
    EXPECT_EQ(usb_.setup(), 3);
    usb_.release();
}

TEST_F(RealLibrary, ControllerThatIsGoneButStillListedIsNoController) {
    const MockedUsbfs controller;
    controller->pullOut();
    EXPECT_FALSE(usb_.sendConfigCmd(0x02, 1));
    EXPECT_THAT(controller->transfers(), IsEmpty());
}

TEST_F(RealLibrary, ReleaseOfAnUnpluggedControllerIsSurvived) {
    MockedUsbfs controller;
    ASSERT_EQ(usb_.setup(), 2);
    controller.unplug();
    EXPECT_EQ(usb_.release(), 1);
    EXPECT_EQ(MyLibusbDeviceHandle, nullptr);
}

}  // namespace
