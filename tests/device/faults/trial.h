#ifndef LUMADOT_TESTS_DEVICE_FAULTS_TRIAL_H
#define LUMADOT_TESTS_DEVICE_FAULTS_TRIAL_H

#include <memory>
#include <optional>

#include "tests/device/faults/outcomes.h"
#include "tests/support/device_link.h"

namespace faults {

/// A subject's run on a bus of its own, which may be followed by the run of another subject on what
/// it left.
class Trial : public support::DeviceLink {
public:
    explicit Trial(const Subject& subject);

    void inject(const Failure& failure);
    /// Runs the subject and compares everything that can be seen of it with what must come of it.
    void expect(const Outcome& outcome);

    /// The tool holds what it held before the first run, the board is one that nobody has talked
    /// to, and the log is empty; the bus and the global handle stay as the last run left them.
    void goOnWith(const Subject& subject);
    /// The controller leaves the bus.
    void unplug() { bus.unplug(0); }
    /// Another controller comes to the bus.
    void plugAnother();

    /// Runs the subject and no more. Its box must have been announced.
    void go() { result_ = subject_->run(); }
    /// Announces the box of this ending, if there is one.
    void announce(const Ending& ending);

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
    void expectState(const Ending& ending) const;

    const Subject* subject_;
    std::shared_ptr<simulator::Controller> board_;
    std::optional<bool> result_;
    int listsBefore_ = 0;
};

}  // namespace faults

#endif
