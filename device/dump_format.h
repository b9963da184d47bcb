#ifndef LUMADOT_DEVICE_DUMP_FORMAT_H
#define LUMADOT_DEVICE_DUMP_FORMAT_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "device/dot_sums.h"
#include "device/input_mode.h"

/// Captured frames: the request and reply on the wire, and the blocks that go into the dump files.
namespace dump {

/// A dump request, not a command frame: 02 C3 E8, the number of planes, zeros.
using Request = std::array<std::uint8_t, 64>;
Request request(std::uint8_t planes);

/// Length of a dump reply: a time stamp of 4 bytes, the planes from PlanesOffset on, one byte more.
inline constexpr std::size_t PlanesOffset = 4;
constexpr std::size_t replyLength(std::uint8_t planes, const Geometry& display) {
    return PlanesOffset + planes * display.planeBytes() + 1;
}

/// The controller's time stamp in a reply (at least 4 bytes), in ms.
constexpr std::uint32_t timeStamp(std::span<const std::uint8_t> reply) {
    return static_cast<std::uint32_t>(reply[0]) | static_cast<std::uint32_t>(reply[1]) << 8U |
           static_cast<std::uint32_t>(reply[2]) << 16U |
           static_cast<std::uint32_t>(reply[3]) << 24U;
}

inline constexpr std::string_view LineEnd = "\r\n";

/// Length of a text block's first line: "0x%08x" and a line end.
inline constexpr std::size_t StampLineSize = 12;

/// Length of a frame in a text dump.
constexpr std::size_t textBlockSize(const Geometry& display) {
    return StampLineSize + display.rows * (display.columns() + LineEnd.size()) + LineEnd.size();
}

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
    /// The digits of two neighbouring dots.
    using Pair = std::array<char, 2>;

    char* writeLine(char* out, std::size_t row) const;

    Geometry display_;
    DotSums sums_;
    std::array<Pair, 256> pairs_{};  ///< by the left dot's sum + 16 x the right dot's
    std::string block_;
};

/// Start of a raw dump: "RAW", 00, 01, width 128, height 32, planes per frame. An XL controller's
/// dump has the same header and the mode's number of planes, so that who reads raw dumps finds the
/// frames' length in each of them.
using RawHeader = std::array<std::uint8_t, 8>;
RawHeader rawHeader(std::uint8_t planes);

/// Length of a frame in a raw dump: the time stamp, then `planes` planes, on either controller.
inline constexpr std::size_t RawStampSize = 4;
inline constexpr std::size_t RawPlaneBytes = StandardDisplay.planeBytes();
constexpr std::size_t rawBlockSize(std::uint8_t planes) {
    return RawStampSize + planes * RawPlaneBytes;
}

/// One frame of a raw dump: the time stamp, least significant byte first, then `planes` x 512 bytes
/// from the start of the reply's plane data; what that does not hold is zero.
std::vector<std::uint8_t> rawBlock(std::uint32_t stamp, std::uint8_t planes,
                                   std::span<const std::uint8_t> planeData);

}  // namespace dump

#endif
