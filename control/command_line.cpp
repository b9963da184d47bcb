#include "control/command_line.h"

#include <CLI/CLI.hpp>

#include "control/commands/commands.h"

namespace control {

namespace {

/// Shows an option with the name of its value, and no more.
class Formatter : public CLI::Formatter {
    std::string make_option_opts(const CLI::Option* option) const override {
        const bool hasValue = !option->get_positional() && option->get_items_expected_max() > 0;
        return hasValue ? " " + option->get_type_name() : "";
    }
};

/// A range whose limits stand in the description.
CLI::Validator between(unsigned int least, unsigned int most) {
    return CLI::Range(least, most).description("");
}

void addOptions(CLI::App& app, Options& options) {
    app.add_option("--device", options.device, "Which controller, when there are several")
        ->type_name("BUS-PORT|UNIQUE-ID");
    app.add_flag("--json", options.json, "Print one JSON document");
    app.add_flag("--quiet", options.quiet, "No messages but errors");
    app.add_flag("--verbose", options.verbose, "Tell every transfer");
    app.add_flag("--dry-run", options.dryRun, "Print the frames, open no controller");
    app.add_option("--timeout", options.timeout,
                   "For every transfer but a dump's: 1 to 600000 ms, otherwise 1000")
        ->check(between(1, 600000))
        ->type_name("MS");
}

}  // namespace

std::unique_ptr<CLI::App> makeCommandLine(Options& options, Action& chosen) {
    auto app = std::make_unique<CLI::App>("Drives the LUMADOT display controller.", "lumadotctl");
    const auto formatter = std::make_shared<Formatter>();
    formatter->label("SUBCOMMAND", "COMMAND");
    formatter->label("Positionals", "Operands");
    formatter->column_width(30);
    app->formatter(formatter);
    app->allow_windows_style_options(false);
    app->set_version_flag("--version", LUMADOT_VERSION, "Print the version and exit");
    app->fallthrough();
    addOptions(*app, options);
    for (const Verb& verb : commands()) {
        verb.define(*app->add_subcommand(verb.name, verb.description)->group("Commands"), chosen);
    }
    app->require_subcommand(1);
    app->footer(
        "lumadotctl COMMAND --help tells more. These options may stand behind a command, too.");
    return app;
}

}  // namespace control
