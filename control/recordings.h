#ifndef LUMADOT_CONTROL_RECORDINGS_H
#define LUMADOT_CONTROL_RECORDINGS_H

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "control/progress.h"
#include "control/session.h"
#include "display/look.h"
#include "recording/cut.h"
#include "recording/error.h"
#include "recording/progress.h"
#include "recording/recording.h"
#include "ui/palette.h"

namespace CLI {
class App;
}

// What the commands that read recordings have in common.
namespace control {

/// What went wrong with a recording or a picture.
Failure failureOf(const recording::Error& error);

/// Long work with a bar under this name; `work` returns false when it was ended. Throws Interrupted
/// when a signal ends it.
void withProgress(Session& session, const std::string& name, Progress::Unit unit,
                  const std::function<bool(const recording::Progress&)>& work);

/// Opens a recording and makes its index. Throws what that throws, or Interrupted.
std::unique_ptr<recording::Recording> openRecording(Session& session, const std::string& path);

/// Throws Failure when there is no such range in it: `from` and `to` stand for the first and the
/// last frame where they are missing.
recording::Range rangeOf(const recording::Recording& recording, const std::string& path,
                         std::optional<std::uint64_t> from, std::optional<std::uint64_t> to);

/// In which shades a recording is shown; empty: not said.
struct ShadeOptions {
    std::string mode;
    std::string shades;
};
void addShadeOptions(CLI::App& app, ShadeOptions& options);

/// The input mode that is named.
std::optional<std::uint8_t> modeOf(const ShadeOptions& options);

/// Sets the recording's mode, and says in which palette entry each digit is shown: as said, or as
/// the highest digit of the frames wants it.
DigitEntries entriesOf(Session& session, recording::Recording& recording,
                       const recording::Range& range, const ShadeOptions& options);

/// The colours of pictures; empty: preset 8.
struct ColourOptions {
    std::string palette;
    std::string preset;
};
void addColourOptions(CLI::App& app, ColourOptions& options);
presets::Colours coloursOf(const ColourOptions& options);

/// The colours in a palette file. Throws Failure.
presets::Colours readPalette(const std::string& path);

}  // namespace control

#endif
