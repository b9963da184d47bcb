#include <CLI/CLI.hpp>
#include <array>
#include <memory>
#include <nlohmann/json.hpp>

#include "control/command_line.h"
#include "control/commands/commands.h"
#include "control/completion/words.h"

namespace control {

namespace {

struct Shell {
    const char* name;
    std::string (*script)(const std::vector<completion::CommandWords>&);
};

constexpr std::array Shells = std::to_array<Shell>({
    {"bash", completion::bashScript},
    {"zsh", completion::zshScript},
    {"fish", completion::fishScript},
});

ExitCode printScript(Session& session, const Shell& shell) {
    Options options;
    Action chosen;
    const auto app = makeCommandLine(options, chosen);
    std::string script = shell.script(completion::wordsOf(*app));
    session.document()["completion"] = {{"shell", shell.name}, {"script", script}};
    script.pop_back();  // The output ends the last line.
    session.output().result(script);
    return ExitCode::Done;
}

}  // namespace

void defineCompletion(CLI::App& app, Action& chosen) {
    auto name = std::make_shared<std::string>();
    app.add_option("bash|zsh|fish", *name, "The shell")
        ->required()
        ->check(CLI::IsMember({"bash", "zsh", "fish"}))
        ->type_name("");
    app.callback([&chosen, name] {
        for (const Shell& shell : Shells) {
            if (*name == shell.name) {
                chosen = [&shell](Session& session) { return printScript(session, shell); };
            }
        }
    });
}

}  // namespace control
