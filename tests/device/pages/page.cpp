#include "tests/device/pages/page.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <fstream>
#include <iomanip>

namespace pages {

namespace {

std::string trimmed(const std::string& text) {
    const auto first = text.find_first_not_of(' ');
    const auto last = text.find_last_not_of(' ');
    return first == std::string::npos ? "" : text.substr(first, last - first + 1);
}

/// "| a | b |" as "a | b".
std::string rowOf(const std::string& line) {
    std::istringstream cells(line.substr(1, line.rfind('|') - 1));
    std::string row;
    for (std::string cell; std::getline(cells, cell, '|');) {
        row += (row.empty() ? "" : " | ") + trimmed(cell);
    }
    return row;
}

bool isRule(const std::string& line) { return line.starts_with("|---"); }

bool hasDigit(const std::string& word) {
    return std::ranges::any_of(word, [](unsigned char each) { return std::isdigit(each) != 0; });
}

}  // namespace

Page::Page(const std::filesystem::path& file) {
    std::ifstream lines(file);
    bool inTable = false;
    bool inExample = false;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("```")) {
            inExample = !inExample;
        } else if (line.starts_with("|")) {
            if (!inTable) {
                tables_.emplace_back();
            }
            if (!isRule(line)) {
                tables_.back().push_back(rowOf(line));
            }
        } else if (!inExample) {
            std::istringstream words(line);
            for (std::string word; words >> word;) {
                prose_ += word + " ";
            }
        }
        inTable = line.starts_with("|");
    }
}

void Page::expect(const std::string& sentence) {
    const auto at = prose_.find(sentence);
    if (at == std::string::npos) {
        ADD_FAILURE() << "the page does not say: " << sentence;
        return;
    }
    prose_.replace(at, sentence.size(), "...");
}

void Page::expect(const Table& table) {
    auto found = std::ranges::find(tables_, table);
    if (found == tables_.end()) {
        found =
            std::ranges::find_if(tables_, [&](const Table& each) { return each[0] == table[0]; });
    }
    if (found == tables_.end()) {
        ADD_FAILURE() << "the page has no table with the head: " << table[0];
        return;
    }
    EXPECT_EQ(*found, table);
    tables_.erase(found);
}

std::vector<std::string> Page::unread() const {
    std::vector<std::string> found;
    for (const Table& table : tables_) {
        found.push_back("the table: " + table[0]);
    }
    std::istringstream words(prose_);
    std::string before;
    for (std::string word; words >> word; before = word) {
        if (hasDigit(word)) {
            found.push_back(before + " " + word);
        }
    }
    return found;
}

std::string hex(unsigned int value, int digits) {
    std::ostringstream stream;
    stream << "0x" << std::uppercase << std::hex << std::setfill('0') << std::setw(digits) << value;
    return stream.str();
}

std::string hexByte(std::uint8_t byte) { return hex(byte, 2).substr(2); }

std::string hexBytes(std::span<const std::uint8_t> bytes) {
    std::string all;
    for (const std::uint8_t byte : bytes) {
        all += (all.empty() ? "" : " ") + hexByte(byte);
    }
    return all;
}

std::string range(std::size_t first, std::size_t last) {
    return first == last ? text(first) : text(first, "..", last);
}

std::string inWords(std::size_t number) {
    constexpr std::array Words = {"no",      "one",     "two",       "three",    "four",
                                  "five",    "six",     "seven",     "eight",    "nine",
                                  "ten",     "eleven",  "twelve",    "thirteen", "fourteen",
                                  "fifteen", "sixteen", "seventeen", "eighteen", "nineteen"};
    return Words.at(number);
}

std::string listed(const std::vector<int>& numbers) {
    std::string all;
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        const bool last = i + 1 == numbers.size();
        all += (i == 0 ? "" : last ? " and " : ", ") + std::to_string(numbers[i]);
    }
    return all;
}

}  // namespace pages
