#ifndef LUMADOT_SIMULATOR_MACHINE_H
#define LUMADOT_SIMULATOR_MACHINE_H

#include <cstdint>
#include <span>

#include "simulator/capture.h"

namespace simulator {

/// A kind of pinball machine that the board can listen to, by the number of its input mode.
struct Machine {
    std::uint8_t mode;
    const char* name;
    std::uint8_t planes;  ///< in which it lights its dots
    Coding coding;
    /// The palette entry, 0..15, of each level of light, the darkest first. Machines with four
    /// shades use the entries 0, 1, 4 and 15, those with five 0, 3, 7, 11 and 15.
    std::span<const std::uint8_t> entries;
};

/// Mode 0 is the computer that sends its pictures itself. Unknown modes have the name "".
const Machine& machine(std::uint8_t mode);

}  // namespace simulator

#endif
