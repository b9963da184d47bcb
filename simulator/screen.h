#ifndef LUMADOT_SIMULATOR_SCREEN_H
#define LUMADOT_SIMULATOR_SCREEN_H

#include <cstdint>
#include <vector>

#include "simulator/controller.h"

namespace simulator {

/// What the display shows at a moment.
struct Shown {
    DotCount size = {};
    std::vector<std::uint8_t> entries = {};  ///< of the palette, one a dot, row by row from the top
    Palette palette = {};
    std::uint8_t brightness = 0;  ///< 0..255; 0: dark

    bool operator==(const Shown&) const = default;
};

/// The last image that was sent, in the middle of a larger display; without one the `step`th frame
/// of the imaginary machine, as the input mode has it. Dark while the board restarts.
Shown shown(const Controller& controller, std::uint32_t step);

}  // namespace simulator

#endif
