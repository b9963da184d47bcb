#ifndef LUMADOT_RECORDING_BIT_PLANES_H
#define LUMADOT_RECORDING_BIT_PLANES_H

#include <cstdint>
#include <span>
#include <vector>

namespace recording {

/// Turns dots, 8 to a byte and the least significant bit leftmost as the controller sends them,
/// into bit planes: bit n of a dot is in plane n. The dots are whole rows of a display, 0..15 each.
void toPlanes(std::span<const std::uint8_t> dots, std::size_t planes,
              std::vector<std::uint8_t>& into);

/// The same where each plane counts 1: of a dot's planes the first ones are set, as many as the dot
/// says.
void toCountedPlanes(std::span<const std::uint8_t> dots, std::size_t planes,
                     std::vector<std::uint8_t>& into);

}  // namespace recording

#endif
