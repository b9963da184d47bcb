#ifndef LUMADOT_RECORDING_FRAME_H
#define LUMADOT_RECORDING_FRAME_H

#include <cstdint>
#include <vector>

namespace recording {

/// A frame that was read.
struct Frame {
    std::uint64_t number = 0;  ///< in its recording, from 0 on
    std::uint64_t offset = 0;  ///< in its file
    std::uint32_t stampMs = 0;
    /// The digits that a text dump has for the dots, 0..15, row by row from the top left dot on.
    /// Empty in a raw frame whose input mode is not known.
    std::vector<std::uint8_t> digits;
    /// A raw frame's planes of 512 bytes, as they stand in the file. Empty in a text dump.
    std::vector<std::uint8_t> planes;
};

}  // namespace recording

#endif
