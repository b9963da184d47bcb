#ifndef LUMADOT_RECORDING_RAW_MODES_H
#define LUMADOT_RECORDING_RAW_MODES_H

#include <cstdint>
#include <string>
#include <vector>

#include "device/input_mode.h"

namespace recording {

/// The input modes whose captures write raw dumps with so many planes, in the order of their
/// numbers.
std::vector<const InputModeInfo*> modesOfPlanes(std::uint8_t planes);

/// How dots of frames with so many planes are read, if all modes that write such frames agree; null
/// if they do not, or there is none.
const DotRule* commonRule(std::uint8_t planes);

/// Whether frames with so many planes can be read as this mode's. A capture in it need not write
/// them: the planes are all that counts.
bool canBeOf(const InputModeInfo& mode, std::uint8_t planes);

/// "9 (Capcom), 10 (AlvinG)", with the names of `inputModes()`.
std::string listOf(const std::vector<const InputModeInfo*>& modes);

}  // namespace recording

#endif
