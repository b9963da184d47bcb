#include "display/look.h"

#include <algorithm>
#include <cmath>

namespace display {

namespace {

constexpr std::size_t SmallestRound = 4;  // pixels
constexpr double Radius = 7.0 / 16;       // of a cell's width

}  // namespace

Colours coloursOf(const Look& look) {
    constexpr unsigned Full = FullBrightness * FullCover;
    Colours colours{};
    for (std::size_t entry = 0; entry < Entries; ++entry) {
        for (unsigned cover = 0; cover <= FullCover; ++cover) {
            Colour& colour = colours[colourNumber(entry, cover)];
            for (std::size_t channel = 0; channel < colour.size(); ++channel) {
                const unsigned light = look.palette[3 * entry + channel] * look.brightness * cover;
                colour[channel] = static_cast<std::uint8_t>((light + Full / 2) / Full);
            }
        }
    }
    return colours;
}

std::uint8_t DotMask::cover(std::size_t x, std::size_t y) const {
    if (dots_ == Dots::Square || scale_ < SmallestRound) {
        return FullCover;
    }
    const auto width = static_cast<double>(scale_);
    const double right = static_cast<double>(x) + 0.5 - width / 2;
    const double down = static_cast<double>(y) + 0.5 - width / 2;
    const double inside = Radius * width + 0.5 - std::sqrt(right * right + down * down);
    return static_cast<std::uint8_t>(std::lround(FullCover * std::clamp(inside, 0.0, 1.0)));
}

}  // namespace display
