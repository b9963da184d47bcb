#include "control/terminal.h"

#ifdef _WIN32
#include <io.h>
#include <windows.h>
#else
#include <sys/ioctl.h>
#include <unistd.h>
#endif

namespace control::terminal {

namespace {

constexpr int StandardOutput = 1;
constexpr int StandardError = 2;

bool isTerminal(int stream) {
#ifdef _WIN32
    return _isatty(stream) != 0;
#else
    return isatty(stream) == 1;
#endif
}

}  // namespace

bool isThere() { return isTerminal(StandardError); }

bool takesResults() { return isTerminal(StandardOutput); }

bool followsEscapes() {
#ifdef _WIN32
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(STD_OUTPUT_HANDLE), &mode) != 0 &&
           (mode & ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
#else
    return true;
#endif
}

std::size_t width() {
#ifdef _WIN32
    CONSOLE_SCREEN_BUFFER_INFO info{};
    if (GetConsoleScreenBufferInfo(GetStdHandle(STD_OUTPUT_HANDLE), &info) == 0) {
        return 0;
    }
    return static_cast<std::size_t>(info.srWindow.Right - info.srWindow.Left + 1);
#else
    winsize size{};
    return ioctl(StandardOutput, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
#endif
}

}  // namespace control::terminal
