#include "platform/start.h"

#include <cstdlib>

#include "platform/native_file.h"

#ifdef _WIN32
#include <windows.h>
// Behind it, as it needs its types.
#include <shellapi.h>

#include <cstdio>
#include <cstring>
#include <memory>
#include <optional>
#endif

namespace start {

namespace {

#ifdef _WIN32

std::vector<std::string> arguments(int /*argc*/, char** /*argv*/) {
    int count = 0;
    const std::unique_ptr<LPWSTR, HLOCAL (*)(HLOCAL)> all(
        CommandLineToArgvW(GetCommandLineW(), &count), LocalFree);
    std::vector<std::string> texts;
    for (int i = 0; i < count; ++i) {
        texts.push_back(native_file::utf8(all.get()[i]));
    }
    return texts;
}

/// The state of the console, of which a process has one at most, when it was joined.
struct Console {
    UINT codePage = 0;
    DWORD mode = 0;
};
std::optional<Console> before;

HANDLE consoleOutput() {
    return CreateFileW(L"CONOUT$", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                       nullptr, OPEN_EXISTING, 0, nullptr);
}

/// A program with windows has no console of its own, but may have been started from one. Its
/// streams then lead nowhere, unless they lead into a file or another program.
void attachToParents() {
    const auto leadsNowhere = [](DWORD stream) {
        return GetFileType(GetStdHandle(stream)) == FILE_TYPE_UNKNOWN;
    };
    const bool output = leadsNowhere(STD_OUTPUT_HANDLE);
    const bool error = leadsNowhere(STD_ERROR_HANDLE);
    if ((!output && !error) || AttachConsole(ATTACH_PARENT_PROCESS) == 0) {
        return;
    }
    if (output) {
        static_cast<void>(std::freopen("CONOUT$", "w", stdout));
    }
    if (error) {
        static_cast<void>(std::freopen("CONOUT$", "w", stderr));
    }
}

void joinConsole() {
    attachToParents();
    const HANDLE output = consoleOutput();
    if (Console console; GetConsoleMode(output, &console.mode) != 0) {
        console.codePage = GetConsoleOutputCP();
        before = console;
        SetConsoleOutputCP(CP_UTF8);
        SetConsoleMode(output, console.mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
    }
    CloseHandle(output);
}

/// As it was: others go on using it.
void restoreConsole() {
    if (!before) {
        return;
    }
    std::fflush(nullptr);
    const HANDLE output = consoleOutput();
    SetConsoleMode(output, before->mode);
    CloseHandle(output);
    SetConsoleOutputCP(before->codePage);
    before.reset();
}

#else

std::vector<std::string> arguments(int argc, char** argv) { return {argv, argv + argc}; }

void joinConsole() {}

void restoreConsole() {}

#endif

}  // namespace

CommandLine::CommandLine(int argc, char** argv) : texts_(arguments(argc, argv)) {
    joinConsole();
    for (std::string& text : texts_) {
        pointers_.push_back(text.data());
    }
    pointers_.push_back(nullptr);
}

CommandLine::~CommandLine() { restoreConsole(); }

void leaveConsole() {
#ifdef _WIN32
    restoreConsole();
    FreeConsole();
#endif
}

std::string variable(const char* name) {
#ifdef _WIN32
    const wchar_t* const value = _wgetenv(std::wstring(name, name + std::strlen(name)).c_str());
    return value != nullptr ? native_file::utf8(value) : "";
#else
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
#endif
}

}  // namespace start
