#include "device/dump_format.h"

#include <algorithm>
#include <cstring>

namespace dump {

namespace {

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

TextEncoder::TextEncoder(const DotRule& rule, const Geometry& display)
    : display_(display), sums_(rule, display) {
    const auto digit = [&](std::size_t sum) {
        return sum < rule.digits.size() ? rule.digits[sum] : '0';
    };
    for (std::size_t i = 0; i < pairs_.size(); ++i) {
        pairs_[i] = {digit(i % 16), digit(i / 16)};
    }
    block_.resize(textBlockSize(display));
}

std::string_view TextEncoder::encode(std::uint32_t stamp, std::span<const std::uint8_t> planes) {
    sums_.take(planes);
    char* out = writeStamp(block_.data(), stamp);
    for (std::size_t row = 0; row < display_.rows; ++row) {
        out = writeLine(out, row);
    }
    std::ranges::copy(LineEnd, out);
    return block_;
}

/// Eight dots at a time: their sums as the bytes of a word, then two digits at once.
char* TextEncoder::writeLine(char* out, std::size_t row) const {
    const DotSums::Row sums = sums_.row(row);
    for (std::size_t i = 0; i < display_.rowBytes; ++i) {
        std::uint64_t dots = sums.eightDots(i);
        // The right dot of each pair into the high half of the left one's byte.
        dots |= dots >> 4U;
        for (std::size_t pair = 0; pair < DotsPerByte / 2; ++pair) {
            std::memcpy(out, pairs_[dots >> (16 * pair) & 0xFFU].data(), sizeof(Pair));
            out += sizeof(Pair);
        }
    }
    return std::ranges::copy(LineEnd, out).out;
}

RawHeader rawHeader(std::uint8_t planes) { return {'R', 'A', 'W', 0x00, 0x01, 128, 32, planes}; }

std::vector<std::uint8_t> rawBlock(std::uint32_t stamp, std::uint8_t planes,
                                   std::span<const std::uint8_t> planeData) {
    std::vector<std::uint8_t> block(rawBlockSize(planes));
    for (std::size_t i = 0; i < RawStampSize; ++i) {
        block[i] = static_cast<std::uint8_t>(stamp >> (8 * i));
    }
    std::copy_n(planeData.begin(), std::min(planeData.size(), block.size() - RawStampSize),
                block.begin() + RawStampSize);
    return block;
}

}  // namespace dump
