#include "ui/palette.h"

#include <gmock/gmock.h>

#include <array>
#include <cstddef>
#include <stdexcept>
#include <string>

#include "tests/support/byte_text.h"
#include "tests/support/presets.h"

namespace {

class PalettePreset : public testing::TestWithParam<support::Preset> {};

TEST_P(PalettePreset, HasTheseColours) {
    const auto index = static_cast<std::size_t>(GetParam().index);
    EXPECT_EQ(support::byteText(presets::colours(index)), GetParam().bytes);
}

INSTANTIATE_TEST_SUITE_P(EveryPreset, PalettePreset, testing::ValuesIn(support::Presets),
                         [](const auto& test) { return test.param.name; });

TEST(PalettePresets, AreNine) {
    EXPECT_EQ(presets::Count, 9U);
    EXPECT_THROW(presets::colours(9), std::out_of_range);
}

TEST(Palette, IsSixteenEntriesOfThreeBytes) {
    EXPECT_EQ(PaletteEntries, 16U);
    EXPECT_EQ(PaletteSize, 48U);
    EXPECT_EQ(sizeof(palette), 48U);
}

/// The palette before any code of the program ran.
const std::array<unsigned char, 48> AtStart = palette;

TEST(Palette, StartsAsTheVgaPreset) {
    EXPECT_EQ(support::byteText(AtStart), support::Presets[0].bytes);
}

struct ShadeCase {
    std::string name;
    ShadeSet shades;
    std::string shown;  ///< a character for each entry: 'x' shown, '-' hidden
};

class ShownEntries : public testing::TestWithParam<ShadeCase> {};

TEST_P(ShownEntries, AreThese) {
    std::string shown;
    for (std::size_t entry = 0; entry < 16; ++entry) {
        shown += isShown(GetParam().shades, entry) ? 'x' : '-';
    }
    EXPECT_EQ(shown, GetParam().shown);
}

INSTANTIATE_TEST_SUITE_P(WithShades, ShownEntries,
                         testing::Values(ShadeCase{"Four", ShadeSet::Four, "xx--x----------x"},
                                         ShadeCase{"Five", ShadeSet::Five, "x--x---x---x---x"},
                                         ShadeCase{"Sixteen", ShadeSet::Sixteen,
                                                   "xxxxxxxxxxxxxxxx"}),
                         [](const auto& test) { return test.param.name; });

struct DigitCase {
    std::string name;
    DigitEntries entries;
    std::array<std::uint8_t, 16> wanted;
};

class EntriesOfDigits : public testing::TestWithParam<DigitCase> {};

TEST_P(EntriesOfDigits, AreThese) {
    EXPECT_THAT(GetParam().entries, testing::ElementsAreArray(GetParam().wanted));
}

// clang-format off
constexpr std::array<std::uint8_t, 16>
    OfFour    = {0, 1, 4, 15,  4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15},
    OfFive    = {0, 3, 7, 11, 15, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15},
    OfSixteen = {0, 1, 2,  3,  4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15};
INSTANTIATE_TEST_SUITE_P(OfShadesAndModes, EntriesOfDigits, testing::Values(
    DigitCase{"FourShades",     digitEntries(ShadeSet::Four),                   OfFour},
    DigitCase{"FiveShades",     digitEntries(ShadeSet::Five),                   OfFive},
    DigitCase{"SixteenShades",  digitEntries(ShadeSet::Sixteen),                OfSixteen},
    DigitCase{"BallyWilliams",  digitEntries(inputMode(InputMode::WPC)),        OfFour},
    DigitCase{"SternSam",       digitEntries(inputMode(InputMode::Stern)),      OfSixteen},
    DigitCase{"AlvinG",         digitEntries(inputMode(InputMode::AlvinG)),     OfFive},
    DigitCase{"Gottlieb1",      digitEntries(inputMode(InputMode::Gottlieb1)),  OfSixteen}),
    [](const auto& test) { return test.param.name; });
// clang-format on

TEST(Shades, AreChosenByTheHighestDigit) {
    std::string chosen;
    for (std::uint8_t highest = 0; highest < 16; ++highest) {
        const ShadeSet shades = shadesUpTo(highest);
        chosen += shades == ShadeSet::Four ? '4' : shades == ShadeSet::Five ? '5' : 'x';
    }
    EXPECT_EQ(chosen, "44445xxxxxxxxxxx");
}

}  // namespace
