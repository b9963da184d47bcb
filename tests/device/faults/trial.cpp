#include "tests/device/faults/trial.h"

#include "tests/device/faults/captures.h"
#include "tests/device/faults/pauses.h"
#include "tests/support/capture_rounds.h"

namespace faults {

namespace {

int runs = 0;

/// The library itself tells whether it still knows the global handle.
Handle handleState() {
    if (MyLibusbDeviceHandle == nullptr) {
        return Handle::Cleared;
    }
    unsigned char ignored = 0;
    libusb_get_string_descriptor_ascii(MyLibusbDeviceHandle, 2, &ignored, 1);
    const bool stale = simulator::Bus::instance().calls().back().stale;
    return stale ? Handle::Stale : Handle::Open;
}

}  // namespace

int Trial::count() { return runs; }

Trial::Trial(const Operation& operation)
    : operation_(&operation),
      board_(bus.plugController(boardFor(operation), productFor(operation))) {
    setWhatTheToolHolds(heldBefore());
}

void Trial::inject(const Failure& failure) {
    constexpr int FirstCallAboutADevice = 3;
    if (failure.kind == Kind::Unplugged && failure.call < FirstCallAboutADevice) {
        unplug();
    } else {
        bus.inject(failure.fault);
    }
}

void Trial::goOnWith(const Operation& operation) {
    operation_ = &operation;
    renew(operation);
    listsBefore_ = bus.deviceLists();
    bus.clearCalls();
}

void Trial::renew(const Operation& operation) {
    *board_ = simulator::Controller(boardFor(operation));
    setWhatTheToolHolds(heldBefore());
}

void Trial::plugAnother() {
    board_ = bus.plugController(boardFor(*operation_), productFor(*operation_));
}

void Trial::takeDown() {
    board_.reset();
    bus.reset();
}

void Trial::announce(const Operation& operation, const Result& result) {
    const std::string text = result.message != nullptr ? result.message : operation.message;
    if (!text.empty()) {
        dialogs.expectMessage(text, result.caption);
    }
}

void Trial::expect(const Expected& expected) {
    const unsigned long pausedBefore = pausesAskedFor();
    expectWork(*operation_, expected);
    EXPECT_EQ(support::callLines(), expected.calls);
    EXPECT_EQ(pausesAskedFor() - pausedBefore, operation_->pause);
    expectState(expected.result.state);
    ++runs;
}

void Trial::expectWork(const Operation& operation, const Expected& expected) {
    announce(operation, expected.result);
    if (const std::optional<bool> reported = operation.run()) {
        EXPECT_EQ(*reported, expected.result.found);
    }
    const bool reads = operation.name.starts_with("get");
    if (expected.held || !reads) {
        EXPECT_EQ(whatTheToolHolds(), expected.held.value_or(heldBefore()));
    }
    if (!expected.held) {
        const Operation* const worker = expected.workedLike;
        EXPECT_EQ((worker != nullptr ? *worker : operation).done(*board_), expected.done);
    }
}

void Trial::expect(const InterruptedCapture& capture, const ExpectedCapture& expected) {
    support::CaptureRounds rounds;
    std::size_t next = 0;
    rounds.after(InterruptedFrame, [&] {
        for (const Operation* operation : capture.operations) {
            renew(*operation);
            expectWork(*operation, expected.operations.at(next++));
        }
    });
    rounds.stopAfter(capture.frames);
    rounds.afterEnumeration(capture.enumerations, [] { dump_running = false; });
    const unsigned long pausedBefore = pausesAskedFor();
    captureUntilEnded();
    EXPECT_EQ(next, expected.operations.size());
    EXPECT_EQ(support::callLines(), expected.calls);
    EXPECT_EQ(operation_->done(*board_), expected.frames);
    EXPECT_EQ(pausesAskedFor() - pausedBefore, expected.pauses);
    expectState(expected.state);
    ++runs;
}

void Trial::expectState(const State& state) const {
    EXPECT_EQ(handleState(), state.handle);
    EXPECT_EQ(bus.openHandles(), state.openHandles);
    EXPECT_EQ(bus.claimedInterfaces(), state.claimedInterfaces);
    EXPECT_EQ(bus.deviceLists() - listsBefore_, state.deviceLists);
}

}  // namespace faults
