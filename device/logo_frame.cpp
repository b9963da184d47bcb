#include "device/logo_frame.h"

#include <cstddef>
#include <string_view>

namespace {

using image_frame::offsetOf;
using image_frame::Planes;
using image_frame::RowBytes;

constexpr std::size_t StripRows = 7;
constexpr std::size_t LetteringTop = 9;

// clang-format off
constexpr std::array<std::string_view, 13> Lettering = {
    "##............##........##..##........##......####......#########.......########....############",
    "##............##........##..###......###.....######.....###########....##########...############",
    "##............##........##..####....####....###..###....##.......###..###......###.......##.....",
    "##............##........##..#####..#####...###....###...##........##..##........##.......##.....",
    "##............##........##..##.######.##..###......###..##........##..##........##.......##.....",
    "##............##........##..##..####..##..##........##..##........##..##........##.......##.....",
    "##............##........##..##...##...##..##........##..##........##..##........##.......##.....",
    "##............##........##..##........##..############..##........##..##........##.......##.....",
    "##............##........##..##........##..############..##........##..##........##.......##.....",
    "##............##........##..##........##..##........##..##........##..##........##.......##.....",
    "##............###......###..##........##..##........##..##.......###..###......###.......##.....",
    "############...##########...##........##..##........##..###########....##########........##.....",
    "############....########....##........##..##........##..#########.......########.........##.....",
};
// clang-format on

constexpr std::size_t LetteringWidth = Lettering[0].size();
constexpr std::size_t LetteringLeft = (image_frame::Columns - LetteringWidth) / 2;

/// One swatch for each colour, 8 dots wide with its leftmost column dark.
constexpr void drawStrip(ImageFrame& frame) {
    for (std::size_t plane = 0; plane < Planes; ++plane) {
        for (std::size_t row = 0; row < StripRows; ++row) {
            for (std::size_t colour = 0; colour < RowBytes; ++colour) {
                frame[offsetOf(plane, row, colour)] = (colour >> plane & 1U) != 0 ? 0x7F : 0x00;
            }
        }
    }
}

constexpr void drawLettering(ImageFrame& frame) {
    for (std::size_t row = 0; row < Lettering.size(); ++row) {
        for (std::size_t i = 0; i < LetteringWidth; ++i) {
            if (Lettering[row][i] != '#') {
                continue;
            }
            const std::size_t column = LetteringLeft + i;
            for (std::size_t plane = 0; plane < Planes; ++plane) {
                frame[offsetOf(plane, LetteringTop + row, column / 8)] |=
                    image_frame::bitOf(column);
            }
        }
    }
}

constexpr ImageFrame draw() {
    ImageFrame frame = frame::blank(frame::Kind::Image);
    drawStrip(frame);
    drawLettering(frame);
    return frame;
}

constexpr ImageFrame Logo = draw();

}  // namespace

const ImageFrame& logoFrame() { return Logo; }
