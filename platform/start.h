#ifndef LUMADOT_PLATFORM_START_H
#define LUMADOT_PLATFORM_START_H

#include <string>
#include <vector>

/// What a program is started with.
namespace start {

/// The command line, in the encoding of the C library, on Windows in UTF-8. There, the console that
/// the program was started from shows what it says, in UTF-8, too.
class CommandLine {
public:
    CommandLine(int argc, char** argv);

    int count() const { return static_cast<int>(pointers_.size()) - 1; }
    /// `count` of them, and a null behind.
    char** values() { return pointers_.data(); }

private:
    std::vector<std::string> texts_;
    std::vector<char*> pointers_;
};

/// A variable of the environment, "" when there is none; on Windows in UTF-8.
std::string variable(const char* name);

}  // namespace start

#endif
