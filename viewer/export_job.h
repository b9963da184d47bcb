#ifndef LUMADOT_VIEWER_EXPORT_JOB_H
#define LUMADOT_VIEWER_EXPORT_JOB_H

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>

#include "display/look.h"
#include "recording/cut.h"
#include "recording/progress.h"
#include "viewer/followed.h"
#include "viewer/shades.h"

namespace viewer {

enum class ExportKind { Gif, Picture, Pictures, Sheet, Text, Raw };

struct ExportKindInfo {
    ExportKind kind;
    const char* label;
    const char* extension;
    bool isPicture;
};

inline constexpr std::array ExportKinds = std::to_array<ExportKindInfo>({
    {ExportKind::Gif, "Animated GIF", ".gif", true},
    {ExportKind::Picture, "Picture of one frame (PNG)", ".png", true},
    {ExportKind::Pictures, "Numbered pictures (PNG)", ".png", true},
    {ExportKind::Sheet, "Contact sheet (PNG)", ".png", true},
    {ExportKind::Text, "Text dump", ".txt", false},
    {ExportKind::Raw, "Raw dump", ".raw", false},
});

/// What is to be written.
struct ExportJob {
    ExportKind kind = ExportKind::Gif;
    recording::Range range;  ///< of a single picture the first frame
    std::filesystem::path path;
    display::Look look;
    std::uint64_t columns = 4;            ///< of a contact sheet
    std::optional<std::uint8_t> rawMode;  ///< for a raw dump from a text dump
};

struct ExportResult {
    bool finished = false;  ///< false: it was ended, and nothing is written
    std::uint64_t frames = 0;
    std::uint64_t leftOut = 0;  ///< frames that a GIF cannot show
};

/// Writes it, in the shades in which the whole recording is shown; where these are not known yet
/// they are looked for first. Nobody else gets at the recording meanwhile.
/// Throws recording::Error.
ExportResult run(const ExportJob& job, Followed& followed, const Shades& shades,
                 const recording::Progress& progress);

}  // namespace viewer

#endif
