#include "control/commands/dump.h"

#include <CLI/CLI.hpp>

#include "control/commands/commands.h"

namespace control {

void defineDump(CLI::App& app, Action& chosen) {
    const auto add = [&](const char* name, const char* description) -> CLI::App& {
        return *app.add_subcommand(name, description)->group("Commands");
    };
    defineDumpInfo(add("info", "Say what is in recordings, and what is damaged"), chosen);
    defineDumpShow(add("show", "Show a frame in the terminal, or play all"), chosen);
    defineDumpExport(add("export", "Make pictures of a recording, cut it or convert it"), chosen);
    app.require_subcommand(1);
}

}  // namespace control
