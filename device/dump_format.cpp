#include "device/dump_format.h"

#include <algorithm>
#include <cstring>

namespace dump {

namespace {

constexpr std::string_view LineEnd = "\r\n";
constexpr std::size_t StampLine = 12;  // "0x%08x" and a line end
constexpr std::size_t DotsPerByte = 8;

/// As many dots as are counted at once; the compiler makes vector instructions of it.
using Lanes = std::array<std::uint64_t, 2>;
static_assert(StandardDisplay.planeBytes() % sizeof(Lanes) == 0);
static_assert(XlDisplay.planeBytes() % sizeof(Lanes) == 0);

/// Adds a bit to each dot's bit of the sum; what is carried over replaces it.
void addCarry(Lanes& bits, Lanes& carry) {
    for (std::size_t i = 0; i < bits.size(); ++i) {
        const std::uint64_t next = bits[i] & carry[i];
        bits[i] ^= carry[i];
        carry[i] = next;
    }
}

constexpr std::size_t RawPlaneBytes = StandardDisplay.planeBytes();

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

constexpr std::array<std::uint64_t, 256> Spread = spreadTable();

/// "0x%08x" and a line end, without the cost of a formatted write.
char* writeStamp(char* out, std::uint32_t stamp) {
    constexpr std::string_view Digits = "0123456789abcdef";
    *out++ = '0';
    *out++ = 'x';
    for (int shift = 28; shift >= 0; shift -= 4) {
        *out++ = Digits[stamp >> static_cast<unsigned>(shift) & 0xFU];
    }
    return std::ranges::copy(LineEnd, out).out;
}

}  // namespace

Request request(std::uint8_t planes) { return {0x02, 0xC3, 0xE8, planes}; }

std::uint32_t timeStamp(std::span<const std::uint8_t> reply) {
    return static_cast<std::uint32_t>(reply[0]) | static_cast<std::uint32_t>(reply[1]) << 8U |
           static_cast<std::uint32_t>(reply[2]) << 16U |
           static_cast<std::uint32_t>(reply[3]) << 24U;
}

TextEncoder::TextEncoder(const DotRule& rule, const Geometry& display)
    : rule_(rule),
      display_(display),
      frame_(rule.planes * display.planeBytes()),
      sums_(SumPlanes * display.planeBytes()) {
    const auto digit = [&](std::size_t sum) {
        return sum < rule.digits.size() ? rule.digits[sum] : '0';
    };
    for (std::size_t i = 0; i < pairs_.size(); ++i) {
        pairs_[i] = {digit(i % 16), digit(i / 16)};
    }
    const std::size_t line = display.rowBytes * DotsPerByte + LineEnd.size();
    block_.resize(StampLine + display.rows * line + LineEnd.size());
}

std::string_view TextEncoder::encode(std::uint32_t stamp, std::span<const std::uint8_t> planes) {
    takePlanes(planes);
    char* out = writeStamp(block_.data(), stamp);
    for (std::size_t row = 0; row < display_.rows; ++row) {
        out = writeLine(out, row);
    }
    std::ranges::copy(LineEnd, out);
    return block_;
}

/// Fills the sums from the planes.
void TextEncoder::takePlanes(std::span<const std::uint8_t> planes) {
    const bool weighted = rule_.sum == DotRule::Sum::Weighted;
    const std::span<std::uint8_t> frame(weighted ? sums_ : frame_);
    const std::size_t wanted = rule_.planes * display_.planeBytes();
    const std::size_t held = std::min(planes.size(), wanted);
    const auto rest = std::copy_n(planes.begin(), held, frame.begin());
    std::fill(rest, frame.end(), std::uint8_t{0});
    if (!weighted) {
        countPlanes();
    }
}

/// Counts the set bits of each dot, 128 dots at a time: a plane is added to the sums as a carry
/// that runs up through their planes.
void TextEncoder::countPlanes() {
    const std::size_t planeBytes = display_.planeBytes();
    for (std::size_t at = 0; at < planeBytes; at += sizeof(Lanes)) {
        std::array<Lanes, SumPlanes> sum{};
        for (std::size_t plane = 0; plane < rule_.planes; ++plane) {
            Lanes carry;
            std::memcpy(&carry, &frame_[plane * planeBytes + at], sizeof(Lanes));
            addCarry(sum[0], carry);  // Written out: as a loop it takes four times as long.
            addCarry(sum[1], carry);
            addCarry(sum[2], carry);
            addCarry(sum[3], carry);
        }
        for (std::size_t bit = 0; bit < SumPlanes; ++bit) {
            std::memcpy(&sums_[bit * planeBytes + at], &sum[bit], sizeof(Lanes));
        }
    }
}

/// Eight dots at a time: their sums as the bytes of a word, then two digits at once.
char* TextEncoder::writeLine(char* out, std::size_t row) const {
    const std::size_t planeBytes = display_.planeBytes();
    const std::uint8_t* const sums = &sums_[row * display_.rowBytes];
    for (std::size_t i = 0; i < display_.rowBytes; ++i) {
        std::uint64_t dots = Spread[sums[i]] | Spread[sums[planeBytes + i]] << 1U |
                             Spread[sums[2 * planeBytes + i]] << 2U |
                             Spread[sums[3 * planeBytes + i]] << 3U;
        // The right dot of each pair into the high half of the left one's byte.
        dots |= dots >> 4U;
        for (std::size_t pair = 0; pair < DotsPerByte / 2; ++pair) {
            std::memcpy(out, pairs_[dots >> (16 * pair) & 0xFFU].data(), sizeof(Pair));
            out += sizeof(Pair);
        }
    }
    return std::ranges::copy(LineEnd, out).out;
}

std::array<std::uint8_t, 8> rawHeader(std::uint8_t planes) {
    return {'R', 'A', 'W', 0x00, 0x01, 128, 32, planes};
}

std::vector<std::uint8_t> rawBlock(std::uint32_t stamp, std::uint8_t planes,
                                   std::span<const std::uint8_t> planeData) {
    constexpr std::size_t StampSize = 4;
    std::vector<std::uint8_t> block(StampSize + planes * RawPlaneBytes);
    for (std::size_t i = 0; i < StampSize; ++i) {
        block[i] = static_cast<std::uint8_t>(stamp >> (8 * i));
    }
    std::copy_n(planeData.begin(), std::min(planeData.size(), block.size() - StampSize),
                block.begin() + StampSize);
    return block;
}

}  // namespace dump
