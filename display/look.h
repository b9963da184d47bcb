#ifndef LUMADOT_DISPLAY_LOOK_H
#define LUMADOT_DISPLAY_LOOK_H

#include <array>
#include <cstddef>
#include <cstdint>

namespace display {

inline constexpr std::size_t Entries = 16;
inline constexpr std::uint8_t FullBrightness = 255;

/// Steps between a pixel that no dot covers, 0, and one that a dot covers whole.
inline constexpr std::uint8_t FullCover = 15;

enum class Dots : std::uint8_t { Round, Square };

/// How a display is drawn.
struct Look {
    std::array<std::uint8_t, 3 * Entries> palette{};  ///< red, green, blue of entry 0, 1, ...
    std::uint8_t brightness = FullBrightness;         ///< the channels' share of 255
    std::size_t scale = 1;  ///< pixels from one dot to the next, from 1 on
    Dots dots = Dots::Round;

    bool operator==(const Look&) const = default;
};

/// Red, green, blue.
using Colour = std::array<std::uint8_t, 3>;

/// Every colour that a pixel can have: number 16 x entry + cover.
using Colours = std::array<Colour, Entries*(FullCover + 1)>;

/// The number of a pixel's colour. `cover` is 0..FullCover.
constexpr std::uint8_t colourNumber(std::size_t entry, std::size_t cover) {
    return static_cast<std::uint8_t>(entry * (FullCover + 1) + cover);
}

/// A channel is the palette's x brightness / 255 x cover / 15, rounded to the nearest number.
Colours coloursOf(const Look& look);

/// How much of each pixel of its cell a dot covers, row by row from the top, 0..FullCover:
/// scale x scale numbers. A square dot fills its cell; so does a round one at scales 1 to 3, which
/// are too small for a circle. Otherwise it is a circle in the middle of the cell, whose diameter
/// is 7/8 of the cell's width; with its radius r a pixel whose centre is d from the circle's is
/// covered by r + 1/2 - d, limited to 0..1, x 15, rounded to the nearest number.
class DotMask {
public:
    DotMask(std::size_t scale, Dots dots) : scale_(scale), dots_(dots) {}

    std::uint8_t cover(std::size_t x, std::size_t y) const;

private:
    std::size_t scale_;
    Dots dots_;
};

}  // namespace display

#endif
