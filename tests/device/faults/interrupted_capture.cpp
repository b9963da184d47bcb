#include "tests/device/faults/interrupted_capture.h"

#include <optional>

namespace faults {

namespace {

using support::Lines;

constexpr int DescriptorRead = 3;  ///< by its position in `setup`
constexpr unsigned long AttemptPause = 100;

/// Goes through the capture part by part. The failure hits the part whose calls it is among.
class Course {
public:
    Course(const InterruptedCapture& capture, const Failure* failure)
        : capture_(capture), failure_(failure) {}

    ExpectedCapture take() {
        const Result& first = connect();
        expected_.state = first.state;
        if (first.found) {
            goOn();
            expected_.state = {.handle = handle_, .deviceLists = lists_};
            expected_.state.openHandles = handle_ == Handle::Open ? 1 : 0;
            expected_.state.claimedInterfaces = expected_.state.openHandles;
        }
        return expected_;
    }

private:
    void goOn() {
        connected_ = true;
        bool ended = false;
        while (!ended) {
            if (connected_) {
                takeFrame();
            }
            ended = asked_ >= capture_.frames || enumerations_ >= capture_.enumerations;
            if (asked_ == InterruptedFrame && expected_.operations.empty()) {
                interrupt();
            }
            if (!connected_ && !ended) {
                reconnect();
            }
        }
        if (connected_) {
            release();
        }
    }

    void takeFrame() {
        const std::optional<Failure> failure = failureWithin(2);
        const bool fails = failure && failure->kind != Kind::Reply;
        const bool sent = present_ && !(fails && failure->call == 1);
        present_ = present_ && !leavesWith(failure);
        expected_.frames += present_ && !fails ? 1 : 0;
        ++asked_;
        add({sent ? "out 0x01 64 2000ms #0: 02 C3 E8 03 00*60" : "out 0x01 64 2000ms #0",
             "in 0x81 1541 10000ms #0"});
    }

    void interrupt() {
        for (const Operation* operation : capture_.operations) {
            // The capture's connection, or one that the operation before has left open on purpose.
            if (handle_ == Handle::Open) {
                release();
            }
            run(*operation);
        }
        connected_ = false;
    }

    void run(const Operation& operation) {
        ++enumerations_;
        const std::optional<Failure> failure = failureWithin(usualCalls(operation).size());
        const Expected expected = !present_ ? withoutController()
                                  : failure ? expectedOf(operation, *failure)
                                            : undisturbed(operation);
        present_ = present_ && !leavesWith(failure);
        handle_ = expected.result.state.handle;
        lists_ += expected.result.state.deviceLists;
        expected_.pauses += operation.pause;
        add(expected.calls);
        expected_.operations.push_back(expected);
    }

    /// The only calls with a handle that is not open, and they are meant.
    Expected withoutController() const {
        if (handle_ == Handle::Stale) {
            return {NotClaimed, staleSetupLines(), 0};
        }
        return {NotFound, support::emptyBusLines(), 0};
    }

    /// An attempt; what it leaves is given back, so that attempts do not pile up.
    void reconnect() {
        forgetHandle();
        const Result& result = connect();
        connected_ = result.found;
        if (connected_) {
            return;
        }
        if (result.state.deviceLists > 0) {
            add({"libusb_free_device_list"});
        }
        forgetHandle();
        expected_.pauses += AttemptPause;
    }

    void forgetHandle() {
        if (handle_ == Handle::Open) {
            release();
        }
        handle_ = Handle::Cleared;
    }

    /// A `setup` of the capture itself.
    const Result& connect() {
        ++enumerations_;
        if (!present_) {
            add(support::emptyBusLines());
            return NotFound;
        }
        const std::optional<Failure> failure = failureWithin(SetupCalls);
        const ExpectedSetup setup =
            failure ? expectedSetup(*failure) : ExpectedSetup{AsUsual, support::setupLines()};
        present_ = !leavesWith(failure);
        handle_ = setup.result.found ? Handle::Open : setup.result.state.handle;
        add(setup.calls);
        return setup.result;
    }

    void release() {
        present_ = present_ && !leavesWith(failureWithin(support::releaseLines().size()));
        add(support::releaseLines());
        handle_ = Handle::Cleared;
    }

    /// The failure if it is one of the next calls, counted from here.
    std::optional<Failure> failureWithin(std::size_t calls) const {
        const int before = static_cast<int>(expected_.calls.size());
        if (failure_ == nullptr || failure_->call <= before ||
            failure_->call > before + static_cast<int>(calls)) {
            return {};
        }
        Failure failure = *failure_;
        failure.call -= before;
        const bool descriptorIsKnown = before > 0;
        if (descriptorIsKnown && failure.call == DescriptorRead && failure.kind == Kind::Error &&
            calls >= SetupCalls) {
            return {};  // The one that was read before is taken.
        }
        return failure;
    }

    static bool leavesWith(const std::optional<Failure>& failure) {
        return failure && failure->kind == Kind::Unplugged;
    }

    void add(const Lines& calls) { expected_.calls = support::joined({expected_.calls, calls}); }

    const InterruptedCapture& capture_;
    const Failure* failure_;
    ExpectedCapture expected_;
    bool present_ = true;  ///< the controller is on the bus
    bool connected_ = false;
    Handle handle_ = Handle::Cleared;
    int asked_ = 0;
    int enumerations_ = 0;
    int lists_ = 0;
};

}  // namespace

ExpectedCapture expectedOf(const InterruptedCapture& capture, const Failure* failure) {
    return Course(capture, failure).take();
}

}  // namespace faults
