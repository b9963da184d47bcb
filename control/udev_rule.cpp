#include "control/udev_rule.h"

#include <algorithm>
#include <fstream>
#include <string>
#include <system_error>

#include "control/text.h"

namespace control {

namespace {

namespace fs = std::filesystem;

bool namesController(const fs::path& file) {
    std::ifstream stream(file);
    for (std::string line; std::getline(stream, line);) {
        line = lowerCase(line);
        if (!line.starts_with('#') && line.find("0314") != std::string::npos &&
            line.find("e457") != std::string::npos) {
            return true;
        }
    }
    return false;
}

bool hasRule(const fs::path& folder) {
    std::error_code error;
    fs::directory_iterator entry(folder, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        if (entry->path().extension() == ".rules" && namesController(entry->path())) {
            return true;
        }
    }
    return false;
}

}  // namespace

bool isRuleInstalled(std::span<const fs::path> folders) {
    return std::ranges::any_of(folders, hasRule);
}

}  // namespace control
