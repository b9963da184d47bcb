#include "control/completion/shell.h"

namespace control::completion {

std::string joined(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words) {
        text += (text.empty() ? "" : " ") + word;
    }
    return text;
}

std::string kindText(const Value& value) {
    switch (value.kind) {
        case Value::Kind::Modes:
            return "modes";
        case Value::Kind::Presets:
            return "presets";
        case Value::Kind::Files:
            return "files";
        case Value::Kind::Folders:
            return "folders";
        case Value::Kind::Words:
            return "words:" + joined(value.words);
        case Value::Kind::None:
            break;
    }
    return "none";
}

std::string array(const std::string& name, const std::vector<std::string>& words) {
    std::string text = "    local -a " + name + "=(";
    for (const std::string& word : words) {
        text += "\n        " + quoted(word);
    }
    return text + ")\n";
}

std::string steps(const std::vector<CommandWords>& commands) {
    std::string text;
    for (const CommandWords& command : commands) {
        for (const Word& next : command.commands) {
            const std::string path =
                command.path.empty() ? next.text : command.path + " " + next.text;
            text += "            " + quoted(command.path + " " + next.text) +
                    ") command=" + quoted(path) + " ;;\n";
        }
    }
    return text;
}

std::string values(const CommandWords& command) {
    std::string text;
    for (const OptionWord& option : command.options) {
        if (option.takesValue) {
            text += "        " + quoted(command.path + " " + option.text) +
                    ") kind=" + quoted("value-" + kindText(option.value)) + " ;;\n";
        }
    }
    return text;
}

}  // namespace control::completion
