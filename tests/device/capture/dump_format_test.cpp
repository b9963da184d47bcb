// The blocks of the dump files, against a second decoder that shares nothing with the tool's.

#include "device/dump_format.h"

#include <gmock/gmock.h>

#include <cstdint>
#include <random>
#include <string>

#include "tests/device/capture/naive_decoder.h"
#include "tests/support/byte_text.h"
#include "tests/support/page_examples.h"

namespace {

using naive::Bytes;

constexpr std::uint32_t Stamp = 0xFEDCBA98;

struct Display {
    const char* name;
    bool xl;
};

std::string toolText(int mode, bool xl, std::uint32_t stamp, const Bytes& planes) {
    const auto& rule = xl ? dump::XlDots : inputMode(static_cast<std::uint8_t>(mode)).dots;
    dump::TextEncoder encoder(rule, xl ? dump::XlDisplay : dump::StandardDisplay);
    return std::string(encoder.encode(stamp, planes));
}

Bytes toolRaw(int mode, std::uint32_t stamp, const Bytes& planes) {
    return dump::rawBlock(stamp, inputMode(static_cast<std::uint8_t>(mode)).capturePlanes, planes);
}

/// All planes that any mode looks at.
std::size_t fullLength(bool xl) { return xl ? 12 * 1536U : 12 * 512U; }

Bytes randomPlanes(std::size_t length, std::uint32_t seed) {
    std::mt19937 random(seed);
    Bytes planes(length);
    for (std::uint8_t& byte : planes) {
        byte = static_cast<std::uint8_t>(random());
    }
    return planes;
}

class EveryMode : public testing::TestWithParam<std::tuple<int, Display>> {
protected:
    const int mode = std::get<0>(GetParam());
    const bool xl = std::get<1>(GetParam()).xl;

