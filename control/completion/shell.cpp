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
        text += "\n        " + inQuotes(word);
    }
    return text + ")\n";
}

std::string steps(const std::vector<CommandWords>& commands) {
    return steps(commands, "            ", ") command=", " ;;\n");
}

std::string values(const CommandWords& command) {
    std::string text;
    for (const OptionWord& option : command.options) {
        if (option.takesValue) {
            text += "        " + inQuotes(command.path + " " + option.text) +
                    ") kind=" + inQuotes("value-" + kindText(option.value)) + " ;;\n";
        }
    }
    return text;
}

}  // namespace control::completion
