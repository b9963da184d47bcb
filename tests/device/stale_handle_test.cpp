// A handle that was closed and not cleared: the next `setup` that finds no controller goes on with
// it, as the tables of faults/ say for an empty bus. The real library would not survive this; the
// simulated bus does, and says so in its log.

#include "tests/support/device_link.h"

namespace {

using support::callLines;
using support::joined;
using support::Lines;

const Lines NameAndClaim = {"libusb_get_string_descriptor_ascii index 2 length 256 stale",
                            "libusb_free_device_list", "libusb_claim_interface 0 stale"};

class StaleHandle : public support::DeviceLink {
protected:
    /// Left by a refused claim; the controller has gone then.
    StaleHandle() {
        const int number = bus.plug({.refuseClaim = true});
        EXPECT_EQ(usb.setup(), 0);
        bus.unplug(number);
        bus.clearCalls();
        EXPECT_NE(MyLibusbDeviceHandle, nullptr);
        EXPECT_EQ(bus.openHandles(), 0);
    }

    /// A `setup` that looks at the bus with these calls goes on with the stale handle.
    void expectUsedAfter(const Lines& enumeration) {
        EXPECT_EQ(usb.setup(), 0);
        EXPECT_EQ(callLines(), joined({enumeration, NameAndClaim, {"libusb_close stale"}}));
    }
};

TEST_F(StaleHandle, IsUsedWhenOnlyForeignDevicesAreThere) {
    bus.plug({.vendor = 0x046D, .product = 0xC077});
    expectUsedAfter({"libusb_init", "libusb_get_device_list", "libusb_get_device_descriptor #1"});
}

TEST_F(StaleHandle, IsUsedWhenOpeningTheControllerIsRefused) {
    bus.plug({.refuseOpen = true});
    expectUsedAfter({"libusb_init", "libusb_get_device_list", "libusb_get_device_descriptor #1",
                     "libusb_open #1"});
}

TEST_F(StaleHandle, IsUsedWhenTheEnumerationFails) {
    fail("libusb_get_device_list", LIBUSB_ERROR_NO_MEM);
    expectUsedAfter(support::emptyBusLines());
}

TEST_F(StaleHandle, MakesTheVariantTheErrorOfItsNameRead) {
    fail("libusb_claim_interface", 0);
    EXPECT_EQ(usb.setup(), LIBUSB_ERROR_NO_DEVICE);
    EXPECT_EQ(callLines(), joined({support::emptyBusLines(), NameAndClaim}));
}

TEST_F(StaleHandle, IsClearedByRelease) {
    EXPECT_EQ(usb.release(), 1);
    EXPECT_EQ(callLines(), support::withStaleHandle(support::releaseLines()));
    EXPECT_EQ(MyLibusbDeviceHandle, nullptr);
}

}  // namespace
