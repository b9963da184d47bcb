#ifndef LUMADOT_DEVICE_DOT_SUMS_H
#define LUMADOT_DEVICE_DOT_SUMS_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "device/input_mode.h"

namespace dump {

inline constexpr std::size_t DotsPerByte = 8;

/// A display's dots; a bit plane has one bit for each, 8 to a byte, least significant bit leftmost.
struct Geometry {
    std::size_t rows;
    std::size_t rowBytes;

    constexpr std::size_t planeBytes() const { return rows * rowBytes; }
    constexpr std::size_t columns() const { return rowBytes * DotsPerByte; }
};
inline constexpr Geometry StandardDisplay{32, 16};  ///< 128 x 32 dots
inline constexpr Geometry XlDisplay{64, 24};        ///< 192 x 64 dots

/// Planes that the XL controller sends, whatever the mode.
inline constexpr std::uint8_t XlPlanes = 2;

/// How the XL controller's dots are shown, whatever the mode.
inline constexpr DotRule XlDots{DotRule::Sum::Weighted, XlPlanes, "0123"};

/// The eight dots of a plane byte as the eight bytes of a word, the leftmost dot lowest.
constexpr std::array<std::uint64_t, 256> spreadTable() {
    std::array<std::uint64_t, 256> table{};
    for (std::size_t bits = 0; bits < table.size(); ++bits) {
        for (std::size_t dot = 0; dot < DotsPerByte; ++dot) {
            table[bits] |= static_cast<std::uint64_t>(bits >> dot & 1U) << (8 * dot);
        }
    }
    return table;
}
inline constexpr std::array<std::uint64_t, 256> Spread = spreadTable();

/// Adds up the bits of each dot of a frame, as the rule of its input mode says.
class DotSums {
public:
    DotSums(const DotRule& rule, const Geometry& display);

    /// `planes` starts with plane 0; what it does not hold counts as zero.
    void take(std::span<const std::uint8_t> planes);

    /// The sums of a row's dots, until the next `take`.
    class Row {
    public:
        Row(const std::uint8_t* sums, std::size_t planeBytes)
            : sums_(sums), planeBytes_(planeBytes) {}

        /// The sums, 0..15, of eight dots, each in a byte, the leftmost lowest; `at` counts the
        /// bytes of the row in a plane.
        std::uint64_t eightDots(std::size_t at) const {
            const std::uint8_t* const sums = sums_ + at;
            return Spread[sums[0]] | Spread[sums[planeBytes_]] << 1U |
                   Spread[sums[2 * planeBytes_]] << 2U | Spread[sums[3 * planeBytes_]] << 3U;
        }

    private:
        const std::uint8_t* sums_;
        std::size_t planeBytes_;
    };
    Row row(std::size_t number) const {
        return {&sums_[number * display_.rowBytes], display_.planeBytes()};
    }

private:
    /// A dot's sum as four bit planes.
    static constexpr std::size_t SumPlanes = 4;

    void count();

    Geometry display_;
    bool weighted_;
    std::size_t planes_;
    std::vector<std::uint8_t> frame_;  ///< the planes, filled up with zeros
    std::vector<std::uint8_t> sums_;   ///< the dots' sums, SumPlanes planes
};

}  // namespace dump

#endif
