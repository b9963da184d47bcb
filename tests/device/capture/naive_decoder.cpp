#include "tests/device/capture/naive_decoder.h"

#include <cstddef>
#include <cstdio>

namespace naive {

namespace {

/// A bit of the plane data; what is not there is zero.
class Dot {
public:
    Dot(const Bytes& data, bool xl, int row, int column)
        : data_(data), xl_(xl), row_(row), column_(column) {}

    int bit(int plane) const {
        const int rowBytes = xl_ ? 24 : 16;
        const int planeBytes = xl_ ? 1536 : 512;
        const auto at =
            static_cast<std::size_t>(plane * planeBytes + row_ * rowBytes + column_ / 8);
        return at < data_.size() ? data_[at] >> (column_ % 8) & 1 : 0;
    }
    int number(int bits) const {
        int value = 0;
        for (int plane = 0, weight = 1; plane < bits; ++plane, weight *= 2) {
            value += weight * bit(plane);
        }
        return value;
    }
    int count(int planes) const {
        int set = 0;
        for (int plane = 0; plane < planes; ++plane) {
            set += bit(plane);
        }
        return set;
    }

private:
    const Bytes& data_;
    bool xl_;
    int row_;
    int column_;
};

int shade(int mode, const Dot& dot) {
    switch (mode) {
        case 1:
        case 13:
            return dot.count(3);
        case 2:
        case 4:
        case 11:
        case 15:
            return dot.number(4);
        case 3:
        case 5:
        case 12:
        case 14:
            return dot.number(2);
        case 6: {
            const int shades[] = {0, 3, 3, 7, 7, 7, 11, 11, 11, 11, 11, 11, 15};
            return shades[dot.count(12)];
        }
        case 7: {
            const int shades[] = {0, 1, 2, 2, 2, 2, 3};
            return shades[dot.count(6)];
        }
        case 8: {
            const int shades[] = {0, 1, 2, 2, 2, 2, 2, 2, 3};
            return shades[dot.count(8)];
        }
        case 9: {
            const int shades[] = {0, 1, 2, 3, 3};
            return shades[dot.count(4)];
        }
        case 10:
            return dot.count(4);
        default:
            return 0;
    }
}

}  // namespace

const std::vector<int>& allModes() {
    static const std::vector<int> modes = {0, 1,  2,  3,  4,  5,  6,  7,  8,
                                           9, 10, 11, 12, 13, 14, 15, 77, 239};
    return modes;
}

int planes(int mode) {
    switch (mode) {
        case 1:
        case 13:
            return 3;
        case 2:
        case 4:
        case 9:
        case 10:
        case 239:
            return 4;
        case 3:
        case 5:
        case 12:
        case 14:
            return 2;
        case 6:
            return 12;
        case 7:
            return 6;
        case 8:
            return 8;
        default:
            return 0;
    }
}

bool hasRawFile(int mode) {
    return mode == 1 || mode == 6 || mode == 7 || mode == 8 || mode == 9 || mode == 10 ||
           mode == 13;
}

std::uint32_t clockOf(const Bytes& reply) {
    return reply[0] + 0x100U * reply[1] + 0x10000U * reply[2] + 0x1000000U * reply[3];
}

std::string text(int mode, bool xl, std::uint32_t stamp, const Bytes& planeData) {
    char line[16];
    std::snprintf(line, sizeof line, "0x%08x\r\n", stamp);
    std::string result = line;
    for (int row = 0; row < (xl ? 64 : 32); ++row) {
        for (int column = 0; column < (xl ? 192 : 128); ++column) {
            const Dot dot(planeData, xl, row, column);
            const int value = xl ? dot.number(2) : shade(mode, dot);
            result += "0123456789abcdef"[value];
        }
        result += "\r\n";
    }
    return result + "\r\n";
}

Bytes raw(int mode, std::uint32_t stamp, const Bytes& planeData) {
    Bytes result;
    for (int byte = 0; byte < 4; ++byte) {
        result.push_back(static_cast<std::uint8_t>(stamp % 256));
        stamp /= 256;
    }
    for (std::size_t i = 0; i < static_cast<std::size_t>(planes(mode)) * 512; ++i) {
        result.push_back(i < planeData.size() ? planeData[i] : 0);
    }
    return result;
}

Bytes rawHeader(int mode) {
    return {0x52, 0x41, 0x57, 0x00, 0x01, 0x80, 0x20, static_cast<std::uint8_t>(planes(mode))};
}

}  // namespace naive
