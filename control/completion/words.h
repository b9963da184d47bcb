#ifndef LUMADOT_CONTROL_COMPLETION_WORDS_H
#define LUMADOT_CONTROL_COMPLETION_WORDS_H

#include <string>
#include <string_view>
#include <vector>

namespace CLI {
class App;
}

namespace control::completion {

/// What can stand in a place of the command line.
struct Value {
    enum class Kind { None, Modes, Presets, Files, Folders, Words };
    Kind kind = Kind::None;
    std::vector<std::string> words = {};  ///< of Kind::Words
};

struct Word {
    std::string text;
    std::string description;
};

/// An option, and what stands behind it.
struct OptionWord : Word {
    bool takesValue = false;
    Value value = {};
};

/// A command with all that can follow it.
struct CommandWords {
    std::string path;  ///< "", "mode", "settings save"
    std::vector<Word> commands;
    std::vector<OptionWord> options;  ///< those that stand for every command, too
    Value operand;
};

/// The program itself, then every command of the command line.
std::vector<CommandWords> wordsOf(const CLI::App& app);

std::vector<std::string> modeWords();
std::vector<std::string> presetWords();

/// In single quotes, as all three shells take it.
std::string inQuotes(std::string_view text);

/// For every command and each word that leads on from it: `before`, both in quotes, `between`, the
/// command that they make in quotes, `after`.
std::string steps(const std::vector<CommandWords>& commands, const std::string& before,
                  const std::string& between, const std::string& after);

// The scripts.
std::string bashScript(const std::vector<CommandWords>& commands);
std::string zshScript(const std::vector<CommandWords>& commands);
std::string fishScript(const std::vector<CommandWords>& commands);

}  // namespace control::completion

#endif
