// Files that are not as a capture writes them: what can be read is read, and the damaged places are
// listed. Each case starts from one good dump and breaks one thing.

#include <gmock/gmock.h>

#include <functional>
#include <string>
#include <vector>

#include "tests/recording/dumps.h"

namespace {

using dumps::Bytes;
using namespace dumps::joining;
using dumps::Opened;
using testing::ElementsAreArray;
using testing::IsEmpty;

struct Case {
    std::string name;
    Bytes bytes;
    std::vector<std::uint32_t> stamps;  ///< of the frames that can be read
    std::vector<std::string> damages;
};

class Damaged : public testing::TestWithParam<Case> {};

TEST_P(Damaged, DumpIsReadAsFarAsItCanBe) {
    const Opened dump(GetParam().bytes);
    EXPECT_EQ(dumps::stampsOf(*dump.dump), GetParam().stamps);
    EXPECT_THAT(dumps::damagesOf(*dump.dump), ElementsAreArray(GetParam().damages));
    EXPECT_EQ(dump->damageCount(), GetParam().damages.size());
}

// A text frame has 4174 bytes, a row 130; the first row is at 12.

/// Frames with stamps 1, 2, 3, the middle one changed.
Bytes textWith(const std::function<void(std::string&)>& change) {
    std::string middle = dumps::plainText(2, '2');
    change(middle);
    return dumps::bytesOf(dumps::plainText(1, '1') + middle + dumps::plainText(3, '3'));
}

std::string lfOnly(std::string text) {
    std::erase(text, '\r');
    return text;
}

std::string upperCase(std::string text) {
    text.replace(12, 128, 128, 'B');
    return text;
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Text, Damaged, testing::Values(
    Case{"ARowTooShort", textWith([](auto& frame) { frame.erase(12 + 130 * 5, 1); }), {1, 3},
         {"4836: a row of 127 dots instead of 128"}},
    Case{"ARowTooLong", textWith([](auto& frame) { frame.insert(12 + 130 * 31, "22"); }), {1, 3},
         {"8216: a row of 130 dots instead of 128"}},
    Case{"NoDigit", textWith([](auto& frame) { frame[12 + 130 * 2 + 7] = 'g'; }), {1, 3},
         {"4453: a dot that is no hexadecimal digit"}},
    Case{"AZeroByte", textWith([](auto& frame) { frame[12] = '\0'; }), {1, 3},
         {"4186: a dot that is no hexadecimal digit"}},
    Case{"ARowMissing", textWith([](auto& frame) { frame.erase(12, 130); }), {1, 3},
         {"4174: a frame of 31 rows instead of 32"}},
    Case{"AllRowsMissing", textWith([](auto& frame) { frame.erase(12, 130 * 32); }), {1, 3},
         {"4174: a frame of 0 rows instead of 32"}},
    Case{"EndedEarly", textWith([](auto& frame) { frame.resize(12 + 130 * 3); }), {1, 3},
         {"4174: a frame of 3 rows instead of 32"}},
    Case{"ARowTooMany", textWith([](auto& frame) { frame.insert(12, frame.substr(12, 130)); }),
         {1, 3}, {"8346: a frame of more than 32 rows"}},
    Case{"NoEmptyLine", textWith([](auto& frame) { frame.resize(4172); }), {1, 2, 3},
         {"8346: no empty line behind a frame"}},
    Case{"AnEmptyLineTooMany", textWith([](auto& frame) { frame += "\r\n"; }), {1, 2, 3},
         {"8348: no time stamp where a frame should start"}},
    Case{"SomethingBehindTheRows", textWith([](auto& frame) { frame.insert(4172, "what?"); }),
         {1, 2, 3}, {"8346: no empty line behind a frame"}},
    Case{"ABadStamp", textWith([](auto& frame) { frame[4] = ' '; }), {1, 3},
         {"4174: no time stamp where a frame should start"}},
    Case{"NoStamp", textWith([](auto& frame) { frame.erase(0, 12); }), {1, 3},
         {"4174: no time stamp where a frame should start"}},
    Case{"AStampNotAtTheStartOfALine", textWith([](auto& frame) { frame.insert(0, " "); }), {1, 3},
         {"4174: no time stamp where a frame should start"}},
    Case{"LetteringInBetween", textWith([](auto& frame) { frame.insert(0, "hello\r\nx\n"); }),
         {1, 2, 3}, {"4174: no time stamp where a frame should start"}},
    Case{"MuchInBetween", textWith([](auto& frame) { frame.insert(0, 300000, 'x').insert(300000, "\n"); }),
         {1, 2, 3}, {"4174: no time stamp where a frame should start"}},
    Case{"ManyLinesInBetween",
         textWith([](auto& frame) { for (int i = 0; i < 50000; ++i) { frame.insert(0, "0x1\r\n"); } }),
         {1, 2, 3}, {"4174: no time stamp where a frame should start"}},
    Case{"ZerosInBetween", textWith([](auto& frame) { frame.insert(0, 40000, '\0').insert(40000, "\n"); }),
         {1, 2, 3}, {"4174: no time stamp where a frame should start"}},
    Case{"AFrameOfTheOtherBoard", textWith([](auto& frame) { frame = dumps::plainText(2, '2', true); }),
         {1, 3}, {"4174: a frame of another size, with 192 dots a row among frames with 128"}},
    Case{"LinesWithLfOnly", dumps::bytesOf(lfOnly(dumps::plainText(1) + dumps::plainText(2, '3'))),
         {1, 2}, {}},
    Case{"SomeLinesWithLfOnly", textWith([](auto& frame) { frame = lfOnly(frame); }), {1, 2, 3}, {}},
    Case{"UpperCase", textWith([](auto& frame) { frame = upperCase(frame); }), {1, 2, 3}, {}},
    Case{"TwoInOneFile", textWith([](auto& frame) { frame[500] = '?'; frame += frame; }), {1, 3},
         {"4674: a dot that is no hexadecimal digit", "8848: a dot that is no hexadecimal digit"}},
    Case{"TheFirstFrame", dumps::bytesOf(dumps::plainText(1).erase(20, 1) + dumps::plainText(2)), {2},
         {"12: a row of 127 dots"}},
    Case{"TheFirstFrameWithoutItsHead", dumps::bytesOf(dumps::plainText(1).substr(700) + dumps::plainText(2)),
         {2}, {"0: no time stamp where a frame should start"}}),
    [](const auto& row) { return row.param.name; });

// A raw frame of 3 planes has 1540 bytes; the first one is at 8.
constexpr std::uint32_t Noon = 0x4D5A2F11;
const Bytes One = dumps::plainRaw(Noon + 1, 3, 1), Two = dumps::plainRaw(Noon + 2, 3, 2),
            Three = dumps::plainRaw(Noon + 3, 3, 3), Four = dumps::plainRaw(Noon + 4, 3, 4);

std::vector<std::uint32_t> at(std::vector<std::uint32_t> stamps) {
    for (std::uint32_t& stamp : stamps) {
        stamp += Noon;
    }
    return stamps;
}

Bytes cut(const Bytes& frame, std::ptrdiff_t size) { return {frame.begin(), frame.begin() + size}; }

INSTANTIATE_TEST_SUITE_P(Raw, Damaged, testing::Values(
    Case{"ASecondCapture", dumps::rawHeader() + One + dumps::rawHeader() + Two + Three, at({1, 2, 3}),
         {"1548: a header in the middle, where a second capture began"}},
    Case{"ASecondCaptureAtTheEnd", dumps::rawHeader() + One + dumps::rawHeader(), at({1}),
         {"1548: a header in the middle, where a second capture began"}},
    Case{"TwoCapturesWithoutFrames", dumps::rawHeader() + dumps::rawHeader() + One, at({1}),
         {"8: a header in the middle, where a second capture began"}},
    Case{"ASecondCaptureInAnotherMode",
         dumps::rawHeader() + One + dumps::rawHeader(8) + dumps::plainRaw(Noon + 2, 8) + dumps::plainRaw(Noon + 3, 8),
         at({1, 2, 3}), {"1548: a header in the middle, where a second capture began"}},
    Case{"AFrameCutByASecondCapture", dumps::rawHeader() + One + cut(Two, 700) + dumps::rawHeader() + Three,
         at({1, 3}), {"1548: a frame of 700 bytes instead of 1540",
                  "2248: a header in the middle, where a second capture began"}},
    Case{"TheLastFrameCutByACaptureWithoutFrames", dumps::rawHeader() + One + cut(Two, 700) + dumps::rawHeader(),
         at({1}), {"1548: a frame of 700 bytes instead of 1540",
                   "2248: a header in the middle, where a second capture began"}},
    Case{"AFrameCutToTheLeast", dumps::rawHeader() + One + cut(Two, 1) + Three + Four, at({1, 3, 4}),
         {"1548: a frame of 1 byte instead of 1540"}},
    Case{"AFrameCutInTheMiddle", dumps::rawHeader() + One + cut(Two, 700) + Three + Four, at({1, 3, 4}),
         {"1548: a frame of 700 bytes instead of 1540"}},
    Case{"AFrameCutByItsLastByte", dumps::rawHeader() + One + cut(Two, 1539) + Three + Four, at({1, 3, 4}),
         {"1548: a frame of 1539 bytes instead of 1540"}},
    Case{"TheLastButOneCut", dumps::rawHeader() + One + cut(Two, 700) + Three, at({1, 3}),
         {"1548: a frame of 700 bytes instead of 1540"}},
Case{"DarkFramesThatRunBackwards",
         dumps::rawHeader() + dumps::plainRaw(100) + dumps::plainRaw(95) + cut(dumps::plainRaw(105), 1539),
         {100, 95}, {"3088: the file ends inside a frame"}},
    Case{"TwoFramesCut", dumps::rawHeader() + cut(One, 900) + Two + cut(Three, 5) + Four + Four, at({2, 4, 4}),
         {"8: a frame of 900 bytes instead of 1540", "2448: a frame of 5 bytes instead of 1540"}}),
    [](const auto& row) { return row.param.name; });
// clang-format on

/// The file is read in pieces of 128 KiB; the stamp line of 12 bytes lies in two of them.
TEST(ForeignBytes, HideNoFrameBehindThemWhereverItStarts) {
    constexpr std::size_t PieceEnd = 131072;
    for (std::size_t start = PieceEnd - 13; start <= PieceEnd + 1; ++start) {
        const Opened dump(dumps::bytesOf(dumps::plainText(1) + std::string(start - 4174 - 2, '?') +
                                         "\r\n" + dumps::plainText(2)));
        EXPECT_EQ(dumps::stampsOf(*dump.dump), (std::vector<std::uint32_t>{1, 2})) << start;
        EXPECT_EQ(dump->damageCount(), 1U) << start;
    }
}

/// Every length that a file can be cut to.
class CutAnywhere : public testing::Test {
protected:
    static constexpr std::size_t Frames = 3;

