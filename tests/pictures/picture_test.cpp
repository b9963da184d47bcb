// PNGs of all kinds read, and shown with the dots and the palette of a display.

#include "pictures/picture.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <numeric>
#include <string>

#include "pictures/png.h"
#include "recording/error.h"
#include "tests/pictures/decoded.h"
#include "tests/support/temporary_folder.h"
#include "ui/palette.h"

namespace {

using decoded::Bytes;
using pictures::Picture;
using recording::Failure;

struct KindCase {
    std::string name;
    std::string options;  ///< of ImageMagick
    Bytes rgb;            ///< wanted for the four pixels
};

class PngKind : public testing::TestWithParam<KindCase> {};

/// Four pixels: red, white, black, and green that is transparent.
TEST_P(PngKind, IsRead) {
    const support::TemporaryFolder folder;
    const Bytes rgba = {255, 0, 0, 255, 255, 255, 255, 255, 0, 0, 0, 255, 0, 255, 0, 0};
    support::writeFile(folder.path() / "in", rgba);
    const auto path = folder.path() / "x.png";
    const std::string command =
        "convert -size 2x2 -depth 8 rgba:" + (folder.path() / "in").string() + " " +
        GetParam().options + " '" + path.string() + "'";
    ASSERT_EQ(std::system(command.c_str()), 0);
    const Picture picture = pictures::readPng(path);
    EXPECT_EQ(picture.width, 2U);
    EXPECT_EQ(picture.height, 2U);
    EXPECT_EQ(picture.rgb, GetParam().rgb);
}

const Bytes Colours = {255, 0, 0, 255, 255, 255, 0, 0, 0, 0, 0, 0};
const Bytes BlackAndWhite = {0, 0, 0, 255, 255, 255, 0, 0, 0, 255, 255, 255};

// clang-format off
INSTANTIATE_TEST_SUITE_P(Of, PngKind, testing::Values(
    KindCase{"Rgba8",      "-define png:color-type=6 -define png:bit-depth=8",  Colours},
    KindCase{"Rgba16",     "-define png:color-type=6 -define png:bit-depth=16", Colours},
    KindCase{"Interlaced", "-define png:color-type=6 -interlace PNG",           Colours},
    KindCase{"Rgb8",       "-background black -flatten -define png:color-type=2 -define png:bit-depth=8",  Colours},
    KindCase{"Rgb16",      "-background black -flatten -define png:color-type=2 -define png:bit-depth=16", Colours},
    KindCase{"Palette",    "-background black -flatten -type Palette -define png:color-type=3", Colours},
    KindCase{"PaletteWithTransparency", "-type PaletteMatte -define png:color-type=3",          Colours},
    KindCase{"Grey8",      "-alpha off -fill black -opaque red -fill white -opaque lime -define png:color-type=0 "
                           "-define png:bit-depth=8",  BlackAndWhite},
    KindCase{"Grey16",     "-alpha off -fill black -opaque red -fill white -opaque lime -define png:color-type=0 "
                           "-define png:bit-depth=16", BlackAndWhite},
    KindCase{"OneBit",     "-alpha off -fill black -opaque red -fill white -opaque lime -monochrome "
                           "-define png:color-type=0 -define png:bit-depth=1", BlackAndWhite},
    KindCase{"GreyAndAlpha", "-fill black -opaque red -define png:color-type=4 -define png:bit-depth=8",
             {0, 0, 0, 255, 255, 255, 0, 0, 0, 0, 0, 0}}),
    [](const auto& row) { return row.param.name; });
// clang-format on

class Refused : public testing::Test {
protected:
    static void expect(const Bytes& bytes, const std::string& why) {
        try {
            pictures::decodePng(bytes, "x.png");
            FAIL() << "was read";
        } catch (const recording::Error& error) {
            EXPECT_EQ(error.failure(), Failure::NotAPicture);
            EXPECT_THAT(error.what(),
                        testing::StartsWith("x.png is no picture that can be shown: "));
            EXPECT_THAT(error.what(), testing::HasSubstr(why));
        }
    }

