#ifndef LUMADOT_PICTURES_PNG_H
#define LUMADOT_PICTURES_PNG_H

#include <cstdint>
#include <filesystem>

#include "display/look.h"
#include "pictures/sequence.h"
#include "recording/progress.h"

namespace pictures {

// All of these are false when `progress`, which counts frames, wanted them to end. They throw
// recording::Error (CannotWrite; CannotConvert when the picture would be too large), what reading
// the frames throws, and std::invalid_argument when the look's scale is none of display::Painter's.
// Then, and when they are ended, the files that were there before stay as they were, and no new
// ones are there.

/// Writes one frame as a PNG.
bool writePng(const Sequence& sequence, std::uint64_t number, const display::Look& look,
              const std::filesystem::path& path, const recording::Progress& progress = {});

/// Writes all frames as PNGs; see `numbered`. None takes its place before all are written.
bool writePngs(const Sequence& sequence, const display::Look& look,
               const std::filesystem::path& path, const recording::Progress& progress = {});

/// The name of the picture `number` (from 0 on) of several: "x-000000.png" for "x.png".
std::filesystem::path numbered(const std::filesystem::path& path, std::uint64_t number);

/// Writes all frames into one PNG, `columns` (from 1 on) side by side, row after row from the top
/// left, without a gap. What the last row has too little is shown unlit.
bool writeSheet(const Sequence& sequence, const display::Look& look, std::uint64_t columns,
                const std::filesystem::path& path, const recording::Progress& progress = {});

}  // namespace pictures

#endif
