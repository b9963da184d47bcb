#include "device/input_mode.h"

#include <gmock/gmock.h>

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>

namespace {

using enum ShadeSet;
using enum DotRule::Sum;

/// One mode, with the digits that its dots become in a dump's text.
struct ModeCase {
    std::uint8_t number;
    std::string_view label;
    ShadeSet shades;
    int planes;
    bool rawFile;
    DotRule::Sum sum;
    int summedPlanes;
    std::string_view digits;
};

std::ostream& operator<<(std::ostream& stream, const ModeCase& mode) {
    return stream << mode.label;
}

// clang-format off
constexpr ModeCase Table[] = {
    // number, label,              shades, planes, raw, dots
    {  0, "USB port",             Sixteen,  0, false, Count,     0, "0"},
    {  1, "Bally/Williams",       Four,     3, true,  Count,     3, "0123"},
    {  2, "Stern S.A.M.",         Sixteen,  4, false, Weighted,  4, "0123456789abcdef"},
    {  3, "Stern Whitestar",      Four,     2, false, Weighted,  2, "0123"},
    {  4, "Stern Spike",          Sixteen,  4, false, Weighted,  4, "0123456789abcdef"},
    {  5, "Data East / Sega",     Four,     2, false, Weighted,  2, "0123"},
    {  6, "Premier Gottlieb V1",  Five,    12, true,  Count,    12, "033777bbbbbbf"},
    {  7, "Premier Gottlieb V2",  Four,     6, true,  Count,     6, "0122223"},
    {  8, "Premier Gottlieb V3",  Four,     8, true,  Count,     8, "012222223"},
    {  9, "Capcom",               Four,     4, true,  Count,     4, "01233"},
    { 10, "Alvin G",              Five,     4, true,  Count,     4, "01234"},
    { 11, "Spooky",               Sixteen,  0, false, Weighted,  4, "0123456789abcdef"},
    { 12, "Data East 128x16",     Four,     2, false, Weighted,  2, "0123"},
    { 13, "Inder / SPinball",     Four,     3, true,  Count,     3, "0123"},
    { 14, "Sleic / Petaco",       Four,     2, false, Weighted,  2, "0123"},
    { 15, "HomePin",              Sixteen,  0, false, Weighted,  4, "0123456789abcdef"},
    {239, "",                     Sixteen,  4, false, Count,     0, "0"},
};
// clang-format on

class InputModeTable : public testing::TestWithParam<ModeCase> {
protected:
    const InputModeInfo& mode() const { return inputMode(GetParam().number); }
};

TEST_P(InputModeTable, HoldsNumberAndLabel) {
    EXPECT_EQ(mode().number, GetParam().number);
    EXPECT_EQ(mode().label, GetParam().label);
}

TEST_P(InputModeTable, HoldsTheShades) { EXPECT_EQ(mode().shades, GetParam().shades); }

TEST_P(InputModeTable, HoldsThePlanesToAskForAndTheRawFile) {
    EXPECT_EQ(mode().capturePlanes, GetParam().planes);
    EXPECT_EQ(mode().rawFile, GetParam().rawFile);
}

TEST_P(InputModeTable, HoldsTheRuleOfItsDots) {
    EXPECT_EQ(mode().dots.sum, GetParam().sum);
    EXPECT_EQ(mode().dots.planes, GetParam().summedPlanes);
    EXPECT_EQ(mode().dots.digits, GetParam().digits);
}

INSTANTIATE_TEST_SUITE_P(Mode, InputModeTable, testing::ValuesIn(Table),
                         [](const auto& test) { return "No" + std::to_string(test.param.number); });

TEST(InputModes, ComeInTheOrderOfTheTable) {
    ASSERT_EQ(inputModes().size(), std::size(Table));
    for (std::size_t i = 0; i < std::size(Table); ++i) {
        EXPECT_EQ(inputModes()[i].number, Table[i].number);
    }
}

TEST(InputModes, AreNumberedAsTheControllerNumbersThem) {
    using enum InputMode;
    constexpr InputMode Ordered[] = {PinMame,   WPC,       Stern,     WhiteStar, Spike,  DataEast,
                                     Gottlieb1, Gottlieb2, Gottlieb3, Capcom,    AlvinG, Spooky,
                                     DE128x16,  Inder,     Sleic,     HomePin};
    int number = 0;
    for (const InputMode mode : Ordered) {
        EXPECT_EQ(static_cast<int>(mode), number);
        EXPECT_EQ(inputMode(mode).number, number++);
    }
}

TEST(InputModes, HaveNoPlanesNoRawFileAndBlankDotsForEveryOtherNumber) {
    for (int number = 16; number <= 255; ++number) {
        SCOPED_TRACE(number);
        const InputModeInfo& mode = inputMode(static_cast<std::uint8_t>(number));
        EXPECT_EQ(mode.capturePlanes, number == 239 ? 4 : 0);
        EXPECT_FALSE(mode.rawFile);
        EXPECT_EQ(mode.dots.sum, Count);
        EXPECT_EQ(mode.dots.planes, 0);
        EXPECT_EQ(mode.dots.digits, "0");
    }
}

}  // namespace
