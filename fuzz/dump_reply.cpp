// Captured frames of any length and content, two after the other: text and raw block in every mode.
// What a dot's bits mean is taken from the naive decoder of the tests. Byte 0 of the input is the
// mode, bit 0 of byte 1 the XL controller; the reply follows.
//
// Most frames are decoded for a display of two rows, dot by dot; one in 1024 for the controller's
// own display, where the naive decoder does all of the work.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <map>
#include <span>
#include <string>
#include <utility>

#include "device/dump_format.h"
#include "fuzz/expect.h"
#include "tests/device/capture/naive_decoder.h"

namespace {

using Bytes = std::span<const std::uint8_t>;

struct Format {
    int mode;
    bool xl;
    bool whole;  ///< the controller's own display

    auto operator<=>(const Format&) const = default;
};

/// The controllers' displays, and two rows of each.
const dump::Geometry& displayOf(const Format& format) {
    static constexpr dump::Geometry TwoRows{2, 16};
    static constexpr dump::Geometry TwoXlRows{2, 24};
    if (format.whole) {
        return format.xl ? dump::XlDisplay : dump::StandardDisplay;
    }
    return format.xl ? TwoXlRows : TwoRows;
}

constexpr std::size_t MostPlanes = 12;
/// The digit for every combination of a dot's bits, plane 0 lowest.
using Digits = std::array<char, 1U << MostPlanes>;

/// Lets the naive decoder read a frame in which each dot has other bits than all the others.
Digits digitsOf(int mode, bool xl) {
    constexpr std::size_t StampLine = 12;
    const std::size_t planeBytes = xl ? 1536 : 512;
    const std::size_t line = xl ? 192 : 128;
    naive::Bytes planes(MostPlanes * planeBytes);
    Digits digits{};
    for (std::size_t dot = 0; dot < digits.size(); ++dot) {
        for (std::size_t plane = 0; plane < MostPlanes; ++plane) {
            const auto bit = static_cast<std::uint8_t>((dot >> plane & 1U) << (dot % 8));
            planes[plane * planeBytes + dot / 8] |= bit;
        }
    }
    const std::string text = naive::text(mode, xl, 0, planes);
    for (std::size_t dot = 0; dot < digits.size(); ++dot) {
        digits[dot] = text[StampLine + dot / line * (line + 2) + dot % line];
    }
    return digits;
}

/// What is made once for all frames of a format, which takes longer than decoding one.
struct Decoder {
    explicit Decoder(const Format& format)
        : encoder(format.xl ? dump::XlDots : inputMode(static_cast<std::uint8_t>(format.mode)).dots,
                  displayOf(format)),
          digits(digitsOf(format.mode, format.xl)) {}

    dump::TextEncoder encoder;
    Digits digits;
};

Decoder& decoderFor(const Format& format) {
    static std::map<Format, Decoder> all;
    return all.try_emplace(format, format).first->second;
}

/// One dot at a time. What is to be explored is the tool, not this: it is left uninstrumented.
__attribute__((no_sanitize("address", "undefined", "coverage"))) bool showsEveryDot(
    const char* text, const char* digits, const dump::Geometry& display, int planes,
    const std::uint8_t* data, std::size_t size) {
    for (std::size_t row = 0; row < display.rows; ++row) {
        for (std::size_t column = 0; column < 8 * display.rowBytes; ++column) {
            std::size_t bits = 0;
            std::size_t at = row * display.rowBytes + column / 8;
            for (int plane = 0; plane < planes && at < size; ++plane) {
                bits |= static_cast<std::size_t>(data[at] >> column % 8 & 1) << plane;
                at += display.rows * display.rowBytes;
            }
            if (*text++ != digits[bits]) {
                return false;
            }
        }
        if (*text++ != '\r' || *text++ != '\n') {
            return false;
        }
    }
    return *text++ == '\r' && *text++ == '\n';
}

void expectText(const Format& format, std::uint32_t stamp, Bytes planes) {
    constexpr std::size_t StampLine = 12;
    Decoder& decoder = decoderFor(format);
    const std::string_view text = decoder.encoder.encode(stamp, planes);
    if (format.whole) {
        const naive::Bytes copy(planes.begin(), planes.end());
        EXPECT(text == naive::text(format.mode, format.xl, stamp, copy));
        return;
    }
    const dump::Geometry& display = displayOf(format);
    EXPECT(text.size() == StampLine + display.rows * (8 * display.rowBytes + 2) + 2);
    std::array<char, StampLine + 1> line{};
    std::snprintf(line.data(), line.size(), "0x%08x\r\n", stamp);
    EXPECT(text.starts_with(line.data()));
    EXPECT(showsEveryDot(text.data() + StampLine, decoder.digits.data(), display, MostPlanes,
                         planes.data(), planes.size()));
}

void expectRaw(const Format& format, std::uint32_t stamp, Bytes planes) {
    const auto block = dump::rawBlock(
        stamp, inputMode(static_cast<std::uint8_t>(format.mode)).capturePlanes, planes);
    const std::size_t length = static_cast<std::size_t>(naive::planes(format.mode)) * 512;
    const std::size_t held = std::min(length, planes.size());
    EXPECT(block.size() == 4 + length);
    EXPECT(block[0] + 0x100U * block[1] + 0x10000U * block[2] + 0x1000000U * block[3] == stamp);
    EXPECT(std::memcmp(block.data() + 4, planes.data(), held) == 0);
    static constexpr std::array<std::uint8_t, MostPlanes * 512> Zeros{};
    EXPECT(std::memcmp(block.data() + 4 + held, Zeros.data(), length - held) == 0);
}

std::uint32_t expectStamp(Bytes reply) {
    const std::uint32_t stamp =
        reply[0] + 0x100U * reply[1] + 0x10000U * reply[2] + 0x1000000U * reply[3];
    EXPECT(dump::timeStamp(reply) == stamp);
    return stamp;
}

/// By the content, so that the same input always does the same.
bool isOneIn1024(Bytes reply) {
    std::uint32_t hash = 2166136261;
    for (const std::uint8_t byte : reply.first(std::min<std::size_t>(reply.size(), 32))) {
        hash = (hash ^ byte) * 16777619;
    }
    return hash >> 22U == 0;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t Head = 2;
    constexpr std::size_t ShortestReply = 5;
    if (size < Head + ShortestReply) {
        return 0;
    }
    const Bytes reply(data + Head, size - Head);
    const auto& modes = naive::allModes();
    const Format format{modes[data[0] % modes.size()], (data[1] & 1U) != 0, isOneIn1024(reply)};
    const Bytes shorter = reply.last(std::max(ShortestReply, reply.size() / 2));
    const std::uint32_t stamp = expectStamp(reply);
    expectRaw(format, stamp, reply.subspan(4));
    expectText(format, stamp, reply.subspan(4));
    expectText(format, expectStamp(shorter),
               shorter.subspan(4));  // Shows nothing of the one before.
    return 0;
}
