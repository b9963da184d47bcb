#include "ui/palette.h"

#include <algorithm>
#include <numeric>
#include <span>

namespace presets {

namespace {

// Not a ramp of brightness: keep the order.
constexpr Colours Vga = {
    0x00, 0x00, 0x00, 0x80, 0x00, 0x00, 0xFF, 0x00, 0x00, 0xFF, 0x00, 0xFF,  // entries 0..3
    0x00, 0x80, 0x80, 0x00, 0x80, 0x00, 0x00, 0xFF, 0x00, 0x00, 0xFF, 0xFF,  // entries 4..7
    0x00, 0x00, 0x80, 0x80, 0x00, 0x80, 0x00, 0x00, 0xFF, 0x40, 0x40, 0x40,  // entries 8..11
    0x80, 0x80, 0x80, 0x80, 0x80, 0x00, 0xFF, 0xFF, 0x00, 0xFF, 0xFF, 0xFF,  // entries 12..15
};

/// A ramp: each channel of entry i is its step times i.
constexpr Colours ramp(std::size_t red, std::size_t green, std::size_t blue) {
    Colours colours{};
    for (std::size_t i = 0; i < PaletteEntries; ++i) {
        colours[3 * i] = static_cast<std::uint8_t>(red * i);
        colours[3 * i + 1] = static_cast<std::uint8_t>(green * i);
        colours[3 * i + 2] = static_cast<std::uint8_t>(blue * i);
    }
    return colours;
}

constexpr std::array<Colours, Count> All = {
    Vga,
    ramp(17, 0, 0),    // Red
    ramp(0, 17, 0),    // Green
    ramp(0, 0, 17),    // Blue
    ramp(17, 0, 17),   // Violet
    ramp(0, 17, 17),   // Cyan
    ramp(17, 17, 0),   // Yellow
    ramp(17, 17, 17),  // White
    ramp(17, 9, 0),    // Orange: the step of 9 gives the hue
};

}  // namespace

const Colours& colours(std::size_t index) { return All.at(index); }

}  // namespace presets

constinit std::array<unsigned char, PaletteSize> palette = presets::All[0];

namespace {

/// The one table of the shades' entries, darkest first. The sixteen shades are all entries.
std::span<const std::uint8_t> fewEntries(ShadeSet shades) {
    static constexpr std::array<std::uint8_t, 4> Four = {0, 1, 4, 15};
    static constexpr std::array<std::uint8_t, 5> Five = {0, 3, 7, 11, 15};
    switch (shades) {
        case ShadeSet::Four:
            return Four;
        case ShadeSet::Five:
            return Five;
        case ShadeSet::Sixteen:
            break;
    }
    return {};
}

}  // namespace

bool isShown(ShadeSet shades, std::size_t entry) {
    const auto entries = fewEntries(shades);
    return entries.empty() || std::ranges::find(entries, entry) != entries.end();
}

DigitEntries digitEntries(ShadeSet shades) {
    DigitEntries entries{};
    std::iota(entries.begin(), entries.end(), std::uint8_t{0});
    std::ranges::copy(fewEntries(shades), entries.begin());
    return entries;
}

DigitEntries digitEntries(const InputModeInfo& mode) {
    const std::size_t count = fewEntries(mode.shades).size();
    const bool numbers = std::ranges::any_of(mode.dots.digits, [&](char digit) {
        return digit > '9' || static_cast<std::size_t>(digit - '0') >= count;
    });
    return digitEntries(numbers ? ShadeSet::Sixteen : mode.shades);
}

ShadeSet shadesUpTo(std::uint8_t highest) {
    if (highest < fewEntries(ShadeSet::Four).size()) {
        return ShadeSet::Four;
    }
    return highest < fewEntries(ShadeSet::Five).size() ? ShadeSet::Five : ShadeSet::Sixteen;
}
