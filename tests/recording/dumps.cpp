#include "tests/recording/dumps.h"

#include <cstdio>
#include <random>
#include <utility>

namespace dumps {

Bytes bytesOf(const std::string& text) { return {text.begin(), text.end()}; }

Bytes joining::operator+(Bytes first, const Bytes& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

Bytes randomPlanes(std::size_t size, unsigned seed) {
    std::mt19937 random(seed);
    Bytes planes(size);
    for (std::uint8_t& byte : planes) {
        byte = static_cast<std::uint8_t>(random());
    }
    return planes;
}

std::string plainText(std::uint32_t stampMs, char digit, bool xl) {
    char line[16];
    std::snprintf(line, sizeof line, "0x%08x\r\n", stampMs);
    std::string text = line;
    for (int row = 0; row < (xl ? 64 : 32); ++row) {
        text += std::string(xl ? 192 : 128, digit) + "\r\n";
    }
    return text + "\r\n";
}

Bytes plainRaw(std::uint32_t stampMs, std::uint8_t planes, std::uint8_t byte) {
    Bytes frame;
    for (int shift = 0; shift < 32; shift += 8) {
        frame.push_back(static_cast<std::uint8_t>(stampMs >> shift));
    }
    frame.resize(4 + planes * 512U, byte);
    return frame;
}

Bytes rawHeader(std::uint8_t planes) { return {0x52, 0x41, 0x57, 0x00, 0x01, 0x80, 0x20, planes}; }

Opened::Opened(Bytes content)
    : bytes(std::move(content)),
      dump(std::make_unique<recording::Recording>(std::make_unique<recording::MemorySource>(bytes),
                                                  "the test's dump")) {
    dump->extend();
}

std::vector<std::string> damagesOf(const recording::Recording& dump) {
    std::vector<std::string> list;
    for (const recording::Damage& damage : dump.damages()) {
        list.push_back(std::to_string(damage.offset) + ": " + reasonOf(damage));
    }
    return list;
}

std::vector<std::uint32_t> stampsOf(recording::Recording& dump) {
    std::vector<std::uint32_t> stamps;
    for (std::uint64_t number = 0; number < dump.frames(); ++number) {
        stamps.push_back(dump.frame(number).stampMs);
    }
    return stamps;
}

std::string digitsOf(const recording::Frame& frame) {
    std::string digits;
    for (const std::uint8_t digit : frame.digits) {
        digits += "0123456789abcdef"[digit];
    }
    return digits;
}

}  // namespace dumps
