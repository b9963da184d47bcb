#ifndef LUMADOT_CONTROL_RUN_H
#define LUMADOT_CONTROL_RUN_H

#include <ostream>
#include <span>

namespace control {

/// Does what a command line says, without the program's own name in front, and returns the exit
/// code. Results go to `results`, messages to `messages`.
int run(std::span<const char* const> arguments, std::ostream& results, std::ostream& messages);

}  // namespace control

#endif
