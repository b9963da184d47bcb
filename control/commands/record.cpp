#include <CLI/CLI.hpp>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>

#include "control/commands/commands.h"
#include "control/commands/recording.h"
#include "control/files.h"
#include "control/names.h"
#include "control/settings_exchange.h"
#include "device/frames.h"

namespace control {

namespace {

struct Arguments {
    std::string folder = ".";
    RecordingLimits limits;
    std::string mode;
    bool reconnect = false;
};

/// A signal ends a recording, and is no failure, however early it comes.
ExitCode endBeforeTheFirstFrame(Session& session) {
    session.document()["record"] = {{"mode", nullptr}, {"text", nullptr}, {"raw", nullptr},
                                    {"frames", 0},     {"refused", 0},    {"lost", 0},
                                    {"seconds", 0.0},  {"rate", 0.0},     {"endedBy", "signal"}};
    session.done("Ended before the first frame.");
    return ExitCode::Done;
}

ExitCode record(Session& session, const Arguments& arguments) {
    requireFolder(arguments.folder);
    const auto wanted =
        arguments.mode.empty() ? std::nullopt : std::optional(lookUp(modeNames(), arguments.mode));
    std::unique_ptr<Channel> channel;
    std::uint8_t mode = 0;
    try {
        channel = session.connect();
        mode = readSettings(*channel).record.inputMode;
        if (wanted) {
            mode = *wanted;
            channel->send(frames::command(Command::SelectMode, mode));
        }
    } catch (const Interrupted&) {
        return endBeforeTheFirstFrame(session);
    }
    Recording recording(session, std::move(channel), arguments.folder, mode, arguments.limits);
    if (arguments.reconnect) {
        recording.goOnAfterUnplugging(wanted.has_value());
    }
    return recording.run();
}

}  // namespace

void defineRecord(CLI::App& app, Action& chosen) {
    auto arguments = std::make_shared<Arguments>();
    app.add_option("FOLDER", arguments->folder,
                   "Where the files go; without it the current folder");
    app.add_option("--frames", arguments->limits.frames, "End after so many frames")
        ->check(CLI::Range(1U, 1000000000U).description(""))
        ->type_name("N");
    app.add_option("--seconds", arguments->limits.seconds, "End after so many seconds")
        ->check(isTime)
        ->type_name("S");
    app.add_option("--mode", arguments->mode, "Select this input mode first")->type_name("MODE");
    app.add_flag("--reconnect", arguments->reconnect,
                 "Go on when a controller that was pulled out comes back");
    app.callback([&chosen, arguments] {
        chosen = [arguments](Session& session) { return record(session, *arguments); };
    });
}

}  // namespace control
