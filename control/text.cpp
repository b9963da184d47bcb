#include "control/text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace control {

namespace {

void appendHex(std::string& text, std::uint8_t byte) {
    constexpr std::string_view Digits = "0123456789ABCDEF";
    text += Digits[byte >> 4U];
    text += Digits[byte & 0xFU];
}

constexpr bool isUpper(char letter) { return letter >= 'A' && letter <= 'Z'; }

}  // namespace

std::string byteText(std::span<const std::uint8_t> bytes) {
    constexpr std::ptrdiff_t Counted = 8;
    std::string text;
    for (auto byte = bytes.begin(); byte != bytes.end();) {
        text += text.empty() ? "" : " ";
        const auto zerosEnd =
            std::find_if(byte, bytes.end(), [](std::uint8_t each) { return each != 0; });
        if (const auto zeros = zerosEnd - byte; zeros >= Counted) {
            text += "00*" + std::to_string(zeros);
            byte = zerosEnd;
        } else {
            appendHex(text, *byte++);
        }
    }
    return text;
}

std::string hexDigits(std::span<const std::uint8_t> bytes, std::string_view between) {
    std::string text;
    for (const std::uint8_t byte : bytes) {
        text += text.empty() ? "" : between;
        appendHex(text, byte);
    }
    return text;
}

std::string printable(std::string_view text) {
    std::string result;
    for (const char letter : text) {
        if (letter >= ' ' && letter <= '~') {
            result += letter;
        } else {
            result += "\\x";
            appendHex(result, static_cast<std::uint8_t>(letter));
        }
    }
    return result;
}

std::string lowerCase(std::string_view text) {
    std::string result(text);
    std::ranges::transform(result, result.begin(), [](char letter) {
        return isUpper(letter) ? static_cast<char>(letter - 'A' + 'a') : letter;
    });
    return result;
}

std::string decimal(double value) {
    constexpr double Most = 1e15;  // Leaves room; a clock that stands still makes any rate.
    std::array<char, 32> text{};
    const double shown = std::isfinite(value) ? std::clamp(value, 0.0, Most) : 0.0;
    const auto end =
        std::to_chars(text.data(), text.data() + text.size(), shown, std::chars_format::fixed, 1);
    return {text.data(), end.ptr};
}

std::string sizeText(double bytes) {
    constexpr double Step = 1000;
    constexpr std::array Units = {"kB", "MB", "GB"};
    if (bytes < Step) {
        return std::to_string(static_cast<int>(bytes)) + " bytes";
    }
    std::size_t unit = 0;
    for (bytes /= Step; bytes >= Step && unit + 1 < Units.size(); ++unit) {
        bytes /= Step;
    }
    return decimal(bytes) + " " + Units.at(unit);
}

}  // namespace control
