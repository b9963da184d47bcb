#ifndef LUMADOT_TESTS_SIMULATOR_WINDOW_SHOWN_WINDOW_H
#define LUMADOT_TESTS_SIMULATOR_WINDOW_SHOWN_WINDOW_H

#include <gmock/gmock.h>

#include "simulator/window/frame.h"
#include "tests/simulator/packets.h"
#include "tests/simulator/server/running_server.h"
#include "tests/support/toolkit.h"

/// The simulator's window on the screen, in front of a server that runs.
class ShownWindow : public testing::Test {
protected:
    ShownWindow() {
        support::showAndWait(frame);
        frame.Raise();
        EXPECT_TRUE(support::runUntil([this] { return frame.IsActive(); }));
    }
    ~ShownWindow() override {
        frame.Destroy();
        support::deleteClosedWindows();
    }

    void receive(const simulator::Packet& packet) {
        server.withDevice([&](auto& device) { device.controller().receive(packet); });
    }
    /// Whether this comes true of the device, while the window goes on.
    template <class Condition>
    testing::AssertionResult becomes(Condition condition) {
        const bool is = support::runUntil([&] { return server.withDevice(condition); });
        return is ? testing::AssertionSuccess() : testing::AssertionFailure() << "it does not";
    }

    RunningServer server{{.frameInterval = 16}};
    simulator::Frame& frame = *new simulator::Frame(server.server());
};

#endif
