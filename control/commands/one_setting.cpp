// The settings that a command of their own sends or shows.

#include <CLI/CLI.hpp>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "control/commands/commands.h"
#include "control/device_text.h"
#include "control/names.h"
#include "device/frames.h"

namespace control {

namespace {

ExitCode showNamed(Session& session, const char* key, const Names& names,
                   std::uint8_t configDescriptor::*field) {
    const Settings settings = readSettings(*session.connect());
    const std::uint8_t number = settings.record.*field;
    session.document()[key] = nameJson(names, number);
    session.output().result(numberAndLabel(names, number));
    return ExitCode::Done;
}

ExitCode select(Session& session, const char* key, const Names& names, Command command,
                const std::string& text) {
    const std::uint8_t number = lookUp(names, text);
    session.connect()->send(frames::command(command, number));
    session.document()[key] = nameJson(names, number);
    session.done("Selected " + std::string(names.kind) + " " + std::to_string(number) + " \"" +
                 std::string(labelOf(names, number)) + "\".");
    return ExitCode::Done;
}

ExitCode showBrightness(Session& session) {
    const Settings settings = readSettings(*session.connect());
    session.document()["brightness"] = settings.record.brightness;
    session.output().result(std::to_string(settings.record.brightness));
    return ExitCode::Done;
}

ExitCode setBrightness(Session& session, int level) {
    session.connect()->send(frames::brightness(level));
    session.document()["brightness"] = level;
    session.done("Set the brightness to " + std::to_string(level) + ".");
    // So that the frames of a script that turns it up keep the distance that the window keeps.
    try {
        session.pause(Milliseconds(wire::BrightnessPause));
    } catch (const Interrupted&) {
        return ExitCode::Done;
    }
    return ExitCode::Done;
}

ExitCode showEnhancer(Session& session) {
    const Settings settings = readSettings(*session.connect());
    const bool on = settings.record.enhancer != 0;
    session.document()["enhancer"] = on;
    session.output().result(on ? "on" : "off");
    return ExitCode::Done;
}

/// There is no command for it alone.
ExitCode switchEnhancer(Session& session, bool on) {
    const auto channel = session.connect();
    Settings settings = readWholeSettings(*channel, "written back");
    settings.record.enhancer = on ? 1 : 0;
    channel->send(frames::settings(settings.record));
    session.document()["enhancer"] = on;
    session.done(std::string("Switched the signal enhancer ") + (on ? "on." : "off."));
    return ExitCode::Done;
}

/// A command that shows without its operand, and sends with it.
template <class Value>
void defineSetting(CLI::App& app, Action& chosen, CLI::Option* operand,
                   std::shared_ptr<Value> value, ExitCode (*show)(Session&),
                   ExitCode (*send)(Session&, const Value&)) {
    app.callback([&chosen, operand, value, show, send] {
        chosen = operand->count() == 0 ? Action(show)
                                       : [=](Session& session) { return send(session, *value); };
    });
}

}  // namespace

void defineMode(CLI::App& app, Action& chosen) {
    auto mode = std::make_shared<std::string>();
    auto* const operand = app.add_option("MODE", *mode, "Number, name, or part of a name");
    defineSetting<std::string>(
        app, chosen, operand, mode,
        [](Session& session) {
            return showNamed(session, "mode", modeNames(), &configDescriptor::inputMode);
        },
        [](Session& session, const std::string& text) {
            return select(session, "mode", modeNames(), Command::SelectMode, text);
        });
}

void definePreset(CLI::App& app, Action& chosen) {
    auto preset = std::make_shared<std::string>();
    auto* const operand = app.add_option("PRESET", *preset, "Number, name, or part of a name");
    defineSetting<std::string>(
        app, chosen, operand, preset,
        [](Session& session) {
            return showNamed(session, "preset", presetNames(), &configDescriptor::paletteIndex);
        },
        [](Session& session, const std::string& text) {
            return select(session, "preset", presetNames(), Command::SelectPreset, text);
        });
}

void defineBrightness(CLI::App& app, Action& chosen) {
    auto level = std::make_shared<int>(0);
    auto* const operand = app.add_option("LEVEL", *level, "10 to 255")
                              ->check(CLI::Range(settings::MinBrightness, settings::MaxBrightness))
                              ->type_name("");
    defineSetting<int>(
        app, chosen, operand, level, showBrightness,
        [](Session& session, const int& value) { return setBrightness(session, value); });
}

void defineEnhancer(CLI::App& app, Action& chosen) {
    auto state = std::make_shared<std::string>();
    auto* const operand = app.add_option("on|off", *state, "What to switch it to")
                              ->check(CLI::IsMember({"on", "off"}))
                              ->type_name("");
    defineSetting<std::string>(app, chosen, operand, state, showEnhancer,
                               [](Session& session, const std::string& value) {
                                   return switchEnhancer(session, value == "on");
                               });
}

}  // namespace control
