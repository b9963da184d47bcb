#include <string>
#include <vector>

#include "tests/support/device_link.h"

namespace {

using simulator::Device;
using support::callLines;
using support::joined;
using support::Lines;

class Setup : public support::DeviceLink {};

TEST_F(Setup, OpensReadsTheNameFreesTheListAndClaimsInThisOrder) {
    bus.plugController();
    usb.setup();
    EXPECT_EQ(callLines(),
              (Lines{"libusb_init", "libusb_get_device_list", "libusb_get_device_descriptor #0",
                     "libusb_open #0", "libusb_get_string_descriptor_ascii index 2 length 256 #0",
                     "libusb_free_device_list", "libusb_claim_interface 0 #0"}));
}

TEST_F(Setup, LeavesTheControllerOpenAndClaimedAndNoList) {
    bus.plugController();
    usb.setup();
    EXPECT_NE(MyLibusbDeviceHandle, nullptr);
    EXPECT_EQ(bus.openHandles(), 1);
    EXPECT_EQ(bus.claimedInterfaces(), 1);
    EXPECT_EQ(bus.deviceLists(), 0);
}

TEST_F(Setup, KeepsTheDescriptorOfTheControllerThatItOpened) {
    bus.plug({.vendor = 0x046D, .product = 0xC077});
    bus.plugController();
    bus.plug({.vendor = 0x046D, .product = 0xC078});
    usb.setup();
    EXPECT_EQ(desc.idVendor, 0x0314);
    EXPECT_EQ(desc.idProduct, 0xE457);
    EXPECT_EQ(desc.iProduct, 2);
}

TEST_F(Setup, KeepsTheDescriptorOfTheLastForeignDevice) {
    bus.plug({.vendor = 0x046D, .product = 0xC077});
    bus.plug({.vendor = 0x1D6B, .product = 0x0002});
    EXPECT_EQ(usb.setup(), 0);
    EXPECT_EQ(desc.idVendor, 0x1D6B);
    EXPECT_EQ(desc.idProduct, 0x0002);
}

TEST_F(Setup, WithoutControllerLeavesItsDeviceListAllocatedEachTime) {
    for (int lists = 1; lists <= 3; ++lists) {
        EXPECT_EQ(usb.setup(), 0);
        EXPECT_EQ(bus.deviceLists(), lists);
    }
    EXPECT_NE(devs, nullptr);
}

TEST_F(Setup, EnumeratesAnewEachTimeAndNeverEndsTheLibrary) {
    EXPECT_EQ(usb.setup(), 0);
    bus.plugController();
    bus.clearCalls();
    for (int times = 0; times < 2; ++times) {
        EXPECT_EQ(usb.setup(), 2);
        usb.release();
    }
    const Lines once = joined({support::setupLines(), support::releaseLines()});
    EXPECT_EQ(callLines(), joined({once, once}));
}

TEST_F(Setup, UsesTheFirstOfTwoControllersEveryTime) {
    bus.plugController({}, "LUMADOT XL");
    bus.plugController();
    for (int times = 0; times < 3; ++times) {
        EXPECT_EQ(usb.setup(), 3);
        usb.release();
    }
    for (const simulator::Call& call : bus.calls()) {
        EXPECT_NE(call.device, 1) << call.function;
    }
}

TEST_F(Setup, UsesTheSecondControllerOnceTheFirstHasGone) {
    bus.plugController({}, "LUMADOT XL");
    bus.plugController();
    bus.unplug(0);
    EXPECT_EQ(usb.setup(), 2);
    EXPECT_EQ(callLines(), support::aboutDevice(1, support::setupLines()));
}

TEST_F(Setup, IgnoresTheResultOfTheInitialisation) {
    bus.plugController();
    fail("libusb_init", LIBUSB_ERROR_OTHER);
    EXPECT_EQ(usb.setup(), 2);
}

TEST_F(Setup, IgnoresTheResultOfTheDescriptorRead) {
    bus.plug({.vendor = 0x046D, .product = 0xC077});
    bus.plugController();
    fail("libusb_get_device_descriptor", LIBUSB_ERROR_OTHER);
    EXPECT_EQ(usb.setup(), 2);
}

TEST_F(Setup, TakesANegativeCountOfDevicesForNone) {
    bus.plugController();
    fail("libusb_get_device_list", LIBUSB_ERROR_NO_MEM);
    EXPECT_EQ(usb.setup(), 0);
    EXPECT_EQ(callLines(), (Lines{"libusb_init", "libusb_get_device_list"}));
    EXPECT_EQ(bus.deviceLists(), 0);
}

TEST_F(Setup, LooksAtNoDeviceBehindTheCount) {
    bus.plug({.vendor = 0x046D, .product = 0xC077});
    bus.plugController();
    fail("libusb_get_device_list", 1);
    EXPECT_EQ(usb.setup(), 0);
    EXPECT_EQ(callLines(),
              (Lines{"libusb_init", "libusb_get_device_list", "libusb_get_device_descriptor #0"}));
}

TEST_F(Setup, WithTheClaimRefusedClosesTheHandleAndDoesNotClearIt) {
    bus.plug({.refuseClaim = true});
    EXPECT_EQ(usb.setup(), 0);
    EXPECT_EQ(callLines(), joined({support::setupLines(), {"libusb_close #0"}}));
    EXPECT_EQ(bus.openHandles(), 0);
    EXPECT_NE(MyLibusbDeviceHandle, nullptr);
}

TEST_F(Setup, TakesOnlyANegativeClaimForRefused) {
    bus.plugController();
    fail("libusb_claim_interface", 1);
    EXPECT_EQ(usb.setup(), 2);
}

TEST_F(Setup, WithANameReadReturningZeroIsOpenAndClaimedAndSaysNone) {
    bus.plug({.stringResult = 0});
    EXPECT_EQ(usb.setup(), 0);
    EXPECT_NE(MyLibusbDeviceHandle, nullptr);
    EXPECT_EQ(bus.openHandles(), 1);
    EXPECT_EQ(bus.claimedInterfaces(), 1);
    EXPECT_EQ(bus.deviceLists(), 0);
}

TEST_F(Setup, CannotClaimAControllerThatIsStillHeldSinceANameReadReturnedZero) {
    bus.plugController();
    fail("libusb_get_string_descriptor_ascii", 0);
    EXPECT_EQ(usb.setup(), 0);
    bus.clearCalls();
    EXPECT_EQ(usb.setup(), 0);
    EXPECT_EQ(callLines(), joined({support::setupLines(), {"libusb_close #0"}}));
    EXPECT_EQ(bus.openHandles(), 1);
    EXPECT_EQ(bus.claimedInterfaces(), 1);
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

constexpr auto ErrorName = [](const auto& test) { return "Error" + std::to_string(-test.param); };
INSTANTIATE_TEST_SUITE_P(Every, NameReadError, testing::Range(-12, 0), ErrorName);
INSTANTIATE_TEST_SUITE_P(Other, NameReadError, testing::Values(-99), ErrorName);

class Release : public support::DeviceLink {
protected:
    Release() {
        bus.plugController();
        usb.setup();
        bus.clearCalls();
    }
};

TEST_F(Release, ReleasesTheInterfaceClosesAndClearsTheHandle) {
    EXPECT_EQ(usb.release(), 1);
    EXPECT_EQ(callLines(), (Lines{"libusb_release_interface 0 #0", "libusb_close #0"}));
    expectReleased();
}

TEST_F(Release, IgnoresTheResultOfTheLibrary) {
    fail("libusb_release_interface", LIBUSB_ERROR_NO_DEVICE);
    EXPECT_EQ(usb.release(), 1);
    EXPECT_EQ(callLines(), (Lines{"libusb_release_interface 0 #0", "libusb_close #0"}));
    expectReleased();
}

TEST_F(Release, OfAControllerThatHasGoneClosesAllTheSame) {
    bus.unplug(0);
    EXPECT_EQ(usb.release(), 1);
    EXPECT_EQ(callLines(), (Lines{"libusb_release_interface 0 #0", "libusb_close #0"}));
    expectReleased();
}

}  // namespace
