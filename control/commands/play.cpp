// Recordings and pictures on the controller's display, in the machine's place.

#include <CLI/CLI.hpp>
#include <memory>
#include <nlohmann/json.hpp>

#include "control/commands/commands.h"
#include "control/files.h"
#include "control/interrupt.h"
#include "control/names.h"
#include "control/pace.h"
#include "control/recordings.h"
#include "control/takeover.h"
#include "device/image_frame.h"
#include "pictures/picture.h"
#include "pictures/sequence.h"
#include "platform/native_file.h"

namespace control {

namespace {

struct PlayArguments {
    std::string file;
    bool loop = false;
    double speed = 1;
    ShadeOptions shades;
    std::string palette;
};

struct ShowArguments {
    std::string file;
    double seconds = 0;  ///< 0: it stays
    std::string palette;
};

/// As a check of the parser's, like isTime.
std::string isSpeed(const std::string& text) {
    constexpr double Slowest = 0.01;
    constexpr double Fastest = 100;
    double speed = 0;
    const bool isNumber = CLI::detail::lexical_cast(text, speed);
    return isNumber && speed >= Slowest && speed <= Fastest
               ? ""
               : "\"" + text + "\" is no speed from 0.01 to 100";
}

std::vector<std::uint8_t> paletteBytes(const std::string& path) {
    if (path.empty()) {
        return {};
    }
    const presets::Colours colours = readPalette(path);
    return {colours.begin(), colours.end()};
}

pictures::Sequence framesOf(Session& session, recording::Recording& dump,
                            const PlayArguments& arguments) {
    const auto range = rangeOf(dump, arguments.file, std::nullopt, std::nullopt);
    const DigitEntries entries = entriesOf(session, dump, range, arguments.shades);
    auto frames = pictures::sequenceOf(dump, range, entries);
    if (frames.columns != image_frame::Columns || frames.rows != image_frame::Rows) {
        throw fileFailure(arguments.file,
                          "was recorded on the XL board: its frames have 192 x 64 dots, the "
                          "display that can be sent pictures 128 x 32",
                          "Choose another recording, or look at it with dump show.");
    }
    return frames;
}

/// What was played, told in every case.
class Played {
public:
    Played(Session& session, const std::string& file) : session_(session), file_(file) {}
    ~Played() {
        session_.document()["play"] = {{"file", file_},
                                       {"frames", frames_},
                                       {"seconds", secondsSince(start_)},
                                       {"endedBy", endedBy_}};
    }
    Played(const Played&) = delete;
    Played& operator=(const Played&) = delete;

    void addFrame() { ++frames_; }
    void endBy(const char* what) { endedBy_ = what; }
    std::uint64_t frames() const { return frames_; }

private:
    Session& session_;
    std::string file_;
    TimePoint start_ = now();
    std::uint64_t frames_ = 0;
    const char* endedBy_ = "failure";
};

void playFrames(Takeover& display, const pictures::Sequence& frames, const PlayArguments& arguments,
                Played& played) {
    Pace pace(arguments.speed);
    do {
        playOnce(frames, pace, [&](const std::vector<std::uint8_t>& entries) {
            display.show(entries);
            played.addFrame();
        });
    } while (arguments.loop);
}

ExitCode play(Session& session, const PlayArguments& arguments) {
    const auto colours = paletteBytes(arguments.palette);
    const auto dump = openRecording(session, arguments.file);
    const auto frames = framesOf(session, *dump, arguments);
    Played played(session, arguments.file);
    try {
        Takeover display(session);
        display.during(colours, false, [&] { playFrames(display, frames, arguments, played); });
        played.endBy("end");
    } catch (const Interrupted&) {
        played.endBy("signal");  // The only end that a loop has.
    }
    session.done("Played " + std::to_string(played.frames()) + " frames of \"" + arguments.file +
                 "\".");
    return ExitCode::Done;
}

/// The palette that the display shows it in.
presets::Colours shownIn(const std::vector<std::uint8_t>& sent, const Takeover& display) {
    presets::Colours colours = presets::colours(
        std::min<std::size_t>(display.settings().record.paletteIndex, presets::Count - 1));
    std::ranges::copy(sent, colours.begin());
    return colours;
}

ExitCode show(Session& session, const ShowArguments& arguments) {
    const auto colours = paletteBytes(arguments.palette);
    const pictures::Picture picture = pictures::readPng(native_file::named(arguments.file.c_str()));
    const bool stays = arguments.seconds == 0;
    Takeover display(session);
    const auto entries = pictures::fitToDisplay(picture, shownIn(colours, display),
                                                image_frame::Columns, image_frame::Rows);
    session.document()["show"] = {{"file", arguments.file}, {"stays", stays}};
    display.during(colours, stays, [&] {
        display.show(entries);
        if (!stays) {
            session.pause(Milliseconds(static_cast<std::int64_t>(arguments.seconds * 1000)));
        }
    });
    session.document()["show"]["wayBack"] = stays ? Json(display.wayBack()) : Json();
    session.done("Showed \"" + arguments.file + "\"." +
                 (stays ? " To give the display back to the machine: " + display.wayBack() : ""));
    return ExitCode::Done;
}

}  // namespace

void definePlay(CLI::App& app, Action& chosen) {
    auto arguments = std::make_shared<PlayArguments>();
    app.add_option("FILE", arguments->file, "A recording of 128 x 32 dots, text or raw")
        ->required();
    app.add_flag("--loop", arguments->loop, "Again and again, until Ctrl-C ends it");
    app.add_option("--speed", arguments->speed, "2 is twice as fast; 0.01 to 100")
        ->check(isSpeed)
        ->type_name("X");
    addShadeOptions(app, arguments->shades);
    app.add_option("--palette", arguments->palette, "Send this palette file for the time")
        ->type_name("FILE");
    app.callback([&chosen, arguments] {
        chosen = [arguments](Session& session) { return play(session, *arguments); };
    });
}

void defineShow(CLI::App& app, Action& chosen) {
    auto arguments = std::make_shared<ShowArguments>();
    app.add_option("FILE", arguments->file, "A PNG of any size")->required();
    app.add_option("--seconds", arguments->seconds, "For so long; without it, it stays")
        ->check(isTime)
        ->type_name("S");
    app.add_option("--palette", arguments->palette, "Send this palette file, too")
        ->type_name("FILE");
    app.callback([&chosen, arguments] {
        chosen = [arguments](Session& session) { return show(session, *arguments); };
    });
}

}  // namespace control
