#ifndef LUMADOT_CONTROL_TERMINAL_H
#define LUMADOT_CONTROL_TERMINAL_H

#include <cstddef>

namespace control::terminal {

/// Whether a person looks at what goes to the standard error stream.
bool isThere();

/// The same of the standard output.
bool takesResults();

/// Whether what takes the standard output follows escape sequences, if it is a terminal: not every
/// version of Windows does.
bool followsEscapes();

/// The letters in a line of what takes the standard output; 0: unknown.
std::size_t width();

}  // namespace control::terminal

#endif
