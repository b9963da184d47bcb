#include "device/logo_frame.h"

#include <gmock/gmock.h>

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "tests/support/byte_text.h"

namespace {

using support::byteText;

constexpr std::size_t Planes = 4;
constexpr std::size_t RowBytes = 16;

std::string rowOf(std::size_t plane, std::size_t row) {
    return byteText(std::span(logoFrame()).subspan(4 + plane * 512 + row * RowBytes, RowBytes));
}

/// One row of a plane as text, '#' for a lit dot; the leftmost dot is a byte's most significant
/// bit.
std::string drawingOf(std::size_t plane, std::size_t row) {
    std::string text;
    for (std::size_t column = 0; column < 128; ++column) {
        const unsigned byte = logoFrame()[4 + plane * 512 + row * RowBytes + column / 8];
        text += (byte & (0x80U >> column % 8)) != 0 ? '#' : '.';
    }
    return text;
}

TEST(LogoFrame, StartsAsAnImageFrame) {
    EXPECT_EQ(byteText(std::span(logoFrame()).first(4)), "81 C3 E7 00");
}

struct StripCase {
    std::size_t plane;
    std::string row;
};

class LogoStrip : public testing::TestWithParam<StripCase> {};

TEST_P(LogoStrip, HasASwatchForEveryColourWithBitInThisPlane) {
    for (std::size_t row = 0; row <= 6; ++row) {
        EXPECT_EQ(rowOf(GetParam().plane, row), GetParam().row) << "row " << row;
    }
}

INSTANTIATE_TEST_SUITE_P(
    InRows0To6, LogoStrip,
    testing::Values(StripCase{0, "00 7F 00 7F 00 7F 00 7F 00 7F 00 7F 00 7F 00 7F"},
                    StripCase{1, "00 00 7F 7F 00 00 7F 7F 00 00 7F 7F 00 00 7F 7F"},
                    StripCase{2, "00 00 00 00 7F 7F 7F 7F 00 00 00 00 7F 7F 7F 7F"},
                    StripCase{3, "00*8 7F 7F 7F 7F 7F 7F 7F 7F"}),
    [](const auto& test) { return "Plane" + std::to_string(test.param.plane); });

class LogoDarkRow : public testing::TestWithParam<std::size_t> {};

TEST_P(LogoDarkRow, IsDarkInEveryPlane) {
    for (std::size_t plane = 0; plane < Planes; ++plane) {
        EXPECT_EQ(rowOf(plane, GetParam()), "00*16") << "plane " << plane;
    }
}

constexpr auto RowName = [](const auto& test) { return "Row" + std::to_string(test.param); };
INSTANTIATE_TEST_SUITE_P(BelowTheStrip, LogoDarkRow, testing::Values(7, 8), RowName);
INSTANTIATE_TEST_SUITE_P(BelowTheLettering, LogoDarkRow, testing::Range<std::size_t>(22, 32),
                         RowName);

// clang-format off
/// Columns 16..111 of rows 9..21.
constexpr std::array<std::string_view, 13> Drawing = {
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
constexpr std::string_view Margin = "................";

class LogoLettering : public testing::TestWithParam<std::size_t> {};

TEST_P(LogoLettering, IsDrawnInColour15) {
    const std::string expected =
        std::string(Margin).append(Drawing.at(GetParam() - 9)).append(Margin);
    for (std::size_t plane = 0; plane < Planes; ++plane) {
        EXPECT_EQ(drawingOf(plane, GetParam()), expected) << "plane " << plane;
    }
}

INSTANTIATE_TEST_SUITE_P(InRows9To21, LogoLettering, testing::Range<std::size_t>(9, 22), RowName);

}  // namespace
