#ifndef LUMADOT_PICTURES_GIF_H
#define LUMADOT_PICTURES_GIF_H

#include <cstdint>
#include <filesystem>

#include "display/look.h"
#include "pictures/sequence.h"
#include "recording/progress.h"

namespace pictures {

/// What became of an animated GIF.
struct GifResult {
    bool finished = false;      ///< false: `progress` wanted it to end, and nothing was written
    std::uint64_t frames = 0;   ///< in the file
    std::uint64_t leftOut = 0;  ///< frames of the recording that are not; see GifClock
};

/// Writes an animated GIF that is repeated for ever, with the times of the recording (the last
/// frame stays as long as the one before it, a single one for a second) and exactly the look's
/// colours. Of each frame only the part is stored in which it differs from the one before.
/// `progress` counts frames.
///
/// Throws recording::Error (CannotWrite; CannotConvert when the picture would be too large for a
/// GIF), what reading the frames throws, and std::invalid_argument when there is no frame or the
/// look's scale is none of display::Painter's; then, and when it is ended, the file that was there
/// before stays as it was, or there is none.
GifResult writeGif(const Sequence& sequence, const display::Look& look,
                   const std::filesystem::path& path, const recording::Progress& progress = {});

}  // namespace pictures

#endif