    /// Frames that end before the cut, and whether something is left of the next.
    static void expect(const Bytes& whole, std::size_t size, std::size_t frames, bool broken) {
        const Opened dump(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)));
        ASSERT_EQ(dump->frames(), frames) << size << " bytes";
        ASSERT_EQ(dump->damageCount(), broken ? 1U : 0U) << size << " bytes";
    }
};

TEST_F(CutAnywhere, TextHasTheFramesWhoseDotsAreAllThere) {
    Bytes whole;
    for (std::uint32_t frame = 0; frame < Frames; ++frame) {
        whole = whole + dumps::bytesOf(dumps::plainText(frame, 'a'));
    }
    for (std::size_t size = 0; size <= whole.size(); ++size) {
        const std::size_t rest = size % 4174;
        const std::size_t tail = rest >= 4170 ? 1 : 0;  // Its line ends may be missing.
        expect(whole, size, size / 4174 + tail, rest != 0);
    }
}

TEST_F(CutAnywhere, TextSaysWhereTheFrameStartsThatIsNotWhole) {
    const std::string text = dumps::plainText(1) + dumps::plainText(2);
    for (const std::size_t size : {4175U, 4186U, 5000U, 8343U, 8347U}) {
        const Opened dump(dumps::bytesOf(text.substr(0, size)));
        EXPECT_THAT(dumps::damagesOf(*dump.dump),
                    testing::ElementsAre("4174: the file ends inside a frame"));
    }
}

