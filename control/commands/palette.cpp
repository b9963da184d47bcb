#include <CLI/CLI.hpp>
#include <memory>
#include <nlohmann/json.hpp>

#include "control/commands/commands.h"
#include "control/files.h"
#include "control/names.h"
#include "control/recordings.h"
#include "device/frames.h"
#include "ui/palette_file.h"

namespace control {

namespace {

struct Arguments {
    std::string file;
    bool store = false;
    std::string write;
    std::string preset;
};

ExitCode send(Session& session, const Arguments& arguments) {
    const presets::Colours colours = readPalette(arguments.file);
    const auto channel = session.connect();
    if (arguments.store) {
        channel->send(frames::command(Command::SelectPreset));
    }
    channel->send(frames::palette(colours));
    if (arguments.store) {
        channel->send(frames::command(Command::StorePalette));
    }
    session.document()["palette"] = {{"file", arguments.file}, {"stored", arguments.store}};
    session.done(std::string(arguments.store ? "Sent and stored" : "Sent") + " the palette in \"" +
                 arguments.file + "\".");
    return ExitCode::Done;
}

ExitCode write(Session& session, const Arguments& arguments) {
    const std::uint8_t preset = lookUp(presetNames(), arguments.preset);
    if (!session.options().dryRun) {
        writeWhole(arguments.write, palette_file::encode(presets::colours(preset)));
    } else {
        session.output().startDryRun();
        session.output().message("Would write \"" + arguments.write + "\".");
    }
    session.document()["palette"] = {{"file", arguments.write},
                                     {"preset", nameJson(presetNames(), preset)}};
    session.done("Wrote " + std::string(labelOf(presetNames(), preset)) + " to \"" +
                 arguments.write + "\".");
    return ExitCode::Done;
}

}  // namespace

void definePalette(CLI::App& app, Action& chosen) {
    auto arguments = std::make_shared<Arguments>();
    auto* const file = app.add_option("FILE", arguments->file, "The palette file to send");
    auto* const store =
        app.add_flag("--store", arguments->store, "Store it on the controller, too");
    auto* const writing =
        app.add_option("--write", arguments->write, "Write a palette file; needs no controller")
            ->type_name("FILE");
    auto* const preset =
        app.add_option("--preset", arguments->preset, "The preset that is written: number or name")
            ->type_name("PRESET");
    writing->needs(preset)->excludes(file)->excludes(store);
    preset->needs(writing);
    app.callback([&chosen, arguments, file, writing] {
        if (file->count() == 0 && writing->count() == 0) {
            throw CLI::RequiredError("FILE or --write");
        }
        const auto action = writing->count() > 0 ? write : send;
        chosen = [arguments, action](Session& session) { return action(session, *arguments); };
    });
}

}  // namespace control
