#include "platform/start.h"

#include <cstdlib>

#ifdef _WIN32
#include <windows.h>
// Behind it, as it needs its types.
#include <shellapi.h>

#include <cstdio>
#include <cstring>
#include <memory>
#endif

namespace start {

namespace {

#ifdef _WIN32

/// What is no text, as Windows allows, is a question mark.
std::string utf8(const wchar_t* text) {
    const auto convert = [&](char* to, int room) {
        return WideCharToMultiByte(CP_UTF8, 0, text, -1, to, room, nullptr, nullptr);
    };
    std::string bytes(static_cast<std::size_t>(convert(nullptr, 0)), '\0');
    convert(bytes.data(), static_cast<int>(bytes.size()));
    bytes.pop_back();  // The zero at its end.
    return bytes;
}

std::vector<std::string> arguments(int /*argc*/, char** /*argv*/) {
    int count = 0;
    const std::unique_ptr<LPWSTR, HLOCAL (*)(HLOCAL)> all(
        CommandLineToArgvW(GetCommandLineW(), &count), LocalFree);
    std::vector<std::string> texts;
    for (int i = 0; i < count; ++i) {
        texts.push_back(utf8(all.get()[i]));
    }
    return texts;
}

/// A program with windows has no console of its own, but may have been started from one.
void joinConsole() {
    const HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
    const bool hasOutput = output != nullptr && output != INVALID_HANDLE_VALUE;
    if (!hasOutput && AttachConsole(ATTACH_PARENT_PROCESS) != 0) {
        static_cast<void>(std::freopen("CONOUT$", "w", stdout));
        static_cast<void>(std::freopen("CONOUT$", "w", stderr));
    }
    SetConsoleOutputCP(CP_UTF8);
}

#else

std::vector<std::string> arguments(int argc, char** argv) { return {argv, argv + argc}; }

void joinConsole() {}

#endif

}  // namespace

CommandLine::CommandLine(int argc, char** argv) : texts_(arguments(argc, argv)) {
    joinConsole();
    for (std::string& text : texts_) {
        pointers_.push_back(text.data());
    }
    pointers_.push_back(nullptr);
}

std::string variable(const char* name) {
#ifdef _WIN32
    const wchar_t* const value = _wgetenv(std::wstring(name, name + std::strlen(name)).c_str());
    return value != nullptr ? utf8(value) : "";
#else
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
#endif
}

}  // namespace start
