#ifndef LUMADOT_CONTROL_COMPLETION_SHELL_H
#define LUMADOT_CONTROL_COMPLETION_SHELL_H

#include <string>
#include <vector>

#include "control/completion/words.h"

// What the scripts for bash and zsh have in common.
namespace control::completion {

/// With blanks between.
std::string joined(const std::vector<std::string>& words);

/// "modes", "files", "words:on off"; "none" where nothing is known.
std::string kindText(const Value& value);

/// An array's definition.
std::string array(const std::string& name, const std::vector<std::string>& words);

/// The cases of `"$command $word"` that tell which command it is.
std::string steps(const std::vector<CommandWords>& commands);

/// The cases of `"$command $option"` that tell what stands behind an option.
std::string values(const CommandWords& command);

}  // namespace control::completion

#endif
