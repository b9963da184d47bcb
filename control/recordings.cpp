#include "control/recordings.h"

#include <CLI/CLI.hpp>
#include <map>

#include "control/files.h"
#include "control/interrupt.h"
#include "control/names.h"
#include "pictures/sequence.h"
#include "platform/native_file.h"
#include "ui/palette_file.h"

namespace control {

namespace {

struct Advice {
    ExitCode code;
    const char* hint;
};

Advice adviceFor(recording::Failure failure) {
    switch (failure) {
        case recording::Failure::NotARecording:
            return {ExitCode::File,
                    "Name a file that a recording has written: "
                    "..._lumadot_dump.txt or ..._lumadot_dump.raw."};
        case recording::Failure::NotAPicture:
            return {ExitCode::File, "Name a PNG that other programs can show."};
        case recording::Failure::Changed:
            return {ExitCode::File, "Run the command again."};
        case recording::Failure::ModeNeeded:
            return {ExitCode::Usage, "Say which with --mode."};
        case recording::Failure::ModeUnfit:
            return {ExitCode::Usage, "Name another one with --mode, or none."};
        case recording::Failure::CannotWrite:
            return {ExitCode::File, "Check the folder, its permissions and the room on the disk."};
        case recording::Failure::CannotConvert:
            return {ExitCode::Usage,
                    "Choose other frames, a smaller scale, or another kind of file."};
        case recording::Failure::CannotRead:
            break;
    }
    return {ExitCode::File, "Check the name and the permissions, and try again."};
}

const std::map<std::string, ShadeSet> ShadeSets = {
    {"4", ShadeSet::Four}, {"5", ShadeSet::Five}, {"16", ShadeSet::Sixteen}};

constexpr std::size_t DefaultPreset = 8;

}  // namespace

Failure failureOf(const recording::Error& error) {
    const Advice advice = adviceFor(error.failure());
    return {advice.code, std::string(error.what()) + ".", advice.hint};
}

void withProgress(Session& session, const std::string& name, Progress::Unit unit,
                  const std::function<bool(const recording::Progress&)>& work) {
    std::optional<Progress> bar;
    const bool finished = work([&](std::uint64_t done, std::uint64_t total) {
        if (!bar) {
            bar.emplace(session.output(), name, static_cast<std::size_t>(total), unit);
        }
        bar->update(static_cast<std::size_t>(done));
        return !interrupt::requested();
    });
    if (!finished) {
        throw Interrupted();
    }
}

std::unique_ptr<recording::Recording> openRecording(Session& session, const std::string& path) {
    auto opened = std::make_unique<recording::Recording>(native_file::named(path.c_str()));
    withProgress(session, path, Progress::Unit::Bytes,
                 [&](const recording::Progress& progress) { return opened->extend(progress); });
    return opened;
}

recording::Range rangeOf(const recording::Recording& recording, const std::string& path,
                         std::optional<std::uint64_t> from, std::optional<std::uint64_t> to) {
    const auto all = recording::allFrames(recording);
    if (!all) {
        throw fileFailure(path, "has no frame that can be read", "Choose another recording.");
    }
    const recording::Range range{from.value_or(all->first), to.value_or(all->last)};
    if (range.first > range.last || range.last > all->last) {
        throw Failure(ExitCode::Usage,
                      "There are no frames " + std::to_string(range.first) + " to " +
                          std::to_string(range.last) + " in \"" + path + "\".",
                      "Its frames are 0 to " + std::to_string(all->last) + ".");
    }
    return range;
}

void addShadeOptions(CLI::App& app, ShadeOptions& options) {
    app.add_option("--mode", options.mode, "The input mode that it was recorded in")
        ->type_name("MODE");
    app.add_option("--shades", options.shades,
                   "The shades of the display; otherwise as mode or frames tell")
        ->check(CLI::IsMember(ShadeSets).description(""))
        ->type_name("4|5|16");
}

std::optional<std::uint8_t> modeOf(const ShadeOptions& options) {
    return options.mode.empty() ? std::nullopt : std::optional(lookUp(modeNames(), options.mode));
}

DigitEntries entriesOf(Session& session, recording::Recording& recording,
                       const recording::Range& range, const ShadeOptions& options) {
    const auto mode = modeOf(options);
    recording.setMode(mode);
    if (!options.shades.empty()) {
        return digitEntries(ShadeSets.at(options.shades));
    }
    if (mode) {
        return digitEntries(inputMode(*mode));
    }
    recording.needDigits();
    ShadeSet shades = ShadeSet::Sixteen;
    withProgress(session, "Shades", Progress::Unit::Frames,
                 [&](const recording::Progress& progress) {
                     return pictures::findShades(recording, range, shades, progress);
                 });
    return digitEntries(shades);
}

void addColourOptions(CLI::App& app, ColourOptions& options) {
    auto* const file = app.add_option("--palette", options.palette, "The colours: a palette file")
                           ->type_name("FILE");
    app.add_option("--preset", options.preset, "The colours: a preset, otherwise 8")
        ->type_name("PRESET")
        ->excludes(file);
}

presets::Colours coloursOf(const ColourOptions& options) {
    if (!options.palette.empty()) {
        return readPalette(options.palette);
    }
    return presets::colours(options.preset.empty() ? DefaultPreset
                                                   : lookUp(presetNames(), options.preset));
}

presets::Colours readPalette(const std::string& path) {
    const auto colours = palette_file::decode(readHead(path, palette_file::Size));
    if (!colours) {
        throw fileFailure(path, "is no palette file (56 bytes, the first of them 01)",
                          "Save the palette again, or write one with palette --write.");
    }
    return *colours;
}

}  // namespace control
