#ifndef LUMADOT_UI_PALETTE_H
#define LUMADOT_UI_PALETTE_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "device/input_mode.h"
#include "device/palette_bytes.h"

/// The current palette: entry i, the colour of dot shade i, is red, green, blue at 3i, 3i + 1,
/// 3i + 2. Starts as preset 0.
extern std::array<unsigned char, PaletteSize> palette;

/// The built-in palettes, 0 ("VGA") to 8 ("Orange").
namespace presets {

inline constexpr std::size_t Count = 9;

using Colours = std::array<std::uint8_t, PaletteSize>;

/// The 48 bytes of preset `index`, 0..8.
const Colours& colours(std::size_t index);

/// As the window lists them; not translated.
inline constexpr std::array<std::string_view, Count> Names = {
    "Palette 0 (VGA)",    "Palette 1 (Red)",    "Palette 2 (Green)",
    "Palette 3 (Blue)",   "Palette 4 (Violet)", "Palette 5 (Cyan)",
    "Palette 6 (Yellow)", "Palette 7 (White)",  "Palette 8 (Orange)"};

}  // namespace presets

/// Whether the button of palette entry `entry` is shown for a system with these shades. Kept for
/// compatibility: the four shades, 0, 1, 4 and 15, are not evenly spaced.
bool isShown(ShadeSet shades, std::size_t entry);

/// The palette entry, 0..15, in which each digit of a text dump is shown.
using DigitEntries = std::array<std::uint8_t, PaletteEntries>;

/// On a display with these shades digit n is the n-th of its entries; a digit beyond them, and on a
/// display of sixteen shades every digit, is the number of an entry itself.
DigitEntries digitEntries(ShadeSet shades);

/// As a recording of this mode wants it: where its digits go beyond its shades (Gottlieb 1: 0, 3,
/// 7, b, f), they are all numbers of entries.
DigitEntries digitEntries(const InputModeInfo& mode);

/// The fewest shades that have a digit as high as this, 0..15.
ShadeSet shadesUpTo(std::uint8_t highest);

#endif
