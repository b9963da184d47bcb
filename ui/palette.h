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

#endif
