#ifndef LUMADOT_TESTS_DEVICE_FAULTS_RESULTS_H
#define LUMADOT_TESTS_DEVICE_FAULTS_RESULTS_H

#include <optional>
#include <string>
#include <vector>

#include "tests/device/faults/operations.h"

namespace faults {

/// What a call does instead of what it should.
enum class Kind {
    Error,      ///< returns an error, or brings a refusal
    NoName,     ///< the read of the product name returns exactly 0
    Reply,      ///< something else arrives than usual: another name, a short reply, a wrong count
    Unplugged,  ///< the controller leaves the bus with this call
};

/// What becomes of the global handle.
enum class Handle { Cleared, Stale, Open };

/// What an operation leaves behind for the next one.
struct State {
    Handle handle = Handle::Cleared;
    int openHandles = 0;
    int claimedInterfaces = 0;
    int deviceLists = 0;  ///< kept allocated by it
};

/// How an operation ends.
struct Result {
    const char* name;
    bool found;           ///< what the operation reports, if it does
    const char* message;  ///< of the box, null: the operation's usual one, if it has one
    const char* caption;
    State state;
};

extern const Result AsUsual, NotListed, NotFound, LeftOpen, NotClaimed, SettingsNotRead,
    OpenRefused, TransferRefused, CloseRefused, FileNotOpened;

/// One failure of one run.
struct Failure {
    std::string name;
    int call;  ///< by its position in the calls of an undisturbed run, 1 = the first
    Kind kind;
    simulator::Fault fault;
};

/// All failures that the library documents, for each of these calls in turn; of the values that
/// take one way through the tool, the first and the last ones and a few others.
std::vector<Failure> failuresOf(const support::Lines& calls);

/// The calls of an undisturbed run.
support::Lines usualCalls(const Operation& operation);

/// The calls of a `setup` that goes on with a stale handle on an empty bus, and ends there.
support::Lines staleSetupLines();

/// What must come of a run.
struct Expected {
    const Result& result;
    support::Lines calls;
    int done;                               ///< of the operation's work
    std::optional<Held> held = {};          ///< what the tool holds then, in place of `done`
    const Operation* workedLike = nullptr;  ///< null: like itself
};

Expected undisturbed(const Operation& operation);
Expected expectedOf(const Operation& operation, const Failure& failure);

/// What comes of a failure in the calls of `setup`: the calls that it makes all the same, and how
/// it ends.
struct ExpectedSetup {
    const Result& result;
    support::Lines calls;
};
constexpr int SetupCalls = 7;
ExpectedSetup expectedSetup(const Failure& failure);

}  // namespace faults

#endif
