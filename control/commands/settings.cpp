#include <CLI/CLI.hpp>
#include <array>
#include <memory>
#include <nlohmann/json.hpp>

#include "control/commands/commands.h"
#include "control/device_text.h"
#include "control/files.h"
#include "control/names.h"
#include "control/text.h"
#include "device/frames.h"

namespace control {

namespace {

using RecordBytes = std::array<std::uint8_t, settings::RecordSize>;

struct Arguments {
    std::string file;
    bool store = false;
};

/// As a settings read would have it.
Settings readFile(const std::string& path) {
    // One byte more than there may be, to tell a longer file.
    const auto bytes = readHead(path, settings::RecordSize + 1);
    if (bytes.size() != settings::RecordSize) {
        throw fileFailure(path, "is no settings file (exactly 23 bytes)",
                          "Save the settings again with lumadotctl settings save.");
    }
    return {.record = settings::fromBytes(std::span(bytes).first<settings::RecordSize>()),
            .isWhole = true,
            .firmware = {}};
}

Json fileJson(const std::string& path, const Settings& settings) {
    Json json = settingsJson(settings);
    json["file"] = path;
    return json;
}

ExitCode save(Session& session, const Arguments& arguments) {
    const Settings settings = readWholeSettings(*session.connect(), "saved");
    writeWhole(arguments.file, settings::bytesOf(settings.record));
    session.document()["settings"] = fileJson(arguments.file, settings);
    session.done("Saved the controller's settings in \"" + arguments.file + "\".");
    return ExitCode::Done;
}

ExitCode load(Session& session, const Arguments& arguments) {
    const Settings settings = readFile(arguments.file);
    const auto channel = session.connect();
    channel->send(frames::settings(settings.record));
    if (arguments.store) {
        session.pause(Milliseconds(wire::StorePause));
        channel->send(frames::command(Command::Store));
    }
    session.document()["settings"] = fileJson(arguments.file, settings);
    session.document()["settings"]["stored"] = arguments.store;
    session.done(std::string(arguments.store ? "Loaded and stored" : "Loaded") +
                 " the settings in \"" + arguments.file + "\".");
    return ExitCode::Done;
}

ExitCode show(Session& session, const Arguments& arguments) {
    const Settings settings = readFile(arguments.file);
    session.document()["settings"] = fileJson(arguments.file, settings);
    session.output().result(settingsText(settings));
    return ExitCode::Done;
}

// Where the settings stand in the record that have a meaning to people.
constexpr std::size_t Mode = 0;
constexpr std::size_t Preset = 1;
constexpr std::size_t Enhancer = 21;
constexpr std::size_t Brightness = 22;

std::string byteName(std::size_t byte) {
    switch (byte) {
        case Mode:
            return "mode";
        case Preset:
            return "preset";
        case Enhancer:
            return "enhancer";
        case Brightness:
            return "brightness";
        default:
            return "byte " + std::to_string(byte);
    }
}

std::string valueText(std::size_t byte, std::uint8_t value) {
    switch (byte) {
        case Mode:
            return numberAndLabel(modeNames(), value);
        case Preset:
            return numberAndLabel(presetNames(), value);
        default:
            return std::to_string(value);
    }
}

/// Tells the differences one by one; returns how many there are.
std::size_t tellDifferences(Session& session, const RecordBytes& file, const RecordBytes& board) {
    Json& differences = session.document()["settings"]["differences"];
    differences = Json::array();
    for (std::size_t byte = 0; byte < file.size(); ++byte) {
        if (file[byte] != board[byte]) {
            differences.push_back({{"byte", byte},
                                   {"name", byteName(byte)},
                                   {"file", file[byte]},
                                   {"controller", board[byte]}});
            session.output().result(byteName(byte) + ": " + valueText(byte, file[byte]) +
                                    " in the file, " + valueText(byte, board[byte]) +
                                    " on the controller");
        }
    }
    return differences.size();
}

ExitCode diff(Session& session, const Arguments& arguments) {
    const Settings file = readFile(arguments.file);
    const Settings board = readWholeSettings(*session.connect(), "compared");
    session.document()["settings"]["file"] = arguments.file;
    const bool equal = tellDifferences(session, settings::bytesOf(file.record),
                                       settings::bytesOf(board.record)) == 0;
    session.document()["settings"]["equal"] = equal;
    if (equal) {
        session.done("The controller's settings are those in \"" + arguments.file + "\".");
    }
    return equal ? ExitCode::Done : ExitCode::Failed;
}

void addAction(CLI::App& app, const std::string& name, const std::string& description,
               Action& chosen, ExitCode (*action)(Session&, const Arguments&)) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App* const command = app.add_subcommand(name, description)->group("Commands");
    command->add_option("FILE", arguments->file, "A settings file of 23 bytes")->required();
    if (action == load) {
        command->add_flag("--store", arguments->store, "Store them on the controller, too");
    }
    command->callback([&chosen, arguments, action] {
        chosen = [arguments, action](Session& session) { return action(session, *arguments); };
    });
}

}  // namespace

void defineSettings(CLI::App& app, Action& chosen) {
    addAction(app, "save", "Save the controller's settings in a file", chosen, save);
    addAction(app, "load", "Send the settings in a file to the controller", chosen, load);
    addAction(app, "show", "Show the settings in a file; needs no controller", chosen, show);
    addAction(app, "diff", "Compare a file with the controller's settings", chosen, diff);
    app.require_subcommand(1);
}

}  // namespace control
