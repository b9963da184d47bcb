#include "control/completion/shell.h"

namespace control::completion {

namespace {

constexpr const char* Start = R"(# Completion of lumadotctl for bash.

# _lumadotctl_names TYPED NAME...: the names that start with what was typed, or the one that holds it.
_lumadotctl_names() {
    local typed=$1 quote='' name
    local -a starting=() holding=()
    shift
    [[ $typed == [\"\']* ]] && quote=${typed:0:1}
    typed=${typed#"$quote"}
    typed=${typed//\\/}
    for name; do
        [[ ${name,,} == "${typed,,}"* ]] && starting+=("$name")
        [[ ${name,,} == *"${typed,,}"* ]] && holding+=("$name")
    done
    ((${#starting[@]} == 0 && ${#holding[@]} == 1)) && starting=("${holding[0]}")
    for name in "${starting[@]}"; do
        [[ -z $quote ]] && name=$(printf %q "$name")
        COMPREPLY+=("$name")
    done
}

_lumadotctl() {
    local typed=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
    local command='' words='' kind='' i
    COMPREPLY=()
    for ((i = 1; i < COMP_CWORD; i++)); do
        case "$command ${COMP_WORDS[i]}" in
)";

constexpr const char* End = R"(    esac
    if [[ $typed == -* && $kind != value-* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$words" -- "$typed")
        return
    fi
    case "${kind#value-}" in
        modes) _lumadotctl_names "$typed" "${modes[@]}" ;;
        presets) _lumadotctl_names "$typed" "${presets[@]}" ;;
        files | folders)
            local what=-f
            [[ $kind == *folders ]] && what=-d
            compopt -o filenames
            mapfile -t COMPREPLY < <(compgen "$what" -- "$typed")
            ;;
        words:*) mapfile -t COMPREPLY < <(compgen -W "${kind#*words:}" -- "$typed") ;;
    esac
}

complete -F _lumadotctl lumadotctl
)";

/// The options of a command, and what its operands are.
std::string choices(const CommandWords& command) {
    std::vector<std::string> options;
    for (const OptionWord& option : command.options) {
        options.push_back(option.text);
    }
    std::vector<std::string> words;
    for (const Word& next : command.commands) {
        words.push_back(next.text);
    }
    const std::string kind = words.empty() ? kindText(command.operand) : "words:" + joined(words);
    return "        " + inQuotes(command.path) +
           ")\n            words=" + inQuotes(joined(options)) +
           "\n            kind=" + inQuotes(kind) + "\n            ;;\n";
}

}  // namespace

std::string bashScript(const std::vector<CommandWords>& commands) {
    std::string text = Start + steps(commands) + "        esac\n    done\n" +
                       array("modes", modeWords()) + array("presets", presetWords()) +
                       "    case \"$command\" in\n";
    for (const CommandWords& command : commands) {
        text += choices(command);
    }
    text += "    esac\n    case \"$command $before\" in\n";
    for (const CommandWords& command : commands) {
        text += values(command);
    }
    return text + End;
}

}  // namespace control::completion
