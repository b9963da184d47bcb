#ifndef LUMADOT_TESTS_DEVICE_PAGES_PAGE_H
#define LUMADOT_TESTS_DEVICE_PAGES_PAGE_H

#include <cstdint>
#include <filesystem>
#include <span>
#include <sstream>
#include <string>
#include <vector>

namespace pages {

/// A table of a page, its head included: a line a row, the cells apart as in "0..3 | 81 C3 E7 FF".
using Table = std::vector<std::string>;

/// A page of the documentation. What a test has found on it is struck out, so that it can tell in
/// the end whether there is a number that nobody has looked at.
class Page {
public:
    explicit Page(const std::filesystem::path& file);

    /// Fails the test unless the page says this outside its tables and examples, wherever its lines
    /// break.
    void expect(const std::string& sentence);

    /// Fails the test unless the page has this table.
    void expect(const Table& table);

    /// The tables, and the words with a digit and those around them, that nobody has expected.
    std::vector<std::string> unread() const;

private:
    std::string prose_;  ///< with single blanks
    std::vector<Table> tables_;
};

/// What the parts are when they are written one after the other.
template <class... Parts>
std::string text(const Parts&... parts) {
    std::ostringstream stream;
    (stream << ... << parts);
    return stream.str();
}

/// "0x0314"
std::string hex(unsigned int value, int digits);
/// "0A"
std::string hexByte(std::uint8_t byte);
/// "81 C3 E7 FF"
std::string hexBytes(std::span<const std::uint8_t> bytes);
/// "5..27", or "5" where there is one only
std::string range(std::size_t first, std::size_t last);
/// "nineteen"
std::string inWords(std::size_t number);
/// "1, 6 and 13"
std::string listed(const std::vector<int>& numbers);

}  // namespace pages

#endif
