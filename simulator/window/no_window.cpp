// For builds without the toolkit.

#include <iostream>

#include "simulator/window/window.h"

namespace simulator {

int showWindow(Server&) {
    std::cerr << "lumadot-simulator: this build has no window; start it with --headless\n";
    return 1;
}

}  // namespace simulator
