#include "control/completion/shell.h"

namespace control::completion {

namespace {

constexpr const char* Start = R"(#compdef lumadotctl
# Completion of lumadotctl for zsh.

_lumadotctl() {
    local command='' kind='' i
    local -a options subcommands
    for ((i = 2; i < CURRENT; i++)); do
        case "$command ${words[i]}" in
)";

constexpr const char* End = R"(    esac
    # Any part of a name will do, in any case.
    local -a match=(-M 'm:{[:lower:]}={[:upper:]} l:|=* r:|=*')
    if [[ ${words[CURRENT]} == -* && $kind != value-* ]]; then
        _describe -o option options
        return
    fi
    case "${kind#value-}" in
        modes) compadd "${match[@]}" -a modes ;;
        presets) compadd "${match[@]}" -a presets ;;
        files) _files ;;
        folders) _files -/ ;;
        commands) _describe command subcommands ;;
        words:*) compadd -- ${=kind#*words:} ;;
    esac
}

# Sourced, or read from a folder of functions.
if [[ ${funcstack[1]} == _lumadotctl ]]; then
    _lumadotctl "$@"
else
    compdef _lumadotctl lumadotctl
fi
)";

/// "word:description", as _describe reads it.
std::string described(const Word& word) {
    std::string text;
    for (const char letter : word.text) {
        text += letter == ':' ? "\\:" : std::string(1, letter);
    }
    return inQuotes(text + ":" + word.description);
}

template <class Words>
std::string describedArray(const std::string& name, const Words& words) {
    std::string text = "            " + name + "=(";
    for (const Word& word : words) {
        text += "\n                " + described(word);
    }
    return text + ")\n";
}

std::string choices(const CommandWords& command) {
    const std::string kind = command.commands.empty() ? kindText(command.operand) : "commands";
    return "        " + inQuotes(command.path) + ")\n" +
           describedArray("options", command.options) +
           describedArray("subcommands", command.commands) + "            kind=" + inQuotes(kind) +
           "\n            ;;\n";
}

}  // namespace

std::string zshScript(const std::vector<CommandWords>& commands) {
    std::string text = Start + steps(commands) + "        esac\n    done\n" +
                       array("modes", modeWords()) + array("presets", presetWords()) +
                       "    case \"$command\" in\n";
    for (const CommandWords& command : commands) {
        text += choices(command);
    }
    text += "    esac\n    case \"$command ${words[CURRENT - 1]}\" in\n";
    for (const CommandWords& command : commands) {
        text += values(command);
    }
    return text + End;
}

}  // namespace control::completion
