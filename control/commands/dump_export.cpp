// Recordings as pictures, cut, and converted.

#include <CLI/CLI.hpp>
#include <filesystem>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>

#include "control/commands/dump.h"
#include "control/files.h"
#include "control/recordings.h"
#include "control/text.h"
#include "display/painter.h"
#include "pictures/gif.h"
#include "pictures/png.h"
#include "platform/native_file.h"
#include "recording/source.h"

namespace control {

namespace {

const std::map<std::string, display::Dots> DotShapes = {{"round", display::Dots::Round},
                                                        {"square", display::Dots::Square}};

struct Arguments {
    std::string file;
    std::string out;
    std::optional<std::uint64_t> from;
    std::optional<std::uint64_t> to;
    std::optional<std::uint64_t> frame;
    ShadeOptions shades;
    ColourOptions palette;
    std::size_t scale = 8;
    std::string dots = "round";
    std::uint64_t sheet = 0;   ///< columns; 0: none
    bool forPictures = false;  ///< an option that only pictures have was given

    std::filesystem::path outFile() const { return native_file::named(out.c_str()); }
    std::string kind() const {
        const std::string name = recording::nameOf(outFile().extension());
        return name.empty() ? name : lowerCase(name.substr(1));
    }
    display::Look look() const {
        return {.palette = coloursOf(palette), .scale = scale, .dots = DotShapes.at(dots)};
    }
};

void checkKind(const Arguments& arguments) {
    const std::string kind = arguments.kind();
    const bool isDump = kind == "txt" || kind == "raw";
    if (!isDump && kind != "png" && kind != "gif") {
        throw Failure(ExitCode::Usage,
                      "\"" + arguments.out + "\" does not tell what is to be written.",
                      "Name a file that ends with .png, .gif, .txt or .raw.");
    }
    if (isDump && arguments.forPictures) {
        throw Failure(ExitCode::Usage, "A dump has no colours, no scale and no shape of dots.",
                      "Leave these options out, or name a .png or .gif.");
    }
    if (arguments.sheet > 0 && kind != "png") {
        throw Failure(ExitCode::Usage, "A contact sheet is a PNG.", "Name a file .png.");
    }
}

/// Written over while it is read, it would lose what is not in the range.
void checkThatOthersAreNamed(const Arguments& arguments) {
    std::error_code error;
    if (std::filesystem::equivalent(native_file::named(arguments.file.c_str()), arguments.outFile(),
                                    error)) {
        throw Failure(ExitCode::Usage, "\"" + arguments.out + "\" is the recording itself.",
                      "Name another file.");
    }
}

/// What was written: how many frames, in which files.
struct Written {
    std::uint64_t frames = 0;
    std::uint64_t leftOut = 0;
    std::string files;
};

/// One job: what is exported, and the bar over it.
class Export {
public:
    Export(Session& session, recording::Recording& dump, const recording::Range& range,
           const Arguments& arguments)
        : session_(session), dump_(dump), range_(range), arguments_(arguments) {}

    Written run() {
        const std::string kind = arguments_.kind();
        if (kind == "gif") {
            return gif();
        }
        return kind == "png" ? png() : converted(kind);
    }

private:
    std::uint64_t count() const { return range_.last - range_.first + 1; }

    void work(const std::function<bool(const recording::Progress&)>& job) {
        withProgress(session_, arguments_.out, Progress::Unit::Frames, job);
    }

    pictures::Sequence sequence() {
        const DigitEntries entries = entriesOf(session_, dump_, range_, arguments_.shades);
        return pictures::sequenceOf(dump_, range_, entries);
    }

    Written gif() {
        const auto frames = sequence();
        pictures::GifResult result;
        work([&](const recording::Progress& progress) {
            result = pictures::writeGif(frames, arguments_.look(), arguments_.outFile(), progress);
            return result.finished;
        });
        return {result.frames, result.leftOut, arguments_.out};
    }

    Written png() {
        const auto frames = sequence();
        const display::Look look = arguments_.look();
        const bool several = arguments_.sheet == 0 && count() > 1;
        work([&](const recording::Progress& progress) {
            if (arguments_.sheet > 0) {
                return pictures::writeSheet(frames, look, arguments_.sheet, arguments_.outFile(),
                                            progress);
            }
            return several ? pictures::writePngs(frames, look, arguments_.outFile(), progress)
                           : pictures::writePng(frames, 0, look, arguments_.outFile(), progress);
        });
        return {count(), 0, several ? numberedNames() : arguments_.out};
    }

