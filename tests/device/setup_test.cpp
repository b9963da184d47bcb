// What `setup` makes of the devices on the bus. What comes of its failing calls stands in the
// tables of faults/.

#include <string>
#include <vector>

#include "tests/support/device_link.h"

namespace {

using support::callLines;
using support::Lines;

const simulator::Device Mouse = {.vendor = 0x046D, .product = 0xC077, .productString = "Mouse"};
const simulator::Device SameVendor = {.vendor = 0x0314, .product = 0xE456};
const simulator::Device SameProduct = {.vendor = 0x0315, .product = 0xE457};

class Setup : public support::DeviceLink {};

TEST_F(Setup, LooksAtEachDeviceUntilTheFirstControllerAndUsesThatOne) {
    bus.plug(Mouse);
    bus.plug(SameVendor);
    bus.plug(SameProduct);
    bus.plugController({}, "LUMADOT XL");
    bus.plugController();
    for (int times = 0; times < 2; ++times) {
        bus.clearCalls();
        EXPECT_EQ(usb.setup(), 3);
        EXPECT_EQ(callLines(),
                  (Lines{"libusb_init", "libusb_get_device_list", "libusb_get_device_descriptor #0",
                         "libusb_get_device_descriptor #1", "libusb_get_device_descriptor #2",
                         "libusb_get_device_descriptor #3", "libusb_open #3",
                         "libusb_get_string_descriptor_ascii index 2 length 256 #3",
                         "libusb_free_device_list", "libusb_claim_interface 0 #3"}));
        EXPECT_EQ(desc.idVendor, 0x0314);
        EXPECT_EQ(desc.idProduct, 0xE457);
        EXPECT_EQ(desc.iProduct, 2);
        usb.release();
    }
}

TEST_F(Setup, UsesTheSecondControllerOnceTheFirstHasGone) {
    bus.plugController({}, "LUMADOT XL");
    bus.plugController();
    bus.unplug(0);
    EXPECT_EQ(usb.setup(), 2);
    EXPECT_EQ(callLines(), support::aboutDevice(1, support::setupLines()));
}

TEST_F(Setup, FindsNothingAmongForeignDevicesAndKeepsTheDescriptorOfTheLastOne) {
    bus.plug(SameVendor);
    bus.plug(SameProduct);
    EXPECT_EQ(usb.setup(), 0);
    EXPECT_EQ(callLines(),
              (Lines{"libusb_init", "libusb_get_device_list", "libusb_get_device_descriptor #0",
                     "libusb_get_device_descriptor #1"}));
    EXPECT_EQ(desc.idVendor, 0x0315);
    EXPECT_EQ(desc.idProduct, 0xE457);
    EXPECT_EQ(bus.deviceLists(), 1);
}

TEST_F(Setup, TriesNoOtherControllerWhenTheFirstOneRefusesToOpen) {
    bus.plug({.refuseOpen = true});
    bus.plugController();
    EXPECT_EQ(usb.setup(), 0);
    EXPECT_EQ(callLines(), (Lines{"libusb_init", "libusb_get_device_list",
                                  "libusb_get_device_descriptor #0", "libusb_open #0"}));
}

TEST_F(Setup, LooksAtNoDeviceBehindTheCount) {
    bus.plug(Mouse);
    bus.plugController();
    fail("libusb_get_device_list", 1);
    EXPECT_EQ(usb.setup(), 0);
    EXPECT_EQ(callLines(),
              (Lines{"libusb_init", "libusb_get_device_list", "libusb_get_device_descriptor #0"}));
}

TEST_F(Setup, TakesOnlyANegativeClaimForRefused) {
    bus.plugController();
    fail("libusb_claim_interface", 1);
    EXPECT_EQ(usb.setup(), 2);
}

TEST_F(Setup, SaysNoneOfAControllerThatHasNoReadableNameAndCannotBeClaimed) {
    bus.plug({.stringResult = LIBUSB_ERROR_PIPE, .refuseClaim = true});
    EXPECT_EQ(usb.setup(), 0);
    EXPECT_EQ(callLines(), support::joined({support::setupLines(), {"libusb_close #0"}}));
}

struct NameCase {
    std::string name;
    std::string product;
    int variant;
};

std::ostream& operator<<(std::ostream& stream, const NameCase& each) { return stream << each.name; }

class ProductName : public support::DeviceLink, public testing::WithParamInterface<NameCase> {};

TEST_P(ProductName, MakesTheVariant) {
    bus.plug({.productString = GetParam().product});
    EXPECT_EQ(usb.setup(), GetParam().variant);
}

INSTANTIATE_TEST_SUITE_P(
    Of, ProductName,
    testing::Values(
        NameCase{"Standard", "LUMADOT", 2}, NameCase{"Xl", "LUMADOT XL", 3},
        NameCase{"StandardAndABlank", "LUMADOT ", 1}, NameCase{"XlAndABlank", "LUMADOT XL ", 1},
        NameCase{"BlankAndStandard", " LUMADOT", 1}, NameCase{"XlWithTwoBlanks", "LUMADOT  XL", 1},
        NameCase{"XlWithoutBlank", "LUMADOTXL", 1}, NameCase{"StandardInLowerCase", "lumadot", 1},
        NameCase{"XlInLowerCase", "lumadot xl", 1}, NameCase{"StandardInMixedCase", "Lumadot", 1},
        NameCase{"XlWithLowerCaseEnd", "LUMADOT xl", 1},
        NameCase{"BeginningOfStandard", "LUMADO", 1}, NameCase{"BeginningOfXl", "LUMADOT X", 1},
        NameCase{"OneCharacter", "L", 1}, NameCase{"Unknown", "SOMETHING ELSE", 1},
        NameCase{"Of255Characters", std::string(255, 'L'), 1},
        NameCase{"Of300Characters", std::string(300, 'L'), 1}),
    [](const auto& test) { return test.param.name; });

class NameReadError : public support::DeviceLink, public testing::WithParamInterface<int> {};

TEST_P(NameReadError, IsPassedThroughWithTheControllerOpenAndClaimed) {
    bus.plug({.stringResult = GetParam()});
    EXPECT_EQ(usb.setup(), GetParam());
    EXPECT_NE(MyLibusbDeviceHandle, nullptr);
    EXPECT_EQ(bus.openHandles(), 1);
    EXPECT_EQ(bus.claimedInterfaces(), 1);
    EXPECT_EQ(bus.deviceLists(), 0);
}

INSTANTIATE_TEST_SUITE_P(Sample, NameReadError, testing::Values(-1, -9, -12, -99),
                         [](const auto& test) { return "Error" + std::to_string(-test.param); });

TEST_F(Setup, IsFollowedByAReleaseThatAlwaysReturnsOne) {
    bus.plugController();
    usb.setup();
    bus.clearCalls();
    fail("libusb_release_interface", LIBUSB_ERROR_NO_DEVICE);
    EXPECT_EQ(usb.release(), 1);
    EXPECT_EQ(callLines(), support::releaseLines());
    expectReleased();
}

}  // namespace
