#ifndef LUMADOT_PICTURES_PICTURE_H
#define LUMADOT_PICTURES_PICTURE_H

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <vector>

#include "display/look.h"

namespace pictures {

/// A picture that was read: red, green, blue of each pixel, row by row from the top left.
struct Picture {
    std::size_t width = 0;
    std::size_t height = 0;
    std::vector<std::uint8_t> rgb;
};

/// Larger ones are refused, so that a file of some bytes cannot take all memory.
inline constexpr std::uint64_t MostPicturePixels = std::uint64_t{1} << 24U;
inline constexpr std::uint64_t MostPictureBytes = std::uint64_t{64} << 20U;

/// Reads a PNG of any kind; what is transparent is black. Throws recording::Error (CannotRead;
/// NotAPicture when it is something else, damaged, or too large).
Picture readPng(const std::filesystem::path& path);

/// The same from its bytes; `name` is for messages.
Picture decodePng(std::span<const std::uint8_t> bytes, const std::string& name);

/// Fits a picture into a display of columns x rows dots, as large as its shape allows and in the
/// middle, and shows it in the 16 entries of a palette (red, green, blue of entry 0, 1, ...), whose
/// steps are hidden by dithering. Dots whose colour is in the palette get that entry. With a
/// palette of a single hue the picture's brightness counts. Returns the entries, row by row. A
/// picture without pixels is black.
std::vector<std::uint8_t> fitToDisplay(const Picture& picture,
                                       std::span<const std::uint8_t, 3 * display::Entries> palette,
                                       std::size_t columns, std::size_t rows);

}  // namespace pictures

#endif
