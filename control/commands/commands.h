#ifndef LUMADOT_CONTROL_COMMANDS_COMMANDS_H
#define LUMADOT_CONTROL_COMMANDS_COMMANDS_H

#include <span>

#include "control/session.h"

namespace CLI {
class App;
}

namespace control {

/// A command of the program. A new one is a file, its declaration below, and a row of the table.
struct Verb {
    const char* name;
    const char* description;
    /// Adds the command's options and operands to `app`; once they have been parsed, `chosen` is
    /// what is to be done. The type names of operands tell the completion what they are: MODE,
    /// PRESET, FILE, FOLDER, "bash|zsh|fish".
    void (*define)(CLI::App& app, Action& chosen);
};

std::span<const Verb> commands();

/// A check of the parser's for a number of seconds: empty when it is one.
std::string isTime(const std::string& text);

// Asking
void defineList(CLI::App& app, Action& chosen);
void defineCheck(CLI::App& app, Action& chosen);
void defineInfo(CLI::App& app, Action& chosen);
// One setting
void defineMode(CLI::App& app, Action& chosen);
void definePreset(CLI::App& app, Action& chosen);
void defineBrightness(CLI::App& app, Action& chosen);
void defineEnhancer(CLI::App& app, Action& chosen);
// One frame, and no operand
void defineStore(CLI::App& app, Action& chosen);
void defineLogo(CLI::App& app, Action& chosen);
void defineReset(CLI::App& app, Action& chosen);
// Files
void definePalette(CLI::App& app, Action& chosen);
void defineSettings(CLI::App& app, Action& chosen);
void defineUpload(CLI::App& app, Action& chosen);
void defineRecord(CLI::App& app, Action& chosen);
// Recordings and pictures
void defineDump(CLI::App& app, Action& chosen);
void definePlay(CLI::App& app, Action& chosen);
void defineShow(CLI::App& app, Action& chosen);
// The shell
void defineCompletion(CLI::App& app, Action& chosen);

}  // namespace control

#endif
