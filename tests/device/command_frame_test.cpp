#include "device/command_frame.h"

#include <gmock/gmock.h>

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/support/byte_text.h"

namespace {

using support::byteText;

TEST(CommandFrame, IsHeadCodeAndZeros) {
    EXPECT_EQ(byteText(CommandFrame(Command::ReadSettings).bytes()), "81 C3 E7 FF 10 00*2047");
}

TEST(CommandFrame, TakesACodeAbove127AsItIs) {
    EXPECT_EQ(byteText(CommandFrame(std::uint8_t{0xFE}).bytes()), "81 C3 E7 FF FE 00*2047");
}

struct OperandsCase {
    std::string name;
    std::size_t offset;
    std::vector<std::uint8_t> operands;
    std::string frame;
};

class CommandFrameOperands : public testing::TestWithParam<OperandsCase> {};

TEST_P(CommandFrameOperands, AreTakenAsFarAsTheyFit) {
    CommandFrame frame(Command::WriteSettings);
    frame.copy(GetParam().offset, GetParam().operands);
    EXPECT_EQ(byteText(frame.bytes()), GetParam().frame);
}

TEST_P(CommandFrameOperands, AreZeroAgainOnceCleared) {
    CommandFrame frame(Command::WriteSettings);
    frame.copy(GetParam().offset, GetParam().operands);
    frame.clear();
    EXPECT_EQ(byteText(frame.bytes()), "81 C3 E7 FF 20 00*2047");
}

INSTANTIATE_TEST_SUITE_P(
    Sample, CommandFrameOperands,
    testing::Values(
        OperandsCase{"First", 5, {0xA1, 0xA2, 0xA3}, "81 C3 E7 FF 20 A1 A2 A3 00*2044"},
        OperandsCase{"Last", 2049, {0xA1, 0xA2, 0xA3}, "81 C3 E7 FF 20 00*2044 A1 A2 A3"},
        OperandsCase{"PastTheEnd", 2050, {0xA1, 0xA2, 0xA3}, "81 C3 E7 FF 20 00*2045 A1 A2"},
        OperandsCase{"None", 5, {}, "81 C3 E7 FF 20 00*2047"}),
    [](const auto& test) { return test.param.name; });

class NoOperand : public testing::TestWithParam<std::size_t> {};

TEST_P(NoOperand, IsNeitherSetNorCopiedTo) {
    CommandFrame frame(Command::SelectMode);
    EXPECT_THROW(frame.set(GetParam(), 1), std::out_of_range);
    EXPECT_THROW(frame.copy(GetParam(), std::vector<std::uint8_t>{1}), std::out_of_range);
    EXPECT_EQ(byteText(frame.bytes()), "81 C3 E7 FF 02 00*2047");
}

INSTANTIATE_TEST_SUITE_P(Offset, NoOperand, testing::Values(0U, 3U, 4U, 2052U, 5000U));

}  // namespace
