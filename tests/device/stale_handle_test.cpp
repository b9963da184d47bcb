// A handle that was closed and not cleared: the next `setup` that finds no controller goes on with
// it. The real library would not survive this; the simulated bus does, and says so in its log.

#include "tests/device/operations.h"
#include "tests/support/device_link.h"

namespace {

using support::callLines;
using support::joined;
using support::Lines;
using support::withStaleHandle;

/// What `setup` calls on an empty bus when it goes on with the stale handle.
Lines staleSetupLines() {
    return {"libusb_init", "libusb_get_device_list",
            "libusb_get_string_descriptor_ascii index 2 length 256 stale",
            "libusb_free_device_list", "libusb_claim_interface 0 stale"};
}

class StaleHandle : public support::DeviceLink {
protected:
    void leaveByRefusedClaim() {
        const int number = bus.plug({.refuseClaim = true});
        EXPECT_EQ(usb.setup(), 0);
        leave(number);
    }
    void leaveByFailedSettingsRead() {
        const int number = bus.plug({});  // Never answers.
        dialogs.expectMessage("Firmware version not supported ! Please upgrade !", "Error");
        usb.getSettings(config, versionString);
        leave(number);
    }
    void leave(int number) {
        bus.unplug(number);
        bus.clearCalls();
        stale = MyLibusbDeviceHandle;
        ASSERT_NE(stale, nullptr);
        ASSERT_EQ(bus.openHandles(), 0);
    }

    libusb_device_handle* stale = nullptr;
};

TEST_F(StaleHandle, OfARefusedClaimIsUsedByTheNextSetupOnAnEmptyBus) {
    leaveByRefusedClaim();
    EXPECT_EQ(usb.setup(), 0);
    EXPECT_EQ(callLines(), joined({staleSetupLines(), {"libusb_close stale"}}));
    EXPECT_EQ(MyLibusbDeviceHandle, stale);
    EXPECT_EQ(bus.deviceLists(), 0);
}

TEST_F(StaleHandle, OfAFailedSettingsReadIsUsedByTheNextSetupOnAnEmptyBus) {
    leaveByFailedSettingsRead();
    EXPECT_EQ(usb.setup(), 0);
    EXPECT_EQ(callLines(), joined({staleSetupLines(), {"libusb_close stale"}}));
    EXPECT_EQ(MyLibusbDeviceHandle, stale);
    EXPECT_EQ(bus.deviceLists(), 0);
}

TEST_F(StaleHandle, IsUsedWhenOnlyForeignDevicesAreThere) {
    leaveByRefusedClaim();
    bus.plug({.vendor = 0x046D, .product = 0xC077});
    EXPECT_EQ(usb.setup(), 0);
    EXPECT_EQ(
        callLines(),
        (Lines{"libusb_init", "libusb_get_device_list", "libusb_get_device_descriptor #1",
               "libusb_get_string_descriptor_ascii index 2 length 256 stale",
               "libusb_free_device_list", "libusb_claim_interface 0 stale", "libusb_close stale"}));
}

TEST_F(StaleHandle, IsUsedWhenOpeningTheControllerIsRefused) {
    leaveByRefusedClaim();
    bus.plug({.refuseOpen = true});
    EXPECT_EQ(usb.setup(), 0);
    EXPECT_EQ(
        callLines(),
        (Lines{"libusb_init", "libusb_get_device_list", "libusb_get_device_descriptor #1",
               "libusb_open #1", "libusb_get_string_descriptor_ascii index 2 length 256 stale",
               "libusb_free_device_list", "libusb_claim_interface 0 stale", "libusb_close stale"}));
}

TEST_F(StaleHandle, IsUsedWhenTheEnumerationFails) {
    leaveByRefusedClaim();
    fail("libusb_get_device_list", LIBUSB_ERROR_NO_MEM);
    EXPECT_EQ(usb.setup(), 0);
    EXPECT_EQ(callLines(), joined({staleSetupLines(), {"libusb_close stale"}}));
}

TEST_F(StaleHandle, MakesTheVariantTheErrorOfItsNameRead) {
    leaveByRefusedClaim();
    fail("libusb_claim_interface", 0);
    EXPECT_EQ(usb.setup(), LIBUSB_ERROR_NO_DEVICE);
    EXPECT_EQ(callLines(), staleSetupLines());
}

TEST_F(StaleHandle, GivesWayToAControllerThatIsFound) {
    leaveByRefusedClaim();
    bus.plugController();
    EXPECT_EQ(usb.setup(), 2);
    EXPECT_EQ(callLines(), support::aboutDevice(1, support::setupLines()));
    EXPECT_NE(MyLibusbDeviceHandle, stale);
    usb.release();
    expectReleased();
}

TEST_F(StaleHandle, IsClearedByRelease) {
    leaveByRefusedClaim();
    EXPECT_EQ(usb.release(), 1);
    EXPECT_EQ(callLines(), (Lines{"libusb_release_interface 0 stale", "libusb_close stale"}));
    EXPECT_EQ(MyLibusbDeviceHandle, nullptr);
    bus.clearCalls();
    EXPECT_EQ(usb.setup(), 0);
    EXPECT_EQ(callLines(), support::emptyBusLines());
}

TEST_F(StaleHandle, IsNotLeftByARead) {
    bus.plugController();
    usb.getSettings(config, versionString);
    bus.unplug(0);
    bus.clearCalls();
    EXPECT_EQ(usb.setup(), 0);
    EXPECT_EQ(callLines(), support::emptyBusLines());
}

class OperationWithAStaleHandle : public StaleHandle,
                                  public testing::WithParamInterface<Operation> {};

TEST_P(OperationWithAStaleHandle, EndsWhenTheClaimFails) {
    leaveByRefusedClaim();
    EXPECT_FALSE(GetParam().run().value_or(false));
    EXPECT_EQ(callLines(), joined({staleSetupLines(), {"libusb_close stale"}}));
    EXPECT_EQ(MyLibusbDeviceHandle, stale);
}

TEST_P(OperationWithAStaleHandle, GoesOnWhenTheClaimDoesNotFail) {
    leaveByFailedSettingsRead();
    fail("libusb_claim_interface", 0);
    if (GetParam().name == "getSettings") {
        dialogs.expectMessage("Firmware version not supported ! Please upgrade !", "Error");
    }
    EXPECT_TRUE(GetParam().run().value_or(true));
    const Lines own = joined({GetParam().transfers, support::releaseLines()});
    EXPECT_EQ(callLines(), joined({staleSetupLines(), withStaleHandle(own)}));
}

INSTANTIATE_TEST_SUITE_P(Every, OperationWithAStaleHandle, testing::ValuesIn(operations()),
                         [](const auto& test) { return test.param.name; });

}  // namespace