TEST_F(CutAnywhere, RawHasTheFramesThatAreWhole) {
    const Bytes whole = dumps::rawHeader() + One + Two + Three;
    for (std::size_t size = 8; size <= whole.size(); ++size) {
        expect(whole, size, (size - 8) / 1540, (size - 8) % 1540 != 0);
    }
    const Opened dump(Bytes(whole.begin(), whole.end() - 1));
    EXPECT_THAT(dumps::damagesOf(*dump.dump),
                testing::ElementsAre("3088: the file ends inside a frame"));
}

/// Stamps that are no damage.
TEST(TimeStamps, ThatLeapAreNoDamage) {
    for (const std::uint32_t second : {0U, 5U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
        const std::vector<std::uint32_t> stamps = {1000000, second, second + 16, 17, second};
        std::string text;
        Bytes raw = dumps::rawHeader();
        for (const std::uint32_t stamp : stamps) {
            text += dumps::plainText(stamp);
            raw = raw + dumps::plainRaw(stamp, 3, static_cast<std::uint8_t>(stamp));
        }
        for (const Bytes& bytes : {dumps::bytesOf(text), raw}) {
            const Opened dump(bytes);
            EXPECT_EQ(dumps::stampsOf(*dump.dump), stamps);
            EXPECT_THAT(dumps::damagesOf(*dump.dump), IsEmpty());
        }
    }
}

TEST(DamagedPlaces, AreCountedButNotAllKept) {
    constexpr std::size_t Many = recording::Indexer::MaxDamages + 100;
    Bytes bytes;
    bytes.reserve((Many + 2) * 8 + 1540);
    for (std::size_t i = 0; i <= Many; ++i) {
        const Bytes header = dumps::rawHeader();
        bytes.insert(bytes.end(), header.begin(), header.end());
    }
    const Opened dump(bytes + One + Bytes{1, 2, 3});
    EXPECT_EQ(dump->frames(), 1U);
    EXPECT_EQ(dump->damageCount(), Many + 1);
    EXPECT_EQ(dump->damages().size(), recording::Indexer::MaxDamages);
}

}  // namespace
