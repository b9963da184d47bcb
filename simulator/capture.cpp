#include "simulator/capture.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace simulator {

namespace {

/// The light of each dot, 0..255, before it is cut down to the shades of the machine.
struct Picture {
    Picture(int pictureWidth, int pictureHeight)
        : width(pictureWidth),
          height(pictureHeight),
          light(static_cast<std::size_t>(width) * static_cast<std::size_t>(height)) {}

    void set(int x, int y, int value) {
        light[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
              static_cast<std::size_t>(x)] = static_cast<std::uint8_t>(value);
    }

    int width;
    int height;
    std::vector<std::uint8_t> light;
};

/// There and back between 0 and `range` once in `period` steps.
int swing(int step, int period, int range) {
    const int half = period / 2;
    const int place = step % period;
    return (place < half ? place : period - place) * range / half;
}

void drawRamp(Picture& picture, int step) {
    const int shift = step * picture.width / Animation::Loop;
    for (int y = picture.height - picture.height / 4; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            picture.set(x, y, (x + shift) % picture.width * 256 / picture.width);
        }
    }
}

void drawBall(Picture& picture, int step) {
    const int radius = picture.height / 8;
    const int floor = picture.height - picture.height / 4;
    const int centreX = radius + swing(step, Animation::Loop, picture.width - 2 * radius - 1);
    const int centreY = radius + swing(step, Animation::Loop / 4, floor - 2 * radius - 1);
    for (int y = -radius; y <= radius; ++y) {
        for (int x = -radius; x <= radius; ++x) {
            const int distance = x * x + y * y;
            if (distance <= radius * radius) {
                picture.set(centreX + x, centreY + y, 255 - 160 * distance / (radius * radius));
            }
        }
    }
}

/// Digits of 3 x 5 dots, the top row in the highest three bits.
constexpr std::array<int, 10> Digits = {075557, 026227, 071747, 071717, 055711,
                                        074717, 074757, 071111, 075757, 075717};

void drawDigit(Picture& picture, int digit, int left, int top) {
    constexpr int Zoom = 2;
    for (int row = 0; row < 5 * Zoom; ++row) {
        for (int column = 0; column < 3 * Zoom; ++column) {
            const int bit = (4 - row / Zoom) * 3 + 2 - column / Zoom;
            if ((Digits[static_cast<std::size_t>(digit)] >> bit & 1) != 0) {
                picture.set(left + column, top + row, 255);
            }
        }
    }
}

void drawScore(Picture& picture, int step) {
    int score = step * 1370;
    for (int left = 40; left >= 0; left -= 8) {
        drawDigit(picture, score % 10, left + 2, 2);
        score /= 10;
    }
}

/// Whether a dot of this shade is lit in this plane.
bool isLit(int shade, int plane, Coding coding) {
    return coding == Coding::Binary ? (shade >> plane & 1) != 0 : shade > plane;
}

}  // namespace

const Packet& Animation::frame(std::uint32_t index, std::uint8_t planes, Coding coding) {
    if (planes != planes_ || coding != coding_) {
        rendered_.assign(Loop, Packet());
        planes_ = planes;
        coding_ = coding;
    }
    const std::uint32_t step = index % Loop;
    Packet& frame = rendered_[step];
    if (frame.empty()) {
        frame = render(static_cast<int>(step), planes, coding);
    }
    return frame;
}

Packet Animation::levels(std::uint32_t index, std::uint8_t planes, Coding coding) const {
    const auto step = static_cast<int>(index % Loop);
    Picture picture(width_, height_);
    drawBall(picture, step);
    drawScore(picture, step);
    drawRamp(picture, step);
    const int shades = coding == Coding::Binary ? 1 << std::min<int>(planes, 8) : planes + 1;
    for (std::uint8_t& light : picture.light) {
        light = static_cast<std::uint8_t>(light * shades / 256);
    }
    return std::move(picture.light);
}

Packet Animation::render(int step, std::uint8_t planes, Coding coding) const {
    if (planes == 0) {
        return {};
    }
    const Packet levels = this->levels(static_cast<std::uint32_t>(step), planes, coding);
    const std::size_t planeSize = levels.size() / 8;
    Packet bytes(planes * planeSize);
    for (std::size_t dot = 0; dot < levels.size(); ++dot) {
        const auto mask = static_cast<std::uint8_t>(1U << (dot % 8));
        for (int plane = 0; plane < planes; ++plane) {
            if (isLit(levels[dot], plane, coding)) {
                std::uint8_t& byte = bytes[static_cast<std::size_t>(plane) * planeSize + dot / 8];
                byte = static_cast<std::uint8_t>(byte | mask);
            }
        }
    }
    return bytes;
}

}  // namespace simulator
