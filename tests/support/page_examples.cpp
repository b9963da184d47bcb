#include "tests/support/page_examples.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

namespace support {

namespace {

const std::string Fence = "```hex ";

/// Appends what a word of a block stands for: "C3", or "00*12".
void append(std::vector<std::uint8_t>& bytes, const std::string& word) {
    const auto star = word.find('*');
    const std::size_t count = star == std::string::npos ? 1 : std::stoul(word.substr(star + 1));
    const auto value = static_cast<std::uint8_t>(std::stoul(word.substr(0, star), nullptr, 16));
    bytes.insert(bytes.end(), count, value);
}

}  // namespace

std::vector<std::uint8_t> pageExample(const std::filesystem::path& page, const std::string& name) {
    std::vector<std::uint8_t> bytes;
    std::ifstream file(page);
    std::string line;
    bool inside = false;
    while (std::getline(file, line)) {
        if (inside && line.starts_with("```")) {
            return bytes;
        }
        if (inside) {
            std::istringstream words(line);
            for (std::string word; words >> word;) {
                append(bytes, word);
            }
        }
        inside = inside || line == Fence + name;
    }
    ADD_FAILURE() << page << " has no example " << name;
    return {};
}

std::vector<std::string> pageExamples(const std::filesystem::path& page) {
    std::vector<std::string> names;
    std::ifstream file(page);
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with(Fence)) {
            names.push_back(line.substr(Fence.size()));
        }
    }
    return names;
}

}  // namespace support
