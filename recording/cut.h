#ifndef LUMADOT_RECORDING_CUT_H
#define LUMADOT_RECORDING_CUT_H

#include <cstdint>
#include <filesystem>
#include <optional>

#include "recording/progress.h"
#include "recording/recording.h"

namespace recording {

/// Frames `first` to `last`, both included.
struct Range {
    std::uint64_t first = 0;
    std::uint64_t last = 0;
};

/// All frames of a recording; nothing if it has none.
std::optional<Range> allFrames(const Recording& recording);

/// Writes a part of a recording as a dump of this kind, byte by byte as a capture would have
/// written it. A raw dump from a text dump needs `mode`, one of those whose captures write raw
/// dumps; which planes a real controller would have set for a dot's shade is not known then, so
/// that the first ones are. `progress` counts frames.
///
/// False when `progress` wanted it to end; then, and when it throws, the file that was there before
/// stays as it was, or there is none. Throws Error (CannotRead, CannotWrite, ModeNeeded, ModeUnfit,
/// CannotConvert) or std::out_of_range.
bool writeDump(Recording& recording, const Range& range, Kind kind,
               const std::filesystem::path& path, std::optional<std::uint8_t> mode = std::nullopt,
               const Progress& progress = {});

}  // namespace recording

#endif
