#include "control/completion/words.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "control/names.h"

namespace control::completion {

namespace {

/// From the name of an operand, or of an option's type.
Value valueOf(const std::string& type) {
    using enum Value::Kind;
    if (type == "MODE") {
        return {Modes};
    }
    if (type == "PRESET") {
        return {Presets};
    }
    if (type == "FILE") {
        return {Files};
    }
    if (type == "FOLDER") {
        return {Folders};
    }
    const bool isWords = type.find('|') != std::string::npos &&
                         std::ranges::none_of(type, [](char c) { return c >= 'A' && c <= 'Z'; });
    return isWords ? Value{Words, CLI::detail::split(type, '|')} : Value{};
}

bool takesValue(const CLI::Option& option) { return option.get_items_expected_max() > 0; }

std::vector<OptionWord> optionsOf(const CLI::App& app) {
    std::vector<OptionWord> options;
    for (const CLI::Option* const option : app.get_options()) {
        for (const std::string& name : option->get_lnames()) {
            OptionWord word{{"--" + name, option->get_description()}, takesValue(*option)};
            word.value = word.takesValue ? valueOf(option->get_type_name()) : Value{};
            options.push_back(std::move(word));
        }
    }
    return options;
}

Value operandOf(const CLI::App& app) {
    for (const CLI::Option* const option : app.get_options()) {
        if (option->get_positional()) {
            return valueOf(option->get_name(true));
        }
    }
    return {};
}

void collect(const CLI::App& app, const std::string& path, const std::vector<OptionWord>& global,
             std::vector<CommandWords>& all) {
    CommandWords words{
        .path = path, .commands = {}, .options = optionsOf(app), .operand = operandOf(app)};
    std::ranges::copy_if(global, std::back_inserter(words.options), [&](const OptionWord& option) {
        return std::ranges::find(words.options, option.text, &Word::text) == words.options.end();
    });
    const auto commands = app.get_subcommands([](const CLI::App* /*each*/) { return true; });
    for (const CLI::App* const command : commands) {
        words.commands.push_back({command->get_name(), command->get_description()});
    }
    all.push_back(std::move(words));
    for (const CLI::App* const command : commands) {
        collect(*command, (path.empty() ? "" : path + " ") + command->get_name(), global, all);
    }
}

std::vector<std::string> labelsOf(const Names& names) {
    std::vector<std::string> labels;
    std::ranges::transform(names.labels, std::back_inserter(labels),
                           [](const Name& name) { return std::string(name.text); });
    return labels;
}

}  // namespace

std::vector<CommandWords> wordsOf(const CLI::App& app) {
    std::vector<OptionWord> global = optionsOf(app);
    std::erase_if(global, [](const OptionWord& option) { return option.text == "--version"; });
    std::vector<CommandWords> all;
    collect(app, "", global, all);
    return all;
}

std::vector<std::string> modeWords() { return labelsOf(modeNames()); }
std::vector<std::string> presetWords() { return labelsOf(presetNames()); }

std::string inQuotes(std::string_view text) {
    std::string result = "'";
    for (const char letter : text) {
        result += letter == '\'' ? R"('\'')" : std::string(1, letter);
    }
    return result + "'";
}

std::string steps(const std::vector<CommandWords>& commands, const std::string& before,
                  const std::string& between, const std::string& after) {
    std::string text;
    for (const CommandWords& command : commands) {
        for (const Word& next : command.commands) {
            const std::string words = command.path + " " + next.text;
            const std::string path = command.path.empty() ? next.text : words;
            for (const std::string& part :
                 {before, inQuotes(words), between, inQuotes(path), after}) {
                text += part;
            }
        }
    }
    return text;
}

}  // namespace control::completion
