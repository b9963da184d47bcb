#include "control/text_picture.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>

#include "control/terminal.h"
#include "control/text.h"

namespace control {

namespace {

constexpr const char* UpperHalf = "\xE2\x96\x80";
constexpr const char* PlainAgain = "\x1B[0m";
constexpr std::string_view DarkToBright = " .:-=+*#%@";

unsigned distance(const display::Colour& a, const display::Colour& b) {
    unsigned sum = 0;
    for (std::size_t channel = 0; channel < a.size(); ++channel) {
        const int apart = int{a[channel]} - int{b[channel]};
        sum += static_cast<unsigned>(apart * apart);
    }
    return sum;
}

/// The 256 colours: from 16 on a cube of six steps a channel, from 232 on 24 greys.
int numberOf(const display::Colour& colour) {
    constexpr std::array<std::uint8_t, 6> Steps = {0, 95, 135, 175, 215, 255};
    constexpr int CubeStart = 16;
    constexpr int GreyStart = 232;
    constexpr int Greys = 24;
    display::Colour inCube{};
    int number = 0;
    for (std::size_t channel = 0; channel < colour.size(); ++channel) {
        const auto* const nearest = std::ranges::min_element(
            Steps, {}, [&](int step) { return std::abs(step - int{colour[channel]}); });
        inCube[channel] = *nearest;
        number = number * 6 + static_cast<int>(nearest - Steps.begin());
    }
    const int mean = (colour[0] + colour[1] + colour[2]) / 3;
    const int grey = std::clamp((mean - 3) / 10, 0, Greys - 1);
    const auto level = static_cast<std::uint8_t>(8 + 10 * grey);
    return distance(colour, {level, level, level}) < distance(colour, inCube) ? GreyStart + grey
                                                                              : CubeStart + number;
}

/// What stands behind "38;" and "48;".
std::string code(const display::Colour& colour, TextPicture::Colours colours) {
    if (colours == TextPicture::Colours::Few) {
        return "5;" + std::to_string(numberOf(colour));
    }
    return "2;" + std::to_string(colour[0]) + ";" + std::to_string(colour[1]) + ";" +
           std::to_string(colour[2]);
}

std::string_view variable(const char* name) {
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

#ifndef _WIN32

bool holds(std::string_view text, std::string_view part) {
    return lowerCase(text).find(part) != std::string::npos;
}

bool lettersAreUtf8() {
    for (const char* const name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        if (const auto value = variable(name); !value.empty()) {
            return holds(value, "utf-8") || holds(value, "utf8");
        }
    }
    return false;
}

#endif

}  // namespace

std::string TextPicture::of(std::span<const std::uint8_t> entries, std::size_t columns) const {
    const std::size_t size = (columns + width_ - 1) / width_;
    const std::size_t rows = entries.size() / columns;
    std::string text;
    for (std::size_t y = 0; y < rows; y += 2 * size) {
        std::string before;
        for (std::size_t x = 0; x < columns; x += size) {
            std::string next = letter(meanOf(entries, columns, x, y, size),
                                      meanOf(entries, columns, x, y + size, size));
            // The colours of neighbours are often the same.
            text += next == before ? UpperHalf : next;
            before = colours_ == Colours::None ? std::string() : std::move(next);
        }
        text += colours_ == Colours::None ? "\n" : std::string(PlainAgain) + "\n";
    }
    return text;
}

/// Of a square of dots, those that there are.
display::Colour TextPicture::meanOf(std::span<const std::uint8_t> entries, std::size_t columns,
                                    std::size_t x, std::size_t y, std::size_t size) const {
    std::array<std::size_t, 3> sums{};
    std::size_t dots = 0;
    for (std::size_t row = y; row < std::min(y + size, entries.size() / columns); ++row) {
        for (std::size_t column = x; column < std::min(x + size, columns); ++column, ++dots) {
            const std::size_t entry = entries[row * columns + column];
            for (std::size_t channel = 0; channel < sums.size(); ++channel) {
                sums[channel] += palette_[3 * entry + channel];
            }
        }
    }
    display::Colour mean{};
    for (std::size_t channel = 0; channel < sums.size() && dots > 0; ++channel) {
        mean[channel] = static_cast<std::uint8_t>(sums[channel] / dots);
    }
    return mean;
}

std::string TextPicture::letter(const display::Colour& upper, const display::Colour& lower) const {
    if (colours_ != Colours::None) {
        return "\x1B[38;" + code(upper, colours_) + ";48;" + code(lower, colours_) + "m" +
               UpperHalf;
    }
    const int light = (*std::ranges::max_element(upper) + *std::ranges::max_element(lower)) / 2;
    return {DarkToBright[static_cast<std::size_t>(light) * (DarkToBright.size() - 1) / 255]};
}

TextPicture::Colours terminalColours() {
#ifdef _WIN32
    // The program has set its console to UTF-8, and one that follows escapes shows 24 bits.
    return variable("NO_COLOR").empty() && terminal::followsEscapes() ? TextPicture::Colours::Full
                                                                      : TextPicture::Colours::None;
#else
    if (!variable("NO_COLOR").empty() || !lettersAreUtf8()) {
        return TextPicture::Colours::None;
    }
    const auto colours = variable("COLORTERM");
    if (holds(colours, "truecolor") || holds(colours, "24bit")) {
        return TextPicture::Colours::Full;
    }
    return holds(variable("TERM"), "256color") ? TextPicture::Colours::Few
                                               : TextPicture::Colours::None;
#endif
}

}  // namespace control
