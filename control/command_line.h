#ifndef LUMADOT_CONTROL_COMMAND_LINE_H
#define LUMADOT_CONTROL_COMMAND_LINE_H

#include <memory>

#include "control/session.h"

namespace CLI {
class App;
}

namespace control {

/// The whole command line: the options that stand for every command, and every command. What it
/// finds goes into `options` and `chosen`.
std::unique_ptr<CLI::App> makeCommandLine(Options& options, Action& chosen);

}  // namespace control

#endif
