// Recordings in the terminal.

#include <CLI/CLI.hpp>
#include <cstdlib>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>

#include "control/commands/dump.h"
#include "control/pace.h"
#include "control/recordings.h"
#include "control/terminal.h"
#include "control/text_picture.h"
#include "pictures/sequence.h"

namespace control {

namespace {

const std::map<std::string, TextPicture::Colours> ColourNames = {
    {"full", TextPicture::Colours::Full},
    {"256", TextPicture::Colours::Few},
    {"none", TextPicture::Colours::None}};

struct Arguments {
    std::string file;
    std::uint64_t frame = 0;
    bool play = false;
    std::string colours;
    ShadeOptions shades;
    ColourOptions palette;
};

std::size_t lineWidth(const Output& output) {
    constexpr std::size_t Usual = 80;
    if (const std::size_t width = output.showsResults() ? terminal::width() : 0; width > 0) {
        return width;
    }
    const char* const columns = std::getenv("COLUMNS");
    const int width = columns != nullptr ? std::atoi(columns) : 0;
    return width > 0 ? static_cast<std::size_t>(width) : Usual;
}

TextPicture pictureFor(const Output& output, const Arguments& arguments) {
    auto colours = TextPicture::Colours::None;
    if (!arguments.colours.empty()) {
        colours = ColourNames.at(arguments.colours);
    } else if (output.showsResults()) {
        colours = terminalColours();
    }
    return {coloursOf(arguments.palette), colours, lineWidth(output)};
}

/// The digits as they are in the recording, for scripts.
Json frameJson(const recording::Frame& frame, std::size_t columns) {
    constexpr const char* Digits = "0123456789abcdef";
    Json rows = Json::array();
    for (std::size_t dot = 0; dot < frame.digits.size(); dot += columns) {
        std::string row;
        for (std::size_t column = 0; column < columns; ++column) {
            row += Digits[frame.digits[dot + column]];
        }
        rows.push_back(row);
    }
    return {{"number", frame.number},
            {"offset", frame.offset},
            {"stampMs", frame.stampMs},
            {"rows", rows}};
}

ExitCode showOne(Session& session, recording::Recording& dump, const Arguments& arguments) {
    const auto range = rangeOf(dump, arguments.file, arguments.frame, arguments.frame);
    const DigitEntries entries = entriesOf(session, dump, range, arguments.shades);
    const auto sequence = pictures::sequenceOf(dump, range, entries);
    std::vector<std::uint8_t> dots;
    sequence.read(0, dots);
    const TextPicture picture = pictureFor(session.output(), arguments);
    session.output().resultNow(picture.of(dots, sequence.columns));
    recording::Frame frame;
    dump.readDigits(range.first, frame);
    session.document()["frame"] = frameJson(frame, sequence.columns);
    return ExitCode::Done;
}

/// On a terminal each picture takes the place of the one before it.
void play(Session& session, const pictures::Sequence& sequence, const TextPicture& picture) {
    std::string back;
    Pace pace(1);
    playOnce(sequence, pace, [&](const std::vector<std::uint8_t>& dots) {
        const std::string text = picture.of(dots, sequence.columns);
        session.output().resultNow(back + text);
        if (session.output().showsResults() && terminal::followsEscapes()) {
            back = "\x1B[" + std::to_string(std::ranges::count(text, '\n')) + "A";
        }
    });
}

ExitCode playAll(Session& session, recording::Recording& dump, const Arguments& arguments) {
    const auto range = rangeOf(dump, arguments.file, arguments.frame, std::nullopt);
    const DigitEntries entries = entriesOf(session, dump, range, arguments.shades);
    const TextPicture picture = pictureFor(session.output(), arguments);
    try {
        play(session, pictures::sequenceOf(dump, range, entries), picture);
    } catch (const Interrupted&) {
        return ExitCode::Done;  // Which is how one stops looking.
    }
    return ExitCode::Done;
}

ExitCode show(Session& session, const Arguments& arguments) {
    if (arguments.play && session.options().json) {
        throw Failure(ExitCode::Usage, "--play has nothing for --json.",
                      "Name a frame with --frame.");
    }
    const auto dump = openRecording(session, arguments.file);
    return arguments.play ? playAll(session, *dump, arguments) : showOne(session, *dump, arguments);
}

}  // namespace

void defineDumpShow(CLI::App& app, Action& chosen) {
    auto arguments = std::make_shared<Arguments>();
    app.add_option("FILE", arguments->file, "A recording, text or raw")->required();
    app.add_option("--frame", arguments->frame, "Which frame, from 0 on; without it the first")
        ->type_name("N");
    app.add_flag("--play", arguments->play, "Play all, from that frame on; Ctrl-C ends it");
    app.add_option("--colours", arguments->colours, "Otherwise as the terminal tells")
        ->check(CLI::IsMember(ColourNames).description(""))
        ->type_name("full|256|none");
    addShadeOptions(app, arguments->shades);
    addColourOptions(app, arguments->palette);
    app.callback([&chosen, arguments] {
        chosen = [arguments](Session& session) { return show(session, *arguments); };
    });
}

}  // namespace control
