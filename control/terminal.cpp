#include "control/terminal.h"

#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

namespace control::terminal {

bool isThere() {
    constexpr int StandardError = 2;
#ifdef _WIN32
    return _isatty(StandardError) != 0;
#else
    return isatty(StandardError) == 1;
#endif
}

}  // namespace control::terminal
