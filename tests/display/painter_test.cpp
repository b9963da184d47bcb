#include "display/painter.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using display::Dots;
using display::Look;
using display::Painter;
using display::Pixels;
using Bytes = std::vector<std::uint8_t>;

/// Behind a picture, to see what is written there.
constexpr std::size_t GuardBytes = 64;
constexpr std::uint8_t Guard = 0xA5;

Look lookOf(std::size_t scale, Dots dots) {
    Look look;
    std::mt19937 random(1);
    std::ranges::generate(look.palette, [&] { return static_cast<std::uint8_t>(random()); });
    look.brightness = 201;
    look.scale = scale;
    look.dots = dots;
    return look;
}

Bytes randomShades(std::size_t count) {
    std::mt19937 random(2);
    Bytes shades(count);
    std::ranges::generate(shades, [&] { return static_cast<std::uint8_t>(random()); });
    return shades;
}

Bytes paint(const Painter& painter, const Bytes& shades, std::size_t columns) {
    const std::size_t size = painter.pictureBytes(columns, shades.size() / columns);
    Bytes picture(size + GuardBytes, Guard);
    painter.paint(shades, columns, std::span(picture).first(size));
    EXPECT_THAT(std::span(picture).subspan(size), testing::Each(Guard)) << "written behind it";
    picture.resize(size);
    return picture;
}

TEST(Picture, OfSquareDotsRepeatsEachDotsColour) {
    Look look;
    look.palette = {1, 2, 3, 10, 20, 30};
    look.palette[45] = 200;
    look.scale = 2;
    look.dots = Dots::Square;
    const Bytes line = {10, 20, 30, 10, 20, 30, 200, 0, 0, 200, 0, 0, 1, 2, 3, 1, 2, 3};
    const Bytes lower = {1, 2, 3, 1, 2, 3, 1, 2, 3, 1, 2, 3, 10, 20, 30, 10, 20, 30};
    Bytes wanted;
    for (const Bytes& each : {line, line, lower, lower}) {
        wanted.insert(wanted.end(), each.begin(), each.end());
    }
    EXPECT_EQ(paint(Painter(look), {1, 15, 0, 0, 0, 1}, 3), wanted);
}

TEST(Picture, OfARoundDotFadesTowardsItsEdge) {
    Look look;
    look.palette = {0, 0, 0, 150, 75, 255};
    look.scale = 4;
    const Bytes edge = {20, 10, 34, 100, 50, 170, 100, 50, 170, 20, 10, 34};
    const Bytes middle = {100, 50, 170, 150, 75, 255, 150, 75, 255, 100, 50, 170};
    Bytes wanted;
    for (const Bytes& each : {edge, middle, middle, edge}) {
        wanted.insert(wanted.end(), each.begin(), each.end());
    }
    EXPECT_EQ(paint(Painter(look), {1}, 1), wanted);
}

/// Pixel by pixel from the colours and the mask.
Bytes slowPicture(const Look& look, Pixels pixels, const Bytes& shades, std::size_t columns) {
    const display::Colours colours = display::coloursOf(look);
    const display::DotMask mask(look.scale, look.dots);
    Bytes picture;
    for (std::size_t y = 0; y < shades.size() / columns * look.scale; ++y) {
        for (std::size_t x = 0; x < columns * look.scale; ++x) {
            const std::size_t shade = shades[y / look.scale * columns + x / look.scale] % 16;
            const std::size_t number = 16 * shade + mask.cover(x % look.scale, y % look.scale);
            if (pixels == Pixels::Numbers) {
                picture.push_back(static_cast<std::uint8_t>(number));
            } else {
                picture.insert(picture.end(), colours[number].begin(), colours[number].end());
            }
        }
    }
    return picture;
}

class EveryScale : public testing::TestWithParam<std::size_t> {};

TEST_P(EveryScale, ShowsEachPixelInItsColourWhateverTheWidth) {
    for (const Dots dots : {Dots::Round, Dots::Square}) {
        for (const Pixels pixels : {Pixels::Rgb, Pixels::Numbers}) {
            const Look look = lookOf(GetParam(), dots);
            const Painter painter(look, pixels);
            for (const std::size_t columns : {1U, 2U, 3U, 17U, 128U}) {
                const Bytes shades = randomShades(columns * 4);
                EXPECT_EQ(paint(painter, shades, columns),
                          slowPicture(look, pixels, shades, columns))
                    << columns << " columns";
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Scales, EveryScale,
                         testing::Values(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 16, 21, 22, 32, 33),
                         testing::PrintToStringParamName());

TEST(Picture, OfTheLargestScaleIsRightToo) {
    const Look look = lookOf(Painter::MaxScale, Dots::Round);
    const Bytes shades = randomShades(6);
    EXPECT_EQ(paint(Painter(look), shades, 3), slowPicture(look, Pixels::Rgb, shades, 3));
}

TEST(Picture, OfNoRowsIsEmpty) { EXPECT_TRUE(paint(Painter(Look{}), {}, 128).empty()); }

struct RefusedCase {
    std::string name;
    std::size_t shades;
    std::size_t columns;
    std::size_t room;
};

class RefusedPicture : public testing::TestWithParam<RefusedCase> {};

TEST_P(RefusedPicture, Throws) {
    Bytes picture(GetParam().room);
    EXPECT_THROW(Painter(lookOf(2, Dots::Round))
                     .paint(Bytes(GetParam().shades), GetParam().columns, picture),
                 std::invalid_argument);
}

INSTANTIATE_TEST_SUITE_P(Wrong, RefusedPicture,
                         testing::Values(RefusedCase{"NoColumns", 4, 0, 100},
                                         RefusedCase{"ABrokenRow", 5, 2, 100},
                                         RefusedCase{"NoRoom", 4, 2, 47}),
                         [](const auto& test) { return test.param.name; });

TEST(Scale, IsFromOneToTheLargest) {
    for (const std::size_t scale : {std::size_t{0}, Painter::MaxScale + 1}) {
        EXPECT_THROW(Painter(lookOf(scale, Dots::Round)), std::invalid_argument) << scale;
    }
}

}  // namespace
