#ifndef LUMADOT_PICTURES_SEQUENCE_H
#define LUMADOT_PICTURES_SEQUENCE_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "recording/cut.h"
#include "recording/recording.h"
#include "ui/palette.h"

namespace pictures {

/// Frames that become pictures.
struct Sequence {
    std::uint64_t count = 0;
    std::size_t columns = 0;  ///< dots
    std::size_t rows = 0;
    std::uint64_t spanMs = 0;  ///< from the first frame to the last

    /// Fills in the palette entries of the dots of frame `number` (from 0 to count - 1), row by
    /// row, and returns its time stamp in ms. What it throws ends the work.
    std::function<std::uint32_t(std::uint64_t number, std::vector<std::uint8_t>& entries)> read;
};

/// A part of a recording, each digit shown in the palette entry that `entries` says. It reads the
/// recording, which must outlive it. Throws what reading throws, and recording::Error (ModeNeeded)
/// when its dots cannot be told.
Sequence sequenceOf(recording::Recording& recording, const recording::Range& range,
                    const DigitEntries& entries);

/// The fewest shades that show all digits of these frames, for whoever does not know the mode.
/// False: `progress` wanted it to end.
bool findShades(recording::Recording& recording, const recording::Range& range, ShadeSet& shades,
                const recording::Progress& progress = {});

}  // namespace pictures

#endif