    void expectSame(const Bytes& planes) const {
        EXPECT_EQ(toolText(mode, xl, Stamp, planes), naive::text(mode, xl, Stamp, planes));
        EXPECT_EQ(support::byteText(toolRaw(mode, Stamp, planes)),
                  support::byteText(naive::raw(mode, Stamp, planes)));
    }
};

TEST_P(EveryMode, RandomPlanesGiveTheSameBlocks) {
    for (std::uint32_t seed = 1; seed <= 8; ++seed) {
        expectSame(randomPlanes(fullLength(xl), seed));
    }
}

TEST_P(EveryMode, SparseAndDensePlanesGiveTheSameBlocks) {
    for (std::uint32_t seed = 1; seed <= 5; ++seed) {
        Bytes sparse = randomPlanes(fullLength(xl), seed);
        Bytes dense = sparse;
        for (std::size_t i = 0; i < sparse.size(); ++i) {
            sparse[i] &= sparse[(i * 7 + 1) % sparse.size()];
            dense[i] |= dense[(i * 5 + 3) % dense.size()];
        }
        expectSame(sparse);
        expectSame(dense);
    }
}

TEST_P(EveryMode, AllZeroAndAllOnesGiveTheSameBlocks) {
    expectSame(Bytes(fullLength(xl), 0x00));
    expectSame(Bytes(fullLength(xl), 0xFF));
}

TEST_P(EveryMode, ASingleBitGivesTheSameBlocksWhereverItIs) {
    std::mt19937 random(4711);
    Bytes planes(fullLength(xl));
    const std::size_t bits = planes.size() * 8;
    for (std::size_t bit : {std::size_t{0}, std::size_t{7}, std::size_t{8}, std::size_t{127},
                            std::size_t{128}, std::size_t{4095}, std::size_t{4096}, bits - 1}) {
        planes[bit / 8] = static_cast<std::uint8_t>(1U << bit % 8);
        expectSame(planes);
        planes[bit / 8] = 0;
    }
    for (int i = 0; i < 25; ++i) {
        const std::size_t bit = random() % bits;
        planes[bit / 8] = static_cast<std::uint8_t>(1U << bit % 8);
        expectSame(planes);
        planes[bit / 8] = 0;
    }
}

/// Every length at the edges of a plane, and a sample of all others.
TEST_P(EveryMode, PlanesThatAreMissingCountAsZero) {
    const Bytes planes = randomPlanes(fullLength(xl), 99);
    const std::size_t planeBytes = xl ? 1536 : 512;
    for (std::size_t length = 0; length <= planes.size(); ++length) {
        const std::size_t place = length % planeBytes;
        if (place <= 1 || place == planeBytes - 1 || length % 163 == 0) {
            // A copy of just this length: reading beyond it would be noticed.
            expectSame(Bytes(planes.begin(), planes.begin() + static_cast<std::ptrdiff_t>(length)));
        }
    }
}

TEST_P(EveryMode, ShortPlanesShowNothingOfTheFrameBefore) {
    const auto& rule = xl ? dump::XlDots : inputMode(static_cast<std::uint8_t>(mode)).dots;
    dump::TextEncoder encoder(rule, xl ? dump::XlDisplay : dump::StandardDisplay);
    encoder.encode(1, Bytes(fullLength(xl), 0xFF));
    EXPECT_EQ(encoder.encode(2, {}), naive::text(mode, xl, 2, {}));
}

INSTANTIATE_TEST_SUITE_P(Displays, EveryMode,
                         testing::Combine(testing::ValuesIn(naive::allModes()),
                                          testing::Values(Display{"standard", false},
                                                          Display{"xl", true})),
                         [](const auto& row) {
                             return std::string(std::get<1>(row.param).name) + "_mode_" +
                                    std::to_string(std::get<0>(row.param));
                         });

TEST(DumpText, EveryLengthOfTheStandardPlanesIsFilledUpWithZeros) {
    const Bytes planes = randomPlanes(4 * 512 + 1, 5);
    for (std::size_t length = 0; length <= planes.size(); ++length) {
        const Bytes part(planes.begin(), planes.begin() + static_cast<std::ptrdiff_t>(length));
        ASSERT_EQ(toolText(2, false, 0, part), naive::text(2, false, 0, part)) << length;
        ASSERT_EQ(toolRaw(9, 0, part), naive::raw(9, 0, part)) << length;
    }
}

TEST(DumpText, TimeStampHasEightDigitsInSmallLetters) {
    EXPECT_EQ(toolText(0, false, 0, {}).substr(0, 13), "0x00000000\r\n0");
    EXPECT_EQ(toolText(0, false, 0x4D2A1, {}).substr(0, 13), "0x0004d2a1\r\n0");
    EXPECT_EQ(toolText(0, false, 0xFFFFFFFF, {}).substr(0, 13), "0xffffffff\r\n0");
    EXPECT_EQ(toolText(0, false, 0xABCDEF01, {}).substr(0, 13), "0xabcdef01\r\n0");
}

TEST(DumpText, BlockHasTheDisplaysSize) {
    EXPECT_EQ(toolText(2, false, 0, {}).size(), 12 + 32 * 130 + 2U);
    EXPECT_EQ(toolText(2, true, 0, {}).size(), 12 + 64 * 194 + 2U);
}

TEST(DumpReply, TimeStampIsLittleEndianAndUnsigned) {
    EXPECT_EQ(dump::timeStamp(Bytes{0xA1, 0xD2, 0x04, 0x00}), 0x0004D2A1U);
    EXPECT_EQ(dump::timeStamp(Bytes{0x00, 0x00, 0x00, 0x80, 0xFF}), 0x80000000U);
    EXPECT_EQ(dump::timeStamp(Bytes{0xFF, 0xFF, 0xFF, 0xFF}), 0xFFFFFFFFU);
}

TEST(DumpReply, LengthFollowsFromThePlanesAndTheDisplay) {
    EXPECT_EQ(dump::replyLength(0, dump::StandardDisplay), 5U);
    EXPECT_EQ(dump::replyLength(2, dump::StandardDisplay), 1029U);
    EXPECT_EQ(dump::replyLength(3, dump::StandardDisplay), 1541U);
    EXPECT_EQ(dump::replyLength(4, dump::StandardDisplay), 2053U);
    EXPECT_EQ(dump::replyLength(6, dump::StandardDisplay), 3077U);
    EXPECT_EQ(dump::replyLength(8, dump::StandardDisplay), 4101U);
    EXPECT_EQ(dump::replyLength(12, dump::StandardDisplay), 6149U);
    EXPECT_EQ(dump::replyLength(2, dump::XlDisplay), 3077U);
}

TEST(DumpRequest, IsSixtyFourBytesWithTheNumberOfPlanes) {
    EXPECT_EQ(support::byteText(dump::request(0)), "02 C3 E8 00*61");
    EXPECT_EQ(support::byteText(dump::request(2)), "02 C3 E8 02 00*60");
    EXPECT_EQ(support::byteText(dump::request(12)), "02 C3 E8 0C 00*60");
}

TEST(RawDump, HeaderNamesTheStandardDisplayAndThePlanes) {
    EXPECT_EQ(support::byteText(dump::rawHeader(3)), "52 41 57 00 01 80 20 03");
    EXPECT_EQ(support::byteText(dump::rawHeader(12)), "52 41 57 00 01 80 20 0C");
}

TEST(RawDump, FrameOfAReplyThatIsTooShortEndsInZeros) {
    const Bytes xlPlanes(2 * 1536 + 1, 0x5A);
    const Bytes frame = toolRaw(8, 0x01020304, xlPlanes);
    ASSERT_EQ(frame.size(), 4 + 8 * 512U);
    EXPECT_EQ(support::byteText(std::span(frame).first(5)), "04 03 02 01 5A");
    EXPECT_EQ(frame[4 + 3072], 0x5A);
    EXPECT_EQ(support::byteText(std::span(frame).subspan(4 + 3073)), "00*1023");
}

/// Byte for byte what the page shows.
class Page : public testing::Test {
protected:
    static Bytes example(const std::string& name) {
        return support::pageExample(LUMADOT_SOURCE_DIR "/docs/file-formats.md", name);
    }
    static Bytes planesOf(const Bytes& reply) { return {reply.begin() + 4, reply.end()}; }
};

TEST_F(Page, TextDumpFollowsFromItsReply) {
    const Bytes reply = example("text-dump-reply");
    ASSERT_EQ(reply.size(), dump::replyLength(2, dump::StandardDisplay));
    const std::string text = toolText(3, false, dump::timeStamp(reply), planesOf(reply));
    EXPECT_EQ(Bytes(text.begin(), text.end()), example("text-dump"));
}

TEST_F(Page, RawDumpFollowsFromItsReply) {
    const Bytes reply = example("raw-dump-reply");
    ASSERT_EQ(reply.size(), dump::replyLength(3, dump::StandardDisplay));
    const auto header = dump::rawHeader(3);
    Bytes file(header.begin(), header.end());
    for (const std::uint8_t byte : toolRaw(1, dump::timeStamp(reply), planesOf(reply))) {
        file.push_back(byte);
    }
    EXPECT_EQ(support::byteText(file), support::byteText(example("raw-dump")));
}

}  // namespace
