#ifndef LUMADOT_UI_PALETTE_FILE_H
#define LUMADOT_UI_PALETTE_FILE_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "ui/palette.h"

/// Palette file, "*.pal":
///
///   byte 0..7    01 00 01 00 00 00 10 01; only byte 0 is looked at when a file is loaded
///   byte 8..55   the palette: 16 entries of red, green, blue, entry 0 first
namespace palette_file {

inline constexpr std::size_t HeaderSize = 8;
inline constexpr std::size_t Size = HeaderSize + PaletteSize;

using Bytes = std::array<std::uint8_t, Size>;
using Colours = std::array<unsigned char, PaletteSize>;

Bytes encode(const Colours& colours);

/// The palette in a file's first bytes. Nothing when byte 0 is not 1, or when there are fewer than
/// 56 bytes.
std::optional<Colours> decode(std::span<const std::uint8_t> data);

}  // namespace palette_file

#endif