    std::string numberedNames() const {
        return recording::nameOf(pictures::numbered(arguments_.outFile(), 0)) + " to " +
               recording::nameOf(pictures::numbered(arguments_.outFile(), count() - 1));
    }

    Written converted(const std::string& kind) {
        const auto mode = modeOf(arguments_.shades);
        dump_.setMode(mode);
        work([&](const recording::Progress& progress) {
            return recording::writeDump(
                dump_, range_, kind == "txt" ? recording::Kind::Text : recording::Kind::Raw,
                arguments_.outFile(), mode, progress);
        });
        return {count(), 0, arguments_.out};
    }

    Session& session_;
    recording::Recording& dump_;
    recording::Range range_;
    const Arguments& arguments_;
};

void tell(Session& session, const Arguments& arguments, const recording::Range& range,
          const Written& written) {
    session.document()["export"] = {{"file", arguments.file},   {"out", arguments.out},
                                    {"from", range.first},      {"to", range.last},
                                    {"frames", written.frames}, {"leftOut", written.leftOut}};
    std::string message = "Wrote " + std::to_string(written.frames) +
                          (written.frames == 1 ? " frame to " : " frames to ") + written.files;
    if (written.leftOut > 0) {
        message += "; " + std::to_string(written.leftOut) +
                   " were left out, because a GIF shows 50 a second at most";
    }
    session.done(message + ".");
}

ExitCode exportDump(Session& session, const Arguments& arguments) {
    checkKind(arguments);
    checkThatOthersAreNamed(arguments);
    const auto dump = openRecording(session, arguments.file);
    const auto range = arguments.frame
                           ? rangeOf(*dump, arguments.file, arguments.frame, arguments.frame)
                           : rangeOf(*dump, arguments.file, arguments.from, arguments.to);
    if (session.options().dryRun) {
        session.output().startDryRun();
        session.output().message("Would write \"" + arguments.out + "\".");
        return ExitCode::Done;
    }
    const Written written = Export(session, *dump, range, arguments).run();
    tell(session, arguments, range, written);
    if (!dump->missing().empty()) {
        session.done(dump->missing());
    }
    return ExitCode::Done;
}

void addRange(CLI::App& app, Arguments& arguments) {
    auto* const from =
        app.add_option("--from", arguments.from, "The first frame, from 0 on")->type_name("N");
    auto* const to =
        app.add_option("--to", arguments.to, "The last frame, which is included")->type_name("N");
    app.add_option("--frame", arguments.frame, "A single frame")
        ->type_name("N")
        ->excludes(from)
        ->excludes(to);
}

}  // namespace

void defineDumpExport(CLI::App& app, Action& chosen) {
    constexpr std::uint64_t MostColumns = 1000000;
    auto arguments = std::make_shared<Arguments>();
    app.add_option("FILE", arguments->file, "A recording, text or raw")->required();
    app.add_option("--out", arguments->out, "What to write: .png, .gif, .txt or .raw")
        ->required()
        ->type_name("FILE");
    addRange(app, *arguments);
    addShadeOptions(app, arguments->shades);
    addColourOptions(app, arguments->palette);
    auto* const scale =
        app.add_option("--scale", arguments->scale, "Pixels from dot to dot, 1 to 256; otherwise 8")
            ->check(CLI::Range(std::size_t{1}, display::Painter::MaxScale).description(""))
            ->type_name("S");
    auto* const dots = app.add_option("--dots", arguments->dots, "Their shape, otherwise round")
                           ->check(CLI::IsMember(DotShapes).description(""))
                           ->type_name("round|square");
    app.add_option("--sheet", arguments->sheet, "One PNG with so many frames side by side")
        ->check(CLI::Range(std::uint64_t{1}, MostColumns).description(""))
        ->type_name("COLUMNS");
    app.callback([&chosen, arguments, scale, dots] {
        arguments->forPictures = scale->count() > 0 || dots->count() > 0 ||
                                 !arguments->palette.palette.empty() ||
                                 !arguments->palette.preset.empty();
        chosen = [arguments](Session& session) { return exportDump(session, *arguments); };
    });
}

}  // namespace control
