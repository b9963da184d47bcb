#include "control/completion/words.h"

namespace control::completion {

namespace {

constexpr const char* Start = R"(# Completion of lumadotctl for fish.

# The command that stands in front of the cursor, and nothing else.
function __lumadotctl_command
    set -l command ''
    for word in (commandline -opc)[2..-1]
        switch "$command $word"
)";

constexpr const char* AfterSteps = R"(        end
    end
    echo $command
end

function __lumadotctl_at
    test (__lumadotctl_command) = "$argv[1]"
end

complete -c lumadotctl -f
)";

std::string lines(const std::string& function, const std::vector<std::string>& words) {
    std::string text = "\nfunction " + function + "\n    printf '%s\\n'";
    for (const std::string& word : words) {
        text += " \\\n        " + inQuotes(word);
    }
    return text + "\nend\n";
}

/// Where a line of completions holds, and what it offers.
std::string complete(const std::string& path) {
    return "complete -c lumadotctl -n " + inQuotes("__lumadotctl_at " + inQuotes(path));
}

std::string offers(const Value& value) {
    switch (value.kind) {
        case Value::Kind::Modes:
            return " -a '(__lumadotctl_modes)'";
        case Value::Kind::Presets:
            return " -a '(__lumadotctl_presets)'";
        case Value::Kind::Files:
            return " -F";
        case Value::Kind::Folders:
            return " -a '(__fish_complete_directories)'";
        case Value::Kind::Words: {
            std::string text;
            for (const std::string& word : value.words) {
                text += (text.empty() ? "" : " ") + word;
            }
            return " -a " + inQuotes(text);
        }
        case Value::Kind::None:
            break;
    }
    return "";
}

std::string completions(const CommandWords& command) {
    const std::string start = complete(command.path);
    std::string text;
    for (const Word& next : command.commands) {
        text += start + " -a " + next.text + " -d " + inQuotes(next.description) + "\n";
    }
    if (command.operand.kind != Value::Kind::None) {
        text += start + offers(command.operand) + "\n";
    }
    for (const OptionWord& option : command.options) {
        text += start + " -l " + option.text.substr(2) + (option.takesValue ? " -r" : "") +
                offers(option.value) + " -d " + inQuotes(option.description) + "\n";
    }
    return text;
}

}  // namespace

std::string fishScript(const std::vector<CommandWords>& commands) {
    std::string text =
        Start + steps(commands, "            case ", "\n                set command ", "\n") +
        AfterSteps + lines("__lumadotctl_modes", modeWords()) +
        lines("__lumadotctl_presets", presetWords()) + "\n";
    for (const CommandWords& command : commands) {
        text += completions(command);
    }
    return text;
}

}  // namespace control::completion
