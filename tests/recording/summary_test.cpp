// What is said about a recording as a whole, and where its frames are in time.

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "tests/recording/dumps.h"

namespace {

using dumps::Bytes;
using namespace dumps::joining;
using dumps::Opened;

struct Case {
    std::string name;
    std::vector<std::uint32_t> stamps;
    std::uint64_t durationMs;
    std::uint32_t longestGapMs;
    std::uint64_t longestGapAfter;
    double framesPerSecond;
};

class Stamps : public testing::TestWithParam<Case> {
protected:
    static void expect(const recording::Summary& summary) {
        const Case& wanted = GetParam();
        EXPECT_EQ(summary.frames, wanted.stamps.size());
        EXPECT_EQ(summary.firstMs, wanted.stamps.front());
        EXPECT_EQ(summary.lastMs, wanted.stamps.back());
        EXPECT_EQ(summary.durationMs, wanted.durationMs);
        EXPECT_EQ(summary.longestGapMs, wanted.longestGapMs);
        EXPECT_EQ(summary.longestGapAfter, wanted.longestGapAfter);
        EXPECT_DOUBLE_EQ(summary.framesPerSecond(), wanted.framesPerSecond);
    }
};

TEST_P(Stamps, AddUpInText) {
    std::string text;
    for (const std::uint32_t stamp : GetParam().stamps) {
        text += dumps::plainText(stamp);
    }
    expect(Opened(dumps::bytesOf(text))->summary());
}

TEST_P(Stamps, AddUpInRaw) {
    Bytes bytes = dumps::rawHeader();
    for (const std::uint32_t stamp : GetParam().stamps) {
        bytes = bytes + dumps::plainRaw(stamp);
    }
    expect(Opened(bytes)->summary());
}

TEST_P(Stamps, AddUpInPartsAsInOne) {
    const auto& stamps = GetParam().stamps;
    for (std::size_t cut = 0; cut <= stamps.size(); ++cut) {
        recording::Summary parts[2];
        for (std::size_t i = 0; i < stamps.size(); ++i) {
            parts[i < cut ? 0 : 1].add(stamps[i], false);
        }
        parts[0].append(parts[1]);
        expect(parts[0]);
    }
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Of, Stamps, testing::Values(
    //   name            stamps                              duration     longest    after  rate
    Case{"OneFrame",     {77},                                         0,          0, 0,    0},
    Case{"TwoFrames",    {1000, 1040},                                40,         40, 0,   25},
    Case{"EqualStamps",  {5, 5, 5},                                    0,          0, 0,    0},
    Case{"AGap",         {0, 10, 500, 510, 1000, 1010},             1010,        490, 1,    5000.0 / 1010},
    Case{"AWrap",        {0xFFFFFFF0, 0xFFFFFFFF, 4},                 20,         15, 0,  100},
    Case{"Backwards",    {100, 95, 105},                0x100000005ULL, 0xFFFFFFFB, 0,
         2000.0 / static_cast<double>(0x100000005ULL)},
    Case{"TwiceAround",  {0, 0x80000001, 1, 0x80000002},       0x180000002ULL, 0x80000001, 0,
         3000.0 / static_cast<double>(0x180000002ULL)}),
    [](const auto& row) { return row.param.name; });
// clang-format on

/// Dots 1 1 2 2 2 1: three frames show what the one before showed.
TEST(EqualNeighbours, AreCountedInText) {
    std::string text;
    for (const char digit : std::string("112221")) {
        text += dumps::plainText(static_cast<std::uint32_t>(text.size()), digit);
    }
    EXPECT_EQ(Opened(dumps::bytesOf(text))->summary().equalNeighbours, 3U);
}

TEST(EqualNeighbours, AreCountedInRaw) {
    Bytes bytes = dumps::rawHeader();
    for (const std::uint8_t byte : Bytes{1, 1, 2, 2, 2, 1}) {
        bytes = bytes + dumps::plainRaw(static_cast<std::uint32_t>(bytes.size()), 3, byte);
    }
    EXPECT_EQ(Opened(bytes)->summary().equalNeighbours, 3U);
}

TEST(EqualNeighbours, DifferByASingleDot) {
    std::string text = dumps::plainText(1) + dumps::plainText(2);
    text[2 * 4174 - 5] = '1';  // The last dot of all.
    EXPECT_EQ(Opened(dumps::bytesOf(text))->summary().equalNeighbours, 0U);
    Bytes raw = dumps::rawHeader() + dumps::plainRaw(1) + dumps::plainRaw(2);
    raw.back() = 0x80;
    EXPECT_EQ(Opened(raw)->summary().equalNeighbours, 0U);
}

TEST(EqualNeighbours, CountWhateverTheirLinesLookLike) {
    std::string lfOnly = dumps::plainText(2, 'a');
    std::erase(lfOnly, '\r');
    std::string upper = dumps::plainText(3, 'A');
    const Opened dump(dumps::bytesOf(dumps::plainText(1, 'a') + lfOnly + upper +
                                     dumps::plainText(4, 'a') + dumps::plainText(5, 'b')));
    EXPECT_EQ(dump->summary().equalNeighbours, 3U);
}

TEST(EqualNeighbours, AreNoneWhereThePlanesDiffer) {
    const Opened dump(dumps::rawHeader(1) + dumps::plainRaw(1, 1) + dumps::rawHeader(2) +
                      dumps::plainRaw(2, 2) + dumps::plainRaw(3, 2));
    EXPECT_EQ(dump->summary().equalNeighbours, 1U);
}

/// 1,000 frames, 16 ms apart, with a pause and a step backwards.
class Times : public testing::Test {
protected:
    static Bytes bytes() {
        Bytes bytes = dumps::rawHeader(1);
        for (std::uint32_t frame = 0; frame < 1000; ++frame) {
            bytes = bytes + dumps::plainRaw(frame * 16 + (frame >= 700 ? 5000 : 0), 1);
        }
        return bytes + dumps::plainRaw(999 * 16 + 4990, 1);
    }
    const Opened dump{bytes()};
};

TEST_F(Times, OfFramesCountFromTheFirst) {
    EXPECT_EQ(dump->elapsedMs(0), 0U);
    EXPECT_EQ(dump->elapsedMs(1), 16U);
    EXPECT_EQ(dump->elapsedMs(699), 699U * 16);
    EXPECT_EQ(dump->elapsedMs(700), 700U * 16 + 5000);
    EXPECT_EQ(dump->elapsedMs(999), 999U * 16 + 5000);
    EXPECT_EQ(dump->elapsedMs(1000), 999U * 16 + 5000 + 0xFFFFFFF6ULL);
    EXPECT_EQ(dump->elapsedMs(1000), dump->summary().durationMs);
    EXPECT_THROW(dump->elapsedMs(1001), std::out_of_range);
}

TEST_F(Times, FindTheFrameThatIsShown) {
    EXPECT_EQ(dump->frameAt(0), 0U);
    EXPECT_EQ(dump->frameAt(15), 0U);
    EXPECT_EQ(dump->frameAt(16), 1U);
    EXPECT_EQ(dump->frameAt(699 * 16 + 3000), 699U);
    EXPECT_EQ(dump->frameAt(700 * 16 + 4999), 699U);
    EXPECT_EQ(dump->frameAt(700 * 16 + 5000), 700U);
    EXPECT_EQ(dump->frameAt(~std::uint64_t{0}), 1000U);
}

}  // namespace
