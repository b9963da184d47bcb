#ifndef LUMADOT_TESTS_CONTROL_CONTROL_RUN_H
#define LUMADOT_TESTS_CONTROL_CONTROL_RUN_H

#include <gmock/gmock.h>

#include <string>

#include "simulator/bus.h"
#include "tests/control/ran.h"
#include "tests/support/bus_log.h"
#include "tests/support/byte_text.h"
#include "tests/support/temporary_folder.h"

namespace support {

/// What went over the wire, a line a transfer: "81 C3 E7 FF 02 02 00*2046", or "(63 asked for)".
inline Lines wire() {
    Lines lines;
    for (const simulator::Call& call : simulator::Bus::instance().calls()) {
        if (call.function != "libusb_bulk_transfer") {
            continue;
        }
        lines.push_back(call.endpoint == 0x01 ? byteText(call.data)
                                              : "(" + std::to_string(call.length) + " asked for)");
    }
    return lines;
}

inline const Lines SettingsRead = {"81 C3 E7 FF 10 00*2047", "(63 asked for)"};

/// Nothing is open, claimed, listed or initialised any more.
inline void expectBalanced() {
    const simulator::Bus& bus = simulator::Bus::instance();
    EXPECT_EQ(bus.openHandles(), 0);
    EXPECT_EQ(bus.claimedInterfaces(), 0);
    EXPECT_EQ(bus.deviceLists(), 0);
    EXPECT_EQ(bus.openContexts(), 0);
}

/// An empty bus, an empty folder; whatever a test runs gives back all it has taken.
class ControlTest : public testing::Test {
protected:
    ControlTest() { bus.reset(); }
    ~ControlTest() override {
        expectBalanced();
        bus.reset();
    }

    std::string file(const std::string& name) const { return (folder.path() / name).string(); }

    simulator::Bus& bus = simulator::Bus::instance();
    TemporaryFolder folder;
};

}  // namespace support

#endif
