#ifndef LUMADOT_TESTS_DEVICE_FAULTS_TRIAL_H
#define LUMADOT_TESTS_DEVICE_FAULTS_TRIAL_H

#include <memory>

#include "tests/device/faults/interrupted_capture.h"
#include "tests/device/faults/results.h"
#include "tests/support/device_link.h"

namespace faults {

/// An operation's run on a bus of its own, which may be followed by the run of another operation on
/// what it left.
class Trial : public support::DeviceLink {
public:
    explicit Trial(const Operation& operation);

    void inject(const Failure& failure);
    /// Runs the operation and compares everything that can be seen of it with what must come of it.
    void expect(const Expected& expected);
    /// The same with the operation "receiveDump", into which others come.
    void expect(const InterruptedCapture& capture, const ExpectedCapture& expected);

    /// The tool holds what it held before the first run, the board is one that nobody has talked
    /// to, and the log is empty; the bus and the global handle stay as the last run left them.
    void goOnWith(const Operation& operation);
    /// The controller leaves the bus.
    void unplug() { bus.unplug(0); }
    /// Another controller comes to the bus.
    void plugAnother();

    /// Runs the operation and no more. Its box must have been announced.
    void go() { operation_->run(); }
    /// Announces the box of this result, if there is one.
    void announce(const Result& result) { announce(*operation_, result); }

    /// Device lists that were not freed.
    int deviceLists() const { return bus.deviceLists(); }
    /// Nothing of what happens is kept from now on.
    void setLogging(bool logging) { bus.setLogging(logging); }
    /// Takes the simulated bus down, with all it holds.
    void takeDown();

    /// Runs so far, of the whole program.
    static int count();

private:
    void TestBody() override {}
    void renew(const Operation& operation);
    void announce(const Operation& operation, const Result& result);
    void expectWork(const Operation& operation, const Expected& expected);
    void expectState(const State& state) const;

    const Operation* operation_;
    std::shared_ptr<simulator::Controller> board_;
    int listsBefore_ = 0;
};

}  // namespace faults

#endif
