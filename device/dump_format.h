#ifndef LUMADOT_DEVICE_DUMP_FORMAT_H
#define LUMADOT_DEVICE_DUMP_FORMAT_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "device/input_mode.h"

/// Captured frames: the request and reply on the wire, and the blocks that go into the dump files.
namespace dump {

/// A display's dots; a bit plane has one bit for each, 8 to a byte, least significant bit leftmost.
struct Geometry {
    std::size_t rows;
    std::size_t rowBytes;

    constexpr std::size_t planeBytes() const { return rows * rowBytes; }
};
inline constexpr Geometry StandardDisplay{32, 16};  ///< 128 x 32 dots
inline constexpr Geometry XlDisplay{64, 24};        ///< 192 x 64 dots

/// Planes that the XL controller sends, whatever the mode.
inline constexpr std::uint8_t XlPlanes = 2;

/// How the XL controller's dots are shown, whatever the mode.
inline constexpr DotRule XlDots{DotRule::Sum::Weighted, XlPlanes, "0123"};

/// A dump request, not a command frame: 02 C3 E8, the number of planes, zeros.
using Request = std::array<std::uint8_t, 64>;
Request request(std::uint8_t planes);

/// Length of a dump reply: a time stamp of 4 bytes, the planes from PlanesOffset on, one byte more.
inline constexpr std::size_t PlanesOffset = 4;
constexpr std::size_t replyLength(std::uint8_t planes, const Geometry& display) {
    return PlanesOffset + planes * display.planeBytes() + 1;
}

/// The controller's time stamp in a reply (at least 4 bytes), in ms.
std::uint32_t timeStamp(std::span<const std::uint8_t> reply);

/// Turns frames into blocks of a text dump, CR LF at the end of each line:
///
///   "0x%08x"               the time stamp
///   one line a row         a hexadecimal digit for each dot
///   an empty line
class TextEncoder {
public:
    TextEncoder(const DotRule& rule, const Geometry& display);

    /// `planes` starts with plane 0; what it does not hold counts as zero. The block is valid until
    /// the next call.
    std::string_view encode(std::uint32_t stamp, std::span<const std::uint8_t> planes);

private:
    /// A dot's sum, 0..15, as four bit planes.
    static constexpr std::size_t SumPlanes = 4;
    /// The digits of two neighbouring dots.
    using Pair = std::array<char, 2>;

    void takePlanes(std::span<const std::uint8_t> planes);
    void countPlanes();
    char* writeLine(char* out, std::size_t row) const;

    DotRule rule_;
    Geometry display_;
    std::array<Pair, 256> pairs_{};    ///< by the left dot's sum + 16 x the right dot's
    std::vector<std::uint8_t> frame_;  ///< the planes, filled up with zeros
    std::vector<std::uint8_t> sums_;   ///< the dots' sums, SumPlanes planes
    std::string block_;
};

/// Start of a raw dump: "RAW", 00, 01, width 128, height 32, planes per frame. An XL controller's
/// dump has the same header and the mode's number of planes, so that who reads raw dumps finds the
/// frames' length in each of them.
std::array<std::uint8_t, 8> rawHeader(std::uint8_t planes);

/// One frame of a raw dump: the time stamp, least significant byte first, then `planes` x 512 bytes
/// from the start of the reply's plane data; what that does not hold is zero.
std::vector<std::uint8_t> rawBlock(std::uint32_t stamp, std::uint8_t planes,
                                   std::span<const std::uint8_t> planeData);

}  // namespace dump

#endif
