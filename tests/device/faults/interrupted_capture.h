#ifndef LUMADOT_TESTS_DEVICE_FAULTS_INTERRUPTED_CAPTURE_H
#define LUMADOT_TESTS_DEVICE_FAULTS_INTERRUPTED_CAPTURE_H

#include <limits>
#include <vector>

#include "tests/device/faults/results.h"

namespace faults {

inline constexpr int InterruptedFrame = 2;

/// A capture, the operation "receiveDump", into which others come: all of them in one yield, after
/// its second frame, as handlers of the window start them.
struct InterruptedCapture {
    std::vector<const Operation*> operations;
    int frames = 4;  ///< it is ended after asking for so many
    /// It is ended after so many enumerations of the bus: its own, one for each operation, and
    /// those by which it looks for its controller again.
    int enumerations = std::numeric_limits<int>::max();
};

/// What must come of one.
struct ExpectedCapture {
    support::Lines calls = {};
    std::vector<Expected> operations = {};  ///< of those that were run
    int frames = 0;                         ///< that came
    unsigned long pauses = 0;               ///< ms, with the operations' own ones
    State state = {};
};

/// Puts it together from what must come of its parts. `failure`: null: nothing fails.
ExpectedCapture expectedOf(const InterruptedCapture& capture, const Failure* failure);

}  // namespace faults

#endif
