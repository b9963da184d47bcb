#ifndef LUMADOT_TESTS_SUPPORT_BYTE_TEXT_H
#define LUMADOT_TESTS_SUPPORT_BYTE_TEXT_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace support {

/// All bytes as text: "81 C3 E7 FF 10 00*2047". Eight zeros or more in a row are counted, so that a
/// test can write out a whole frame.
inline std::string byteText(std::span<const std::uint8_t> bytes) {
    constexpr std::ptrdiff_t Counted = 8;
    constexpr char Digits[] = "0123456789ABCDEF";
    std::string text;
    for (auto byte = bytes.begin(); byte != bytes.end();) {
        text += text.empty() ? "" : " ";
        const auto zerosEnd = std::find_if(byte, bytes.end(), [](auto each) { return each != 0; });
        if (const auto zeros = zerosEnd - byte; zeros >= Counted) {
            text += "00*" + std::to_string(zeros);
            byte = zerosEnd;
        } else {
            text += {Digits[*byte >> 4], Digits[*byte & 0xF]};
            ++byte;
        }
    }
    return text;
}

}  // namespace support

#endif
