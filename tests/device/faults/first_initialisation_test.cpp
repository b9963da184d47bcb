// A program of its own: what the USB library's first initialisation left behind stays for the whole
// process.

#include <gmock/gmock.h>

#include "device/interfaceUSB.h"
#include "simulator/bus.h"
#include "tests/device/faults/operations.h"

namespace {

using support::callLines;
using support::Lines;

constexpr int OtherError = -99;

TEST(FirstInitialisation, MeansNoControllerUntilItSucceedsAndIsNotAskedForAfterThat) {
    const support::Dialogs dialogs;  // None may come.
    simulator::Bus& bus = simulator::Bus::instance();
    bus.plugController();

    bus.inject({.function = "libusb_init", .nth = 0, .result = OtherError});
    for (const faults::Operation& operation : faults::operations()) {
        SCOPED_TRACE(operation.name);
        bus.clearCalls();
        EXPECT_NE(operation.run(), std::optional(true));
        EXPECT_EQ(callLines(), Lines{"libusb_init"});
    }

    bus.clearFaults();
    EXPECT_TRUE(usb.sendConfigCmd(0x02, 0x05));
    bus.inject({.function = "libusb_init", .nth = 0, .result = OtherError});
    EXPECT_TRUE(usb.sendConfigCmd(0x02, 0x06));
    EXPECT_EQ(bus.openHandles(), 0);
}

}  // namespace
