#include "display/look.h"

#include <gmock/gmock.h>

#include <string>

namespace {

using display::Colour;
using display::Dots;

/// Entry 1 is 200, 100, 3; entry 2 is 255, 255, 255; the others are black.
display::Look twoColours(std::uint8_t brightness) {
    display::Look look;
    look.palette = {0, 0, 0, 200, 100, 3, 255, 255, 255};
    look.brightness = brightness;
    return look;
}

struct ColourCase {
    std::string name;
    std::uint8_t brightness;
    std::size_t number;
    Colour wanted;
};

class PixelColour : public testing::TestWithParam<ColourCase> {};

TEST_P(PixelColour, IsThePalettesTimesBrightnessTimesCover) {
    EXPECT_EQ(display::coloursOf(twoColours(GetParam().brightness))[GetParam().number],
              GetParam().wanted);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Numbers, PixelColour, testing::Values(
    //         name                 brightness  number      red  green blue
    ColourCase{"FullLight",         255,        16 + 15,   {200, 100, 3}},
    ColourCase{"NotCovered",        255,        16 + 0,    {0, 0, 0}},
    ColourCase{"AThirdCovered",     255,        16 + 5,    {67, 33, 1}},
    ColourCase{"HardlyCovered",     255,        16 + 1,    {13, 7, 0}},
    ColourCase{"HalfBright",        128,        16 + 15,   {100, 50, 2}},
    ColourCase{"LeastBright",       10,         16 + 15,   {8, 4, 0}},
    ColourCase{"DimAndHardlyCovered", 10,       32 + 1,    {1, 1, 1}},
    ColourCase{"White",             255,        32 + 15,   {255, 255, 255}},
    ColourCase{"WhiteEdge",         255,        32 + 7,    {119, 119, 119}},
    ColourCase{"Unlit",             255,        15,        {0, 0, 0}},
    ColourCase{"LastNumber",        255,        255,       {0, 0, 0}}),
    [](const auto& test) { return test.param.name; });
// clang-format on

struct MaskCase {
    std::string name;
    std::size_t scale;
    Dots dots;
    std::string rows;  ///< from the top, a hexadecimal digit for each pixel
};

class Mask : public testing::TestWithParam<MaskCase> {};

TEST_P(Mask, CoversThePixels) {
    const display::DotMask mask(GetParam().scale, GetParam().dots);
    std::string rows;
    for (std::size_t y = 0; y < GetParam().scale; ++y) {
        rows += y == 0 ? "" : " ";
        for (std::size_t x = 0; x < GetParam().scale; ++x) {
            rows += "0123456789abcdef"[mask.cover(x, y)];
        }
    }
    EXPECT_EQ(rows, GetParam().rows);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(OfDots, Mask, testing::Values(
    MaskCase{"RoundButTooSmall1", 1, Dots::Round,  "f"},
    MaskCase{"RoundButTooSmall3", 3, Dots::Round,  "fff fff fff"},
    MaskCase{"Round4",            4, Dots::Round,  "2aa2 affa affa 2aa2"},
    MaskCase{"Round5",            5, Dots::Round,  "07a70 7fff7 afffa 7fff7 07a70"},
    MaskCase{"Round8",            8, Dots::Round,  "00377300 07ffff70 3ffffff3 7ffffff7 "
                                                   "7ffffff7 3ffffff3 07ffff70 00377300"},
    MaskCase{"Square1",           1, Dots::Square, "f"},
    MaskCase{"Square5",           5, Dots::Square, "fffff fffff fffff fffff fffff"}),
    [](const auto& test) { return test.param.name; });
// clang-format on

}  // namespace
