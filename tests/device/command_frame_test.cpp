#include "device/command_frame.h"

#include <gmock/gmock.h>

#include <array>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/support/byte_text.h"

namespace {

using support::byteText;

std::string bytesOf(CommandFrame frame) {
    return byteText({frame.data(), static_cast<std::size_t>(CommandFrame::size())});
}

struct CodeCase {
    std::string name;
    Command command;
    std::string frame;
};

class CommandFrameOf : public testing::TestWithParam<CodeCase> {};

TEST_P(CommandFrameOf, IsHeaderCodeAndZeros) {
    EXPECT_EQ(bytesOf(CommandFrame(GetParam().command)), GetParam().frame);
}

INSTANTIATE_TEST_SUITE_P(
    EveryCommand, CommandFrameOf,
    testing::Values(CodeCase{"Reset", Command::Reset, "81 C3 E7 FF 00*2048"},
                    CodeCase{"Store", Command::Store, "81 C3 E7 FF 01 00*2047"},
                    CodeCase{"SelectMode", Command::SelectMode, "81 C3 E7 FF 02 00*2047"},
                    CodeCase{"SelectPreset", Command::SelectPreset, "81 C3 E7 FF 03 00*2047"},
                    CodeCase{"LoadPalette", Command::LoadPalette, "81 C3 E7 FF 04 00*2047"},
                    CodeCase{"Brightness", Command::Brightness, "81 C3 E7 FF 08 00*2047"},
                    CodeCase{"Upload", Command::Upload, "81 C3 E7 FF 0A 00*2047"},
                    CodeCase{"ReadSettings", Command::ReadSettings, "81 C3 E7 FF 10 00*2047"},
                    CodeCase{"ReadUniqueId", Command::ReadUniqueId, "81 C3 E7 FF 11 00*2047"},
                    CodeCase{"StorePalette", Command::StorePalette, "81 C3 E7 FF 12 00*2047"},
                    CodeCase{"WriteSettings", Command::WriteSettings, "81 C3 E7 FF 20 00*2047"}),
    [](const auto& test) { return test.param.name; });

TEST(CommandFrame, IsSentWith2052Bytes) {
    EXPECT_EQ(CommandFrame::size(), 2052);
    EXPECT_EQ(CommandFrame::Size, 2052U);
}

TEST(CommandFrame, TakesACodeAbove127AsItIs) {
    EXPECT_EQ(bytesOf(CommandFrame(std::uint8_t{0x81})), "81 C3 E7 FF 81 00*2047");
    EXPECT_EQ(bytesOf(CommandFrame(std::uint8_t{0xFF})), "81 C3 E7 FF FF 00*2047");
}

TEST(CommandFrame, SetsOneByte) {
    CommandFrame frame(Command::SelectMode);
    frame.set(5, 0x0E);
    frame.set(2051, 0xFE);
    EXPECT_EQ(bytesOf(frame), "81 C3 E7 FF 02 0E 00*2045 FE");
}

TEST(CommandFrame, RefusesAByteBehindItsEnd) {
    CommandFrame frame(Command::SelectMode);
    EXPECT_THROW(frame.set(2052, 1), std::out_of_range);
}

struct CopyCase {
    std::string name;
    std::size_t offset;
    std::vector<std::uint8_t> operands;
    std::string frame;
};

class CommandFrameCopy : public testing::TestWithParam<CopyCase> {};

TEST_P(CommandFrameCopy, TakesWhatFits) {
    CommandFrame frame(Command::WriteSettings);
    frame.copy(GetParam().offset, GetParam().operands);
    EXPECT_EQ(bytesOf(frame), GetParam().frame);
}

INSTANTIATE_TEST_SUITE_P(
    Sample, CommandFrameCopy,
    testing::Values(
        CopyCase{"AtTheFirstOperand", 5, {0xA1, 0xA2, 0xA3}, "81 C3 E7 FF 20 A1 A2 A3 00*2044"},
        CopyCase{"UpToTheEnd", 2049, {0xA1, 0xA2, 0xA3}, "81 C3 E7 FF 20 00*2044 A1 A2 A3"},
        CopyCase{"PastTheEnd", 2050, {0xA1, 0xA2, 0xA3}, "81 C3 E7 FF 20 00*2045 A1 A2"},
        CopyCase{"FromTheLastByte", 2051, {0xA1, 0xA2, 0xA3}, "81 C3 E7 FF 20 00*2046 A1"},
        CopyCase{"BehindTheEnd", 2052, {0xA1, 0xA2, 0xA3}, "81 C3 E7 FF 20 00*2047"},
        CopyCase{"FarBehindTheEnd", 5000, {0xA1, 0xA2, 0xA3}, "81 C3 E7 FF 20 00*2047"},
        CopyCase{"OfNothing", 5, {}, "81 C3 E7 FF 20 00*2047"}),
    [](const auto& test) { return test.param.name; });

TEST(CommandFrame, CutsOperandsLongerThanItself) {
    CommandFrame frame(Command::Upload);
    frame.copy(6, std::vector<std::uint8_t>(3000, 0xAB));
    EXPECT_EQ(byteText({frame.data(), 8}), "81 C3 E7 FF 0A 00 AB AB");
    EXPECT_EQ(byteText({frame.data() + 2044, 8}), "AB AB AB AB AB AB AB AB");
}

struct ClearCase {
    std::string name;
    std::size_t offset;
    std::string frame;
};

class CommandFrameClear : public testing::TestWithParam<ClearCase> {};

TEST_P(CommandFrameClear, ZeroesToTheEnd) {
    CommandFrame frame(Command::Upload);
    frame.copy(5, std::array<std::uint8_t, 3>{0xA1, 0xA2, 0xA3});
    frame.set(2051, 0xFE);
    frame.clearFrom(GetParam().offset);
    EXPECT_EQ(bytesOf(frame), GetParam().frame);
}

INSTANTIATE_TEST_SUITE_P(
    Sample, CommandFrameClear,
    testing::Values(ClearCase{"FromTheCode", 4, "81 C3 E7 FF 00*2048"},
                    ClearCase{"FromTheFirstOperand", 5, "81 C3 E7 FF 0A 00*2047"},
                    ClearCase{"FromTheMiddle", 7, "81 C3 E7 FF 0A A1 A2 00*2045"},
                    ClearCase{"FromTheLastByte", 2051, "81 C3 E7 FF 0A A1 A2 A3 00*2044"},
                    ClearCase{"BehindTheEnd", 2052, "81 C3 E7 FF 0A A1 A2 A3 00*2043 FE"},
                    ClearCase{"FarBehindTheEnd", 5000, "81 C3 E7 FF 0A A1 A2 A3 00*2043 FE"}),
    [](const auto& test) { return test.param.name; });

}  // namespace
