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

}  // namespace
