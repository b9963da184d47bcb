#include "tests/device/faults/trial.h"

#include "tests/device/faults/pauses.h"

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

Trial::Trial(const Subject& subject)
    : subject_(&subject), board_(bus.plugController(boardFor(subject), productFor(subject))) {
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

void Trial::goOnWith(const Subject& subject) {
    subject_ = &subject;
    *board_ = simulator::Controller(boardFor(subject));
    setWhatTheToolHolds(heldBefore());
    listsBefore_ = bus.deviceLists();
    bus.clearCalls();
}

void Trial::plugAnother() {
    board_ = bus.plugController(boardFor(*subject_), productFor(*subject_));
}

void Trial::takeDown() {
    board_.reset();
    bus.reset();
}

void Trial::announce(const Ending& ending) {
    const std::string text = ending.message != nullptr ? ending.message : subject_->message;
    if (!text.empty()) {
        dialogs.expectMessage(text, ending.caption);
    }
}

void Trial::expect(const Outcome& outcome) {
    ++runs;
    announce(outcome.ending);
    const unsigned long pausedBefore = pausesAskedFor();
    go();
    EXPECT_EQ(support::callLines(), outcome.calls);
    EXPECT_EQ(result_.value_or(outcome.ending.found), outcome.ending.found);
    EXPECT_EQ(pausesAskedFor() - pausedBefore, subject_->pause);
    if (outcome.held) {
        EXPECT_EQ(whatTheToolHolds(), *outcome.held);
    } else {
        const Subject& worker = outcome.doneAs != nullptr ? *outcome.doneAs : *subject_;
        EXPECT_EQ(worker.done(*board_), outcome.done);
    }
    expectState(outcome.ending);
}

void Trial::expectState(const Ending& ending) const {
    EXPECT_EQ(handleState(), ending.handle);
    EXPECT_EQ(bus.openHandles(), ending.openHandles);
    EXPECT_EQ(bus.claimedInterfaces(), ending.claimedInterfaces);
    EXPECT_EQ(bus.deviceLists() - listsBefore_, ending.deviceLists);
}

}  // namespace faults
