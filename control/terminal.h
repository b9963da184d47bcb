#ifndef LUMADOT_CONTROL_TERMINAL_H
#define LUMADOT_CONTROL_TERMINAL_H

namespace control::terminal {

/// Whether a person looks at what goes to the standard error stream.
bool isThere();

}  // namespace control::terminal

#endif
