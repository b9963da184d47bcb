#include "display/painter.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <stdexcept>
#include <string>

namespace display {

namespace {

/// Copied at once; the compiler makes one instruction of it.
constexpr std::size_t Chunk = 16;
constexpr std::size_t MaxChunks = 4;

/// Groups of at most this size are made of two dots.
constexpr std::size_t MaxPairBytes = MaxChunks * Chunk;

/// Copies groups, each from its place in `pixels`, in whole chunks: what is too much is overwritten
/// by the next group. Returns how many it copied without leaving `out`.
template <std::size_t Chunks>
std::size_t copyChunks(const std::uint8_t* pixels, std::size_t groupBytes,
                       std::span<const std::uint16_t> groups, std::span<std::uint8_t> out) {
    if (out.size() < Chunks * Chunk) {
        return 0;
    }
    const std::size_t room = (out.size() - Chunks * Chunk) / groupBytes + 1;
    const std::size_t count = std::min(groups.size(), room);
    std::uint8_t* to = out.data();
    for (std::size_t i = 0; i < count; ++i, to += groupBytes) {
        const std::uint8_t* const from = pixels + groups[i];
        for (std::size_t at = 0; at < Chunks * Chunk; at += Chunk) {
            std::array<std::uint8_t, Chunk> bytes;
            std::memcpy(bytes.data(), from + at, Chunk);
            std::memcpy(to + at, bytes.data(), Chunk);
        }
    }
    return count;
}

std::size_t copyMost(const std::uint8_t* pixels, std::size_t groupBytes,
                     std::span<const std::uint16_t> groups, std::span<std::uint8_t> out) {
    switch ((groupBytes + Chunk - 1) / Chunk) {
        case 1:
            return copyChunks<1>(pixels, groupBytes, groups, out);
        case 2:
            return copyChunks<2>(pixels, groupBytes, groups, out);
        case 3:
            return copyChunks<3>(pixels, groupBytes, groups, out);
        case MaxChunks:
            return copyChunks<MaxChunks>(pixels, groupBytes, groups, out);
        default:
            return 0;
    }
}

/// A row of pixels; the last group may have fewer dots than the others.
void copyGroups(const std::uint8_t* pixels, std::size_t groupBytes,
                std::span<const std::uint16_t> groups, std::span<std::uint8_t> out) {
    for (std::size_t i = copyMost(pixels, groupBytes, groups, out); i < groups.size(); ++i) {
        const auto to = out.subspan(i * groupBytes);
        std::memcpy(to.data(), pixels + groups[i], std::min(to.size(), groupBytes));
    }
}

/// The pixels of a line through a dot of each shade.
std::vector<std::uint8_t> dotPixels(const Look& look, Pixels pixels, std::size_t y) {
    const Colours colours = coloursOf(look);
    const DotMask mask(look.scale, look.dots);
    std::vector<std::uint8_t> line;
    for (std::size_t entry = 0; entry < Entries; ++entry) {
        for (std::size_t x = 0; x < look.scale; ++x) {
            const std::uint8_t number = colourNumber(entry, mask.cover(x, y));
            if (pixels == Pixels::Numbers) {
                line.push_back(number);
            } else {
                line.insert(line.end(), colours[number].begin(), colours[number].end());
            }
        }
    }
    return line;
}

std::size_t checked(std::size_t scale) {
    if (scale == 0 || scale > Painter::MaxScale) {
        throw std::invalid_argument("a scale from 1 to " + std::to_string(Painter::MaxScale) +
                                    " is wanted");
    }
    return scale;
}

}  // namespace

Painter::Painter(const Look& look, Pixels pixels)
    : scale_(checked(look.scale)),
      dotBytes_(scale_ * (pixels == Pixels::Rgb ? std::tuple_size_v<Colour> : 1)),
      groupDots_(2 * dotBytes_ <= MaxPairBytes ? 2 : 1),
      groupBytes_(groupDots_ * dotBytes_) {
    for (std::size_t y = 0; y < scale_; ++y) {
        auto groups = groupPixels(dotPixels(look, pixels, y));
        const auto same = std::ranges::find(lines_, groups, &Line::pixels);
        if (same != lines_.end()) {
            same->rows.push_back(y);
        } else {
            lines_.push_back({{y}, std::move(groups)});
        }
    }
}

/// From the pixels of each dot those of each group; the left dot's shade is in the lower bits of
/// its number.
std::vector<std::uint8_t> Painter::groupPixels(const std::vector<std::uint8_t>& dots) const {
    std::vector<std::uint8_t> groups;
    for (std::size_t right = 0; right < (groupDots_ == 2 ? Entries : 1); ++right) {
        for (std::size_t left = 0; left < Entries; ++left) {
            for (const std::size_t shade : {left, right}) {
                const auto from = dots.begin() + static_cast<std::ptrdiff_t>(shade * dotBytes_);
                groups.insert(groups.end(), from, from + static_cast<std::ptrdiff_t>(dotBytes_));
                if (groupDots_ == 1) {
                    break;
                }
            }
        }
    }
    groups.resize(groups.size() + Chunk);
    return groups;
}

void Painter::paint(std::span<const std::uint8_t> shades, std::size_t columns,
                    std::span<std::uint8_t> picture) const {
    if (columns == 0 || shades.size() % columns != 0 ||
        picture.size() < pictureBytes(columns, shades.size() / columns)) {
        throw std::invalid_argument("no whole rows of dots, or no room for their picture");
    }
    const std::size_t rowBytes = scale_ * lineBytes(columns);
    const std::size_t rowGroups = (columns + groupDots_ - 1) / groupDots_;
    const std::vector<std::uint16_t> all = groups(shades, columns);
    // Line by line, not row by row: so its pixels stay in the processor's nearest cache.
    for (const Line& line : lines_) {
        for (std::size_t row = 0; row < shades.size() / columns; ++row) {
            paintLine(line, std::span(all).subspan(row * rowGroups, rowGroups),
                      picture.subspan(row * rowBytes, rowBytes));
        }
    }
}

/// The place of each group of dots among the pixels of a line.
std::vector<std::uint16_t> Painter::groups(std::span<const std::uint8_t> shades,
                                           std::size_t columns) const {
    constexpr unsigned Shade = Entries - 1;
    const auto bytes = static_cast<unsigned>(groupBytes_);
    const std::size_t pairs = groupDots_ == 2 ? columns / 2 : 0;
    std::vector<std::uint16_t> places(shades.size() / columns * (columns - pairs));
    std::uint16_t* place = places.data();
    for (const std::uint8_t* dot = shades.data(); dot != shades.data() + shades.size();) {
        const std::uint8_t* const rowEnd = dot + columns;
        for (std::size_t i = 0; i < pairs; ++i, dot += 2) {
            const unsigned pair = (dot[0] & Shade) | (dot[1] & Shade) << 4U;
            *place++ = static_cast<std::uint16_t>(pair * bytes);
        }
        for (; dot != rowEnd; ++dot) {
            *place++ = static_cast<std::uint16_t>((*dot & Shade) * bytes);
        }
    }
    return places;
}

/// In a row of dots the rows of pixels that look like this. One is made, the others are copied.
void Painter::paintLine(const Line& line, std::span<const std::uint16_t> groups,
                        std::span<std::uint8_t> dots) const {
    const std::size_t lineBytes = dots.size() / scale_;
    const auto first = dots.subspan(line.rows.front() * lineBytes, lineBytes);
    copyGroups(line.pixels.data(), groupBytes_, groups, first);
    for (std::size_t i = 1; i < line.rows.size(); ++i) {
        std::memcpy(&dots[line.rows[i] * lineBytes], first.data(), lineBytes);
    }
}

}  // namespace display
