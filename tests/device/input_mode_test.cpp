#include "device/input_mode.h"

#include <gmock/gmock.h>

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <set>
#include <string>
#include <string_view>

namespace {

using enum ShadeSet;
using enum DotRule::Sum;

/// One mode, with the digits that its dots become in a dump's text.
struct ModeCase {
    std::uint8_t number;
    std::string_view name;
    ShadeSet shades;
    int planes;
    bool rawFile;
    DotRule::Sum sum;
    int summedPlanes;
    std::string_view digits;
};

std::ostream& operator<<(std::ostream& stream, const ModeCase& mode) { return stream << mode.name; }

// clang-format off
constexpr ModeCase Table[] = {
    // number, name,   shades, planes, raw, dots
    {  0, "PinMame",   Sixteen,  0, false, Count,     0, "0"},
    {  1, "WPC",       Four,     3, true,  Count,     3, "0123"},
    {  2, "Stern",     Sixteen,  4, false, Weighted,  4, "0123456789abcdef"},
    {  3, "WhiteStar", Four,     2, false, Weighted,  2, "0123"},
    {  4, "Spike",     Sixteen,  4, false, Weighted,  4, "0123456789abcdef"},
    {  5, "DataEast",  Four,     2, false, Weighted,  2, "0123"},
    {  6, "Gottlieb1", Five,    12, true,  Count,    12, "033777bbbbbbf"},
    {  7, "Gottlieb2", Four,     6, true,  Count,     6, "0122223"},
    {  8, "Gottlieb3", Four,     8, true,  Count,     8, "012222223"},
    {  9, "Capcom",    Four,     4, true,  Count,     4, "01233"},
    { 10, "AlvinG",    Five,     4, true,  Count,     4, "01234"},
    { 11, "Spooky",    Sixteen,  0, false, Weighted,  4, "0123456789abcdef"},
    { 12, "DE128x16",  Four,     2, false, Weighted,  2, "0123"},
    { 13, "Inder",     Four,     3, true,  Count,     3, "0123"},
    { 14, "Sleic",     Four,     2, false, Weighted,  2, "0123"},
    { 15, "HomePin",   Sixteen,  0, false, Weighted,  4, "0123456789abcdef"},
    {239, "239",       Sixteen,  4, false, Count,     0, "0"},
};
// clang-format on

class InputModeTable : public testing::TestWithParam<ModeCase> {
protected:
    const InputModeInfo& mode() const { return inputMode(GetParam().number); }
};

TEST_P(InputModeTable, HoldsNumberAndName) {
    EXPECT_EQ(mode().number, GetParam().number);
    EXPECT_EQ(mode().name, GetParam().name);
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

TEST_P(InputModeTable, HasADigitForEverySumOfItsDots) {
    const DotRule& dots = mode().dots;
    const std::size_t sums = dots.sum == Weighted ? 1U << dots.planes : dots.planes + 1U;
    EXPECT_EQ(dots.digits.size(), sums);
}

INSTANTIATE_TEST_SUITE_P(Mode, InputModeTable, testing::ValuesIn(Table),
                         [](const auto& test) { return "No" + std::string(test.param.name); });

TEST(InputModes, ComeInTheOrderOfTheTable) {
    ASSERT_EQ(inputModes().size(), std::size(Table));
    for (std::size_t i = 0; i < std::size(Table); ++i) {
        EXPECT_EQ(inputModes()[i].number, Table[i].number);
    }
}

TEST(InputModes, RepeatNoNumber) {
    std::set<int> numbers;
    for (const InputModeInfo& mode : inputModes()) {
        EXPECT_TRUE(numbers.insert(mode.number).second) << int{mode.number} << " comes twice";
    }
}

struct NumberCase {
    InputMode mode;
    std::uint8_t number;
    std::string name;
};

class InputModeNumber : public testing::TestWithParam<NumberCase> {};

TEST_P(InputModeNumber, IsTheControllersOwn) {
    EXPECT_EQ(static_cast<std::uint8_t>(GetParam().mode), GetParam().number);
    EXPECT_EQ(inputMode(GetParam().mode).number, GetParam().number);
    EXPECT_EQ(inputMode(GetParam().mode).name, GetParam().name);
}

INSTANTIATE_TEST_SUITE_P(
    Of, InputModeNumber,
    testing::Values(
        NumberCase{InputMode::PinMame, 0, "PinMame"}, NumberCase{InputMode::WPC, 1, "WPC"},
        NumberCase{InputMode::Stern, 2, "Stern"}, NumberCase{InputMode::WhiteStar, 3, "WhiteStar"},
        NumberCase{InputMode::Spike, 4, "Spike"}, NumberCase{InputMode::DataEast, 5, "DataEast"},
        NumberCase{InputMode::Gottlieb1, 6, "Gottlieb1"},
        NumberCase{InputMode::Gottlieb2, 7, "Gottlieb2"},
        NumberCase{InputMode::Gottlieb3, 8, "Gottlieb3"},
        NumberCase{InputMode::Capcom, 9, "Capcom"}, NumberCase{InputMode::AlvinG, 10, "AlvinG"},
        NumberCase{InputMode::Spooky, 11, "Spooky"},
        NumberCase{InputMode::DE128x16, 12, "DE128x16"}, NumberCase{InputMode::Inder, 13, "Inder"},
        NumberCase{InputMode::Sleic, 14, "Sleic"}, NumberCase{InputMode::HomePin, 15, "HomePin"}),
    [](const auto& test) { return test.param.name; });

class NumberOfNoMode : public testing::TestWithParam<int> {};

TEST_P(NumberOfNoMode, HasNoPlanesNoRawFileAndBlankDots) {
    const InputModeInfo& mode = inputMode(static_cast<std::uint8_t>(GetParam()));
    EXPECT_EQ(mode.capturePlanes, 0);
    EXPECT_FALSE(mode.rawFile);
    EXPECT_EQ(mode.dots.sum, Count);
    EXPECT_EQ(mode.dots.planes, 0);
    EXPECT_EQ(mode.dots.digits, "0");
}

constexpr auto NumberName = [](const auto& test) { return "No" + std::to_string(test.param); };
INSTANTIATE_TEST_SUITE_P(From16To238, NumberOfNoMode, testing::Range(16, 239), NumberName);
INSTANTIATE_TEST_SUITE_P(From240To255, NumberOfNoMode, testing::Range(240, 256), NumberName);

}  // namespace
