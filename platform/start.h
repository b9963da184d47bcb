#ifndef LUMADOT_PLATFORM_START_H
#define LUMADOT_PLATFORM_START_H

#include <string>
#include <vector>

/// What a program is started with.
namespace start {

/// The command line, in the encoding of the C library, on Windows in UTF-8. There, as long as this
/// lives, the console that the program was started from shows what it says, in UTF-8, too, and
/// follows escape sequences if it can.
class CommandLine {
public:
    CommandLine(int argc, char** argv);
    ~CommandLine();
    CommandLine(const CommandLine&) = delete;
    CommandLine& operator=(const CommandLine&) = delete;

    int count() const { return static_cast<int>(pointers_.size()) - 1; }
    /// `count` of them, and a null behind.
    char** values() { return pointers_.data(); }

private:
    std::vector<std::string> texts_;
    std::vector<char*> pointers_;
};

/// To be called when a window takes over: on Windows, Ctrl+C in the console ends the program no
/// longer, and what it says there is lost. Streams that lead elsewhere stay.
void leaveConsole();

/// A variable of the environment, "" when there is none; on Windows in UTF-8.
std::string variable(const char* name);

}  // namespace start

#endif