    /// A good PNG.
    static Bytes png() {
        const support::TemporaryFolder folder;
        const auto path = folder.path() / "x.png";
        pictures::writePng(decoded::chanceFrames({1}, {}, 16, 8), 0,
                           decoded::chanceLook(2, display::Dots::Square), path);
        return support::readFile(path);
    }
};

TEST_F(Refused, IsWhatIsNoPng) {
    expect({}, "it is no PNG");
    expect({0x89, 'P', 'N', 'G'}, "it is no PNG");
    expect(Bytes(1000, 'x'), "it is no PNG");
    expect({'G', 'I', 'F', '8', '9', 'a', 1, 0, 1, 0, 0, 0, 0}, "it is no PNG");
    expect({0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'}, "");
}

/// A header that announces 0x7FFFFFFF x 0x7FFFFFFF, then 5000 x 5000 pixels, with the right sums.
TEST_F(Refused, IsWhatIsTooLarge) {
    expect({0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n', 0,    0,    0,    13,
            'I',  'H', 'D', 'R', 0x7F, 0xFF, 0xFF, 0xFF, 0x7F, 0xFF, 0xFF, 0xFF,
            8,    2,   0,   0,   0,    0x9B, 0xAB, 0x9C, 0x31, 0,    0,    0},
           "");
    expect({0x89, 'P',  'N',  'G',  '\r', '\n', 0x1A, '\n', 0,    0,   0,   13,   'I',  'H',  'D',
            'R',  0,    0,    0x13, 0x88, 0,    0,    0x13, 0x88, 8,   2,   0,    0,    0,    0xD2,
            0xFA, 0x10, 0x9C, 0,    0,    0,    0,    'I',  'D',  'A', 'T', 0x35, 0xAF, 0x06, 0x1E},
           "5000 x 5000 pixels, more than 16777216 in all");
}

TEST_F(Refused, IsAFileThatIsTooLong) {
    const support::TemporaryFolder folder;
    const auto path = folder.path() / "long.png";
    support::writeFile(path, png());
    std::filesystem::resize_file(path, pictures::MostPictureBytes + 1);
    try {
        pictures::readPng(path);
        FAIL() << "was read";
    } catch (const recording::Error& error) {
        EXPECT_THAT(error.what(), testing::HasSubstr("it is larger than 64 MiB"));
    }
    EXPECT_THROW(pictures::readPng(folder.path()), recording::Error);
    EXPECT_THROW(pictures::readPng(folder.path() / "none.png"), recording::Error);
}

TEST_F(Refused, IsWhatBreaksOff) {
    const Bytes whole = png();
    for (std::size_t size = 0; size + 12 < whole.size(); ++size) {
        EXPECT_THROW(pictures::decodePng(std::span(whole).first(size), "x.png"), recording::Error)
            << size;
    }
}

/// Damaged bytes are noticed, or make another picture of the same size.
TEST_F(Refused, OrReadIsWhatHasAWrongByte) {
    const Bytes whole = png();
    for (std::size_t at = 0; at < whole.size(); ++at) {
        Bytes bytes = whole;
        bytes[at] ^= 0x41U;
        try {
            const Picture picture = pictures::decodePng(bytes, "x.png");
            EXPECT_EQ(picture.rgb.size(), 3 * picture.width * picture.height);
        } catch (const recording::Error& error) {
            EXPECT_EQ(error.failure(), Failure::NotAPicture);
        }
    }
}

/// Two dots a column, one a row: the mean of what they cover.
TEST(APicture, IsDividedEvenlyAmongTheDots) {
    Picture picture{6, 2, Bytes(36)};
    const Bytes greys = {0, 34, 68, 85, 170, 255, 0, 34, 68, 119, 136, 153};
    for (std::size_t pixel = 0; pixel < greys.size(); ++pixel) {
        std::fill_n(picture.rgb.begin() + static_cast<std::ptrdiff_t>(3 * pixel), 3, greys[pixel]);
    }
    // (0 + 34 + 68) / 3 = 34 and (85 + 170 + 255 + 119 + 136 + 153) / 6 = 153 of white's 17 a step.
    EXPECT_EQ(pictures::fitToDisplay(picture, presets::colours(7), 2, 1), (Bytes{2, 9}));
}

Picture plain(std::size_t width, std::size_t height, const Bytes& colour) {
    Picture picture{width, height, {}};
    for (std::size_t pixel = 0; pixel < width * height; ++pixel) {
        picture.rgb.insert(picture.rgb.end(), colour.begin(), colour.end());
    }
    return picture;
}

struct ShapeCase {
    std::string name;
    std::size_t width;
    std::size_t height;
    std::size_t left;  ///< of the white part in 128 x 32 dots
    std::size_t top;
    std::size_t columns;
    std::size_t rows;
};

class PictureShape : public testing::TestWithParam<ShapeCase> {};

TEST_P(PictureShape, IsKeptInTheMiddleOfTheDisplay) {
    const auto& row = GetParam();
    const Bytes entries = pictures::fitToDisplay(plain(row.width, row.height, {255, 255, 255}),
                                                 presets::colours(7), 128, 32);
    Bytes wanted(std::size_t{128} * 32, 0);
    for (std::size_t y = row.top; y < row.top + row.rows; ++y) {
        std::fill_n(wanted.begin() + static_cast<std::ptrdiff_t>(y * 128 + row.left), row.columns,
                    15);
    }
    EXPECT_EQ(entries, wanted);
}

INSTANTIATE_TEST_SUITE_P(Of, PictureShape,
                         testing::Values(ShapeCase{"Same", 128, 32, 0, 0, 128, 32},
                                         ShapeCase{"Small", 4, 1, 0, 0, 128, 32},
                                         ShapeCase{"OnePixel", 1, 1, 48, 0, 32, 32},
                                         ShapeCase{"Large", 1000, 250, 0, 0, 128, 32},
                                         ShapeCase{"Square", 300, 300, 48, 0, 32, 32},
                                         ShapeCase{"VeryWide", 4000, 3, 0, 15, 128, 1},
                                         ShapeCase{"VeryHigh", 2, 5000, 63, 0, 1, 32},
                                         ShapeCase{"OddWidth", 101, 32, 13, 0, 101, 32}),
                         [](const auto& test) { return test.param.name; });

TEST(APicture, WithoutPixelsIsBlack) {
    EXPECT_EQ(pictures::fitToDisplay({}, presets::colours(0), 4, 1), (Bytes{0, 0, 0, 0}));
}

/// What the tool itself has written comes back dot by dot.
class EveryPreset : public testing::TestWithParam<std::size_t> {};

TEST_P(EveryPreset, ShowsItsOwnColoursAsTheyAre) {
    const support::TemporaryFolder folder;
    const auto path = folder.path() / "x.png";
    const auto sequence = decoded::chanceFrames({1}, {});
    Bytes entries;
    sequence.read(0, entries);
    display::Look look;
    look.palette = presets::colours(GetParam());
    look.dots = display::Dots::Square;
    for (const std::size_t scale : {1U, 8U}) {
        look.scale = scale;
        pictures::writePng(sequence, 0, look, path);
        EXPECT_EQ(pictures::fitToDisplay(pictures::readPng(path), look.palette, 128, 32), entries);
    }
}

INSTANTIATE_TEST_SUITE_P(Presets, EveryPreset, testing::Range(std::size_t{0}, presets::Count),
                         testing::PrintToStringParamName());

/// The mean of what the dots show.
double meanOf(const Bytes& entries, const presets::Colours& palette, std::size_t channel) {
    return std::accumulate(entries.begin(), entries.end(), 0.0,
                           [&](double sum, std::uint8_t entry) {
                               return sum + palette[std::size_t{3} * entry + channel];
                           }) /
           static_cast<double>(entries.size());
}

TEST(Dithering, KeepsTheMeanBrightness) {
    for (const std::uint8_t grey : std::initializer_list<std::uint8_t>{3, 40, 100, 128, 200, 250}) {
        const Bytes entries = pictures::fitToDisplay(plain(128, 32, {grey, grey, grey}),
                                                     presets::colours(7), 128, 32);
        EXPECT_NEAR(meanOf(entries, presets::colours(7), 0), grey, 1) << int{grey};
        EXPECT_GT(*std::ranges::max_element(entries), *std::ranges::min_element(entries));
    }
}

/// The start of the first rows, worked out by hand: 7, 3, 5 and 1 sixteenths of what is left.
TEST(Dithering, IsFloydAndSteinbergs) {
    presets::Colours blackAndWhite{};
    std::fill(blackAndWhite.end() - 3, blackAndWhite.end(), std::uint8_t{255});
    const Bytes entries =
        pictures::fitToDisplay(plain(128, 32, {100, 100, 100}), blackAndWhite, 128, 32);
    std::string rows;
    for (const std::size_t row : {0U, 1U, 2U}) {
        for (std::size_t column = 0; column < 32; ++column) {
            rows += entries[128 * row + column] == 15 ? '#' : '.';
        }
        rows += '\n';
    }
    EXPECT_EQ(rows,
              ".#..#..#..#..#..#..#..#..#..#..#\n"
              ".#.#.#..#.#.#.#..#.#.#.#..#.#.#.\n"
              ".#..#.#.#..#..#.#.#..#..#.#..#..\n");
}

/// On the orange display, too, black is darkest and white is brightest, and nothing is cut off.
TEST(Dithering, ShowsGreyAsBrightnessOfASingleHue) {
    for (const std::uint8_t grey : std::initializer_list<std::uint8_t>{0, 40, 128, 200, 255}) {
        const Bytes entries = pictures::fitToDisplay(plain(128, 32, {grey, grey, grey}),
                                                     presets::colours(8), 128, 32);
        EXPECT_NEAR(meanOf(entries, presets::colours(8), 0), grey, 1) << int{grey};
    }
}

TEST(Dithering, MixesTheColoursOfAColourfulPalette) {
    presets::Colours palette{};
    palette[3] = 255;  // Entry 1 is red,
    palette[8] = 255;  // 2 is blue.
    const Bytes entries = pictures::fitToDisplay(plain(128, 32, {127, 0, 127}), palette, 128, 32);
    EXPECT_NEAR(meanOf(entries, palette, 0), 127, 6);
    EXPECT_NEAR(meanOf(entries, palette, 2), 127, 6);
}

TEST(Dithering, GetsAlongWithAPaletteThatIsAllBlack) {
    EXPECT_EQ(pictures::fitToDisplay(plain(2, 1, {255, 255, 255}), presets::Colours{}, 2, 1),
              (Bytes{0, 0}));
}

}  // namespace
