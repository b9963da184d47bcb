#ifndef LUMADOT_TESTS_DEVICE_FAULTS_CAPTURES_H
#define LUMADOT_TESTS_DEVICE_FAULTS_CAPTURES_H

#include <vector>

#include "tests/device/faults/operations.h"

namespace faults {

/// Captures of two frames with and without a raw file, with the shortest, the longest and an XL
/// controller's replies. Their work is the frames in the files.
std::vector<Operation> captures();

/// The first of them, until something ends it.
void captureUntilEnded();

}  // namespace faults

#endif
