#ifndef LUMADOT_DEVICE_PALETTE_BYTES_H
#define LUMADOT_DEVICE_PALETTE_BYTES_H

#include <cstddef>

/// A palette, in memory, in a frame and in a file: 16 entries of red, green, blue, entry 0 first.
inline constexpr std::size_t PaletteEntries = 16;
inline constexpr std::size_t PaletteSize = 3 * PaletteEntries;

#endif
