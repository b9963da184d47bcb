#include "control/holder.h"

#include <array>
#include <charconv>
#include <cstdio>
#include <fstream>
#include <system_error>

namespace control {

namespace {

namespace fs = std::filesystem;

/// How the path of the device's file ends.
std::string fileOf(int bus, int address) {
    std::array<char, 48> text{};
    std::snprintf(text.data(), text.size(), "/bus/usb/%03d/%03d", bus, address);
    return text.data();
}

/// Whether a process has such a file open; false, too, when the user may not know.
bool hasOpen(const fs::path& process, const std::string& file) {
    std::error_code error;
    fs::directory_iterator entry(process / "fd", error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        std::error_code closedMeanwhile;
        if (fs::read_symlink(entry->path(), closedMeanwhile).string().ends_with(file)) {
            return true;
        }
    }
    return false;
}

/// A process's number; nothing for another folder.
std::optional<int> numberOf(const fs::path& folder) {
    const std::string name = folder.filename().string();
    const char* const end = name.data() + name.size();
    int number = 0;
    const auto [stop, error] = std::from_chars(name.data(), end, number);
    return error == std::errc() && stop == end ? std::optional(number) : std::nullopt;
}

std::string programOf(const fs::path& process) {
    std::string name;
    std::getline(std::ifstream(process / "comm"), name);
    return name;
}

}  // namespace

std::optional<Holder> holderOf(int bus, int address, const fs::path& processes) {
    const std::string file = fileOf(bus, address);
    std::error_code error;
    const fs::path self = fs::read_symlink(processes / "self", error);
    fs::directory_iterator entry(processes, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        const auto number = numberOf(entry->path());
        if (number && entry->path().filename() != self && hasOpen(entry->path(), file)) {
            return Holder{programOf(entry->path()), *number};
        }
    }
    return std::nullopt;
}

}  // namespace control
