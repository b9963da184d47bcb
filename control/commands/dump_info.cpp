// What there is to be said about recordings.

#include <CLI/CLI.hpp>
#include <memory>
#include <nlohmann/json.hpp>

#include "control/commands/dump.h"
#include "control/device_text.h"
#include "control/recordings.h"
#include "control/text.h"

namespace control {

namespace {

using recording::Summary;

const char* kindName(const recording::Recording& dump) {
    return dump.kind() == recording::Kind::Text ? "text" : "raw";
}

Json damagesJson(const recording::Recording& dump) {
    Json all = Json::array();
    for (const recording::Damage& damage : dump.damages()) {
        all.push_back({{"offset", damage.offset}, {"reason", recording::reasonOf(damage)}});
    }
    return all;
}

/// What is not known, or what there is none of, is null.
Json infoJson(const std::string& path, const recording::Recording& dump) {
    const Summary& summary = dump.summary();
    const auto display = dump.display();
    const auto known = [](bool isKnown, const Json& value) { return isKnown ? value : Json(); };
    const bool any = summary.frames > 0;
    const bool several = summary.frames > 1;
    return {{"file", path},
            {"kind", kindName(dump)},
            {"width", display ? Json(display->columns()) : Json()},
            {"height", display ? Json(display->rows) : Json()},
            {"planes", dump.planes() ? Json(*dump.planes()) : Json()},
            {"frames", summary.frames},
            {"firstMs", known(any, summary.firstMs)},
            {"lastMs", known(any, summary.lastMs)},
            {"durationMs", summary.durationMs},
            {"framesPerSecond", known(several, summary.framesPerSecond())},
            {"longestGapMs", known(several, summary.longestGapMs)},
            {"longestGapAfter", known(several, summary.longestGapAfter)},
            {"equalNeighbours", summary.equalNeighbours},
            {"missing", known(!dump.missing().empty(), dump.missing())},
            {"damagedPlaces", dump.damageCount()},
            {"damaged", damagesJson(dump)}};
}

std::string stampText(std::uint32_t stampMs) {
    const std::uint8_t bytes[] = {
        static_cast<std::uint8_t>(stampMs >> 24U), static_cast<std::uint8_t>(stampMs >> 16U),
        static_cast<std::uint8_t>(stampMs >> 8U), static_cast<std::uint8_t>(stampMs)};
    return "0x" + hexDigits(bytes) + " (" + std::to_string(stampMs) + " ms)";
}

/// With the ms, which `decimal` does not show.
std::string secondsText(std::uint64_t ms) {
    const std::string rest = std::to_string(1000 + ms % 1000);
    return std::to_string(ms / 1000) + "." + rest.substr(1) + " s";
}

void tellTimes(Output& output, const Summary& summary) {
    output.result(textLine("First", stampText(summary.firstMs)));
    output.result(textLine("Last", stampText(summary.lastMs)));
    output.result(textLine("Duration", secondsText(summary.durationMs)));
    if (summary.frames > 1) {
        output.result(textLine("Mean rate", decimal(summary.framesPerSecond()) + " a second"));
        output.result(textLine("Longest gap", secondsText(summary.longestGapMs) + " after frame " +
                                                  std::to_string(summary.longestGapAfter)));
    }
    output.result(textLine(
        "Equal", std::to_string(summary.equalNeighbours) + " frames equal the one before"));
}

void tellDamages(Output& output, const recording::Recording& dump) {
    output.result(textLine("Damaged", dump.damageCount() == 0
                                          ? "nothing"
                                          : std::to_string(dump.damageCount()) + " places"));
    for (const recording::Damage& damage : dump.damages()) {
        output.result("  offset " + std::to_string(damage.offset) + ": " +
                      recording::reasonOf(damage));
    }
    if (dump.damageCount() > dump.damages().size()) {
        output.result("  and " + std::to_string(dump.damageCount() - dump.damages().size()) +
                      " more behind");
    }
}

void tell(Output& output, const std::string& path, const recording::Recording& dump) {
    const auto display = dump.display();
    output.result(textLine("File", path));
    output.result(textLine("Kind", kindName(dump)));
    output.result(textLine("Size", display ? std::to_string(display->columns()) + " x " +
                                                 std::to_string(display->rows) + " dots"
                                           : "unknown"));
    if (dump.planes()) {
        output.result(textLine("Planes", std::to_string(*dump.planes())));
    }
    output.result(textLine("Frames", std::to_string(dump.frames())));
    if (dump.frames() > 0) {
        tellTimes(output, dump.summary());
    }
    tellDamages(output, dump);
    if (!dump.missing().empty()) {
        output.result(textLine("Missing", dump.missing()));
    }
}

/// One of several, which are told whatever comes of one.
ExitCode tellOneOf(Session& session, const std::string& path) {
    try {
        const auto dump = openRecording(session, path);
        session.document().push_back(infoJson(path, *dump));
        tell(session.output(), path, *dump);
        return ExitCode::Done;
    } catch (const recording::Error& error) {
        const Failure failure = failureOf(error);
        session.output().failure(failure);
        session.document().back()["file"] = path;
        return failure.code;
    }
}

ExitCode info(Session& session, const std::vector<std::string>& paths) {
    if (paths.size() == 1) {
        const auto dump = openRecording(session, paths.front());
        session.document() = infoJson(paths.front(), *dump);
        tell(session.output(), paths.front(), *dump);
        return ExitCode::Done;
    }
    session.document() = Json::array();
    ExitCode code = ExitCode::Done;
    for (const std::string& path : paths) {
        if (&path != &paths.front()) {
            session.output().result("");
        }
        const ExitCode each = tellOneOf(session, path);
        code = code == ExitCode::Done ? each : code;
    }
    return code;
}

}  // namespace

void defineDumpInfo(CLI::App& app, Action& chosen) {
    auto paths = std::make_shared<std::vector<std::string>>();
    app.add_option("FILE", *paths, "Recordings, text or raw")->required();
    app.callback(
        [&chosen, paths] { chosen = [paths](Session& session) { return info(session, *paths); }; });
}

}  // namespace control
