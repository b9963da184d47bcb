#ifndef LUMADOT_TESTS_DEVICE_FAULTS_OUTCOMES_H
#define LUMADOT_TESTS_DEVICE_FAULTS_OUTCOMES_H

#include <optional>
#include <string>
#include <vector>

#include "tests/device/faults/subjects.h"

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

/// How an operation ends, as the user and the next operation see it.
struct Ending {
    const char* name;
    bool found;           ///< what the operation reports, if it does
    const char* message;  ///< of the box, null: the operation's usual one, if it has one
    const char* caption;
    Handle handle;
    int openHandles;
    int claimedInterfaces;
    int deviceLists;
};

extern const Ending AsUsual, NotListed, NotFound, LeftOpen, NotClaimed, SettingsNotRead,
    OpenRefused, TransferRefused, CloseRefused, FileNotOpened;

/// One failure of one run.
struct Failure {
    std::string name;
    int call;  ///< by its position in the calls of an undisturbed run, 1 = the first
    Kind kind;
    simulator::Fault fault;
};

/// Which lengths a captured frame comes in, of which there are thousands.
enum class FrameLengths { Every, Some };

/// All failures of one call that the library documents, for each call of the operation in turn.
std::vector<Failure> failuresOf(const Subject& subject, FrameLengths lengths = FrameLengths::Some);

/// The calls of an undisturbed run.
support::Lines usualCalls(const Subject& subject);

/// What must come of a failure.
struct Outcome {
    const Ending& ending;
    support::Lines calls;
    int done;                         ///< of the operation's work
    std::optional<Held> held = {};    ///< what the tool holds then, in place of `done`
    const Subject* doneAs = nullptr;  ///< the subject that it worked like, null: itself
};

Outcome outcomeOf(const Subject& subject, const Failure& failure);

}  // namespace faults

#endif
