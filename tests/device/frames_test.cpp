#include "device/frames.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "device/upload.h"
#include "tests/support/byte_text.h"

namespace {

using support::byteText;

struct FrameCase {
    std::string name;
    std::function<CommandFrame()> build;
    std::string bytes;
};

class FrameOf : public testing::TestWithParam<FrameCase> {};

TEST_P(FrameOf, HasTheseBytes) {
    EXPECT_EQ(byteText(GetParam().build().bytes()), GetParam().bytes);
}

/// A command without operand, or with one in byte 5.
FrameCase command(std::string name, Command code, std::string bytes, std::uint8_t operand = 0) {
    return {std::move(name), [=] { return frames::command(code, operand); }, std::move(bytes)};
}

FrameCase brightness(int level, std::string bytes) {
    return {"Brightness" + std::to_string(level), [=] { return frames::brightness(level); },
            std::move(bytes)};
}

CommandFrame rampPalette() {
    std::array<std::uint8_t, 48> colours;
    std::ranges::generate(colours, [value = std::uint8_t{0xA0}]() mutable { return value++; });
    return frames::palette(colours);
}

CommandFrame someSettings() {
    std::array<std::uint8_t, 23> bytes;
    std::ranges::generate(bytes, [value = std::uint8_t{0x01}]() mutable { return value++; });
    return frames::settings(settings::fromBytes(bytes));
}

INSTANTIATE_TEST_SUITE_P(
    Command, FrameOf,
    testing::Values(
        command("Reset", Command::Reset, "81 C3 E7 FF 00*2048"),
        command("Store", Command::Store, "81 C3 E7 FF 01 00*2047"),
        command("SelectMode", Command::SelectMode, "81 C3 E7 FF 02 0F 00*2046", 15),
        command("SelectPreset", Command::SelectPreset, "81 C3 E7 FF 03 08 00*2046", 8),
        command("ReadSettings", Command::ReadSettings, "81 C3 E7 FF 10 00*2047"),
        command("ReadUniqueId", Command::ReadUniqueId, "81 C3 E7 FF 11 00*2047"),
        command("StorePalette", Command::StorePalette, "81 C3 E7 FF 12 00*2047"),
        FrameCase{"CodeAndOperandAbove127", [] { return frames::command(0x81, 0xFF); },
                  "81 C3 E7 FF 81 FF 00*2046"},
        FrameCase{"Palette", rampPalette,
                  "81 C3 E7 FF 04 00 01 "
                  "A0 A1 A2 A3 A4 A5 A6 A7 A8 A9 AA AB AC AD AE AF "
                  "B0 B1 B2 B3 B4 B5 B6 B7 B8 B9 BA BB BC BD BE BF "
                  "C0 C1 C2 C3 C4 C5 C6 C7 C8 C9 CA CB CC CD CE CF 00*1997"},
        brightness(std::numeric_limits<int>::min(), "81 C3 E7 FF 08 00*12 0A 00*2034"),
        brightness(9, "81 C3 E7 FF 08 00*12 0A 00*2034"),
        brightness(10, "81 C3 E7 FF 08 00*12 0A 00*2034"),
        brightness(200, "81 C3 E7 FF 08 00*12 C8 00*2034"),
        brightness(255, "81 C3 E7 FF 08 00*12 FF 00*2034"),
        brightness(256, "81 C3 E7 FF 08 00*12 FF 00*2034"),
        brightness(std::numeric_limits<int>::max(), "81 C3 E7 FF 08 00*12 FF 00*2034"),
        FrameCase{"Settings", someSettings,
                  "81 C3 E7 FF 20 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 11 12 13 14 15 "
                  "16 17 00*2024"}),
    [](const auto& test) {
        std::string name = test.param.name;
        std::ranges::replace(name, '-', 'M');
        return name;
    });

/// Every frame of an upload, as far as the controller accepts them.
struct UploadCase {
    std::string name;
    std::string destination;
    std::vector<std::uint8_t> content;
    std::size_t accepted;  ///< frames that are accepted
    upload::Outcome outcome;
    std::vector<std::string> frames;
};

class UploadOf : public testing::TestWithParam<UploadCase> {};

TEST_P(UploadOf, GoesFrameByFrameUntilOneIsRefused) {
    std::vector<std::string> frames;
    CommandFrame frame(Command::Upload);
    const auto exchange = [&](const CommandFrame& next) {
        frames.push_back(byteText(next.bytes()));
        return frames.size() <= GetParam().accepted;
    };
    EXPECT_EQ(upload::transfer(GetParam().destination, GetParam().content, frame, exchange),
              GetParam().outcome);
    EXPECT_EQ(frames, GetParam().frames);
}

const std::string OpenA = "81 C3 E7 FF 0A 00 61 00*2045";
const std::string Close = "81 C3 E7 FF 0A FF 00*2046";
const std::string Empty = "81 C3 E7 FF 0A 01 00*2046";
const std::vector<std::uint8_t> Three = {0xA1, 0xA2, 0xA3};
const std::string DataThree = "81 C3 E7 FF 0A 01 00 03 A1 A2 A3 00*2041";
const std::vector<std::uint8_t> Block(512, 0xBB);

std::string ofBytes(std::string head, std::string byte, int count, std::string tail) {
    for (int i = 0; i < count; ++i) {
        head += " " + byte;
    }
    return head + tail;
}

const std::string DataBlock = ofBytes("81 C3 E7 FF 0A 01 02 00", "BB", 512, " 00*1532");

INSTANTIATE_TEST_SUITE_P(
    Sample, UploadOf,
    testing::Values(
        UploadCase{"NoBytes", "a", {}, 9, upload::Outcome::Done, {OpenA, Empty, Close}},
        UploadCase{"ThreeBytes", "a", Three, 9, upload::Outcome::Done, {OpenA, DataThree, Close}},
        UploadCase{
            "AWholeBlock", "a", Block, 9, upload::Outcome::Done, {OpenA, DataBlock, Empty, Close}},
        UploadCase{"RefusedAtOnce", "a", Three, 0, upload::Outcome::OpenRefused, {OpenA}},
        UploadCase{
            "RefusedInTheMiddle", "a", Three, 1, upload::Outcome::DataRefused, {OpenA, DataThree}},
        UploadCase{"RefusedAtTheLastBlock",
                   "a",
                   Block,
                   2,
                   upload::Outcome::DataRefused,
                   {OpenA, DataBlock, Empty}},
        UploadCase{"RefusedAtTheEnd",
                   "a",
                   Three,
                   2,
                   upload::Outcome::CloseRefused,
                   {OpenA, DataThree, Close}},
        UploadCase{"NoName", "", {}, 0, upload::Outcome::OpenRefused, {"81 C3 E7 FF 0A 00*2047"}},
        UploadCase{"LongestName",
                   std::string(2046, 'n'),
                   {},
                   0,
                   upload::Outcome::OpenRefused,
                   {ofBytes("81 C3 E7 FF 0A 00", "6E", 2046, "")}},
        UploadCase{"NameTooLong",
                   std::string(5000, 'n'),
                   {},
                   0,
                   upload::Outcome::OpenRefused,
                   {ofBytes("81 C3 E7 FF 0A 00", "6E", 2046, "")}}),
    [](const auto& test) { return test.param.name; });

TEST(UploadAnswer, RefusesWithOneOnly) {
    EXPECT_FALSE(upload::accepts(0x01));
    EXPECT_TRUE(upload::accepts(0x00));
    EXPECT_TRUE(upload::accepts(0x02));
    EXPECT_TRUE(upload::accepts(0xFF));
}

}  // namespace
