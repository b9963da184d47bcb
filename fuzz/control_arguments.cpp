// Any arguments, one a line, to lumadotctl; words of its own are written as one byte, so that they
// are found. A signal ends what would go on.

#include <array>
#include <csignal>
#include <cstdint>

#include "fuzz/command_line.h"
#include "simulator/bus.h"

namespace {

constexpr std::uint8_t FirstWord = 0x80;
constexpr std::array Words = {
    "list",       "check",  "info",    "mode",      "preset",    "brightness", "enhancer",
    "palette",    "store",  "logo",    "reset",     "settings",  "upload",     "record",
    "completion", "save",   "load",    "show",      "diff",      "--store",    "--write",
    "--preset",   "--wait", "--name",  "--frames",  "--seconds", "--mode",     "--reconnect",
    "--device",   "--json", "--quiet", "--verbose", "--dry-run", "--timeout",  "--version",
    "--help",     "a.pal",  "a.dat",   "a.bin",     "1-1",       "on",         "stern",
    "bash",       "zsh",    "fish",    "dump",      "export",    "play",       "--out",
    "--from",     "--to",   "--frame", "--play",    "--colours", "--shades",   "--dots",
    "--palette",  "--loop", "--speed", "a.txt",     "x.gif",     "x.txt",      "x.raw"};

/// What names a file or a folder stays in the folder.
bool leadsOut(const std::string& argument) {
    return argument.find('/') != std::string::npos || argument.find("..") != std::string::npos;
}

std::vector<std::string> argumentsIn(const std::uint8_t* data, std::size_t size) {
    std::vector<std::string> arguments(1);
    for (std::size_t i = 0; i < size; ++i) {
        if (data[i] == '\n') {
            arguments.emplace_back();
        } else if (data[i] >= FirstWord && data[i] - FirstWord < static_cast<int>(Words.size())) {
            arguments.back() += Words.at(data[i] - FirstWord);
        } else if (data[i] != 0) {
            arguments.back() += static_cast<char>(data[i]);
        }
    }
    std::erase_if(arguments, leadsOut);
    return arguments;
}

/// A recording of a dark frame.
std::string recording() {
    std::string text = "0x00000001\r\n";
    for (int row = 0; row < 32; ++row) {
        text += std::string(128, '0') + "\r\n";
    }
    return text + "\r\n";
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    auto& bus = simulator::Bus::instance();
    bus.reset();
    bus.setLogging(false);
    bus.plugController();
    bus.inject({.nth = 60, .meanwhile = [] { std::raise(SIGTERM); }});
    fuzz::giveFile("a.pal", std::string(56, '\1'));
    fuzz::giveFile("a.dat", std::string(23, '\1'));
    fuzz::giveFile("a.txt", recording());
    fuzz::giveFile("a.bin", std::string(700, 'x'));
    fuzz::runCommandLine(argumentsIn(data, size));
    return 0;
}
