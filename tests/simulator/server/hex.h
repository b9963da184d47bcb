#ifndef LUMADOT_TESTS_SIMULATOR_SERVER_HEX_H
#define LUMADOT_TESTS_SIMULATOR_SERVER_HEX_H

#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/byte_text.h"

/// The bytes of a text as `support::byteText` writes it: "81 C3 E7 FF 10 00*2047".
inline std::vector<std::uint8_t> hex(const std::string& text) {
    std::vector<std::uint8_t> bytes;
    std::istringstream words(text);
    for (std::string word; words >> word;) {
        const auto star = word.find('*');
        const std::size_t count = star == std::string::npos ? 1 : std::stoul(word.substr(star + 1));
        bytes.insert(bytes.end(), count, static_cast<std::uint8_t>(std::stoul(word, nullptr, 16)));
    }
    return bytes;
}

#endif
