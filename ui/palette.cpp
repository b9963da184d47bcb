#include "ui/palette.h"

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

bool isShown(ShadeSet shades, std::size_t entry) {
    constexpr std::uint16_t Four = 0b1000'0000'0001'0011;  // 0, 1, 4, 15
    constexpr std::uint16_t Five = 0b1000'1000'1000'1001;  // 0, 3, 7, 11, 15
    if (shades == ShadeSet::Sixteen) {
        return true;
    }
    return ((shades == ShadeSet::Four ? Four : Five) >> entry & 1U) != 0;
}
