#ifndef LUMADOT_SIMULATOR_WINDOW_WINDOW_H
#define LUMADOT_SIMULATOR_WINDOW_WINDOW_H

#include "simulator/server/server.h"

namespace simulator {

/// Shows the display and the state of the server's device until the user closes the window; the
/// server runs meanwhile in a thread of its own. Returns the program's exit code.
int showWindow(Server& server);

}  // namespace simulator

#endif
