// Dumps cut and converted, byte by byte as captures write them.

#include "recording/cut.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "recording/error.h"
#include "tests/recording/dumps.h"
#include "tests/support/temporary_folder.h"

namespace {

using dumps::Bytes;
using namespace dumps::joining;
using dumps::Opened;
using recording::Failure;
using recording::Kind;
using recording::Range;

constexpr int Frames = 5;

std::uint32_t stampOf(int frame) { return 0x00FFFFF0U + 16U * static_cast<std::uint32_t>(frame); }

class Cut : public testing::Test {
protected:
    const support::TemporaryFolder folder;
    const std::filesystem::path out = folder.path() / "out";

    Bytes write(const Opened& dump, const Range& range, Kind kind,
                std::optional<std::uint8_t> mode = std::nullopt) const {
        EXPECT_TRUE(recording::writeDump(*dump.dump, range, kind, out, mode));
        EXPECT_EQ(files(), 1);  // Nothing temporary stays.
        return support::readFile(out);
    }

    int files() const {
        return static_cast<int>(
            std::distance(std::filesystem::directory_iterator(folder.path()), {}));
    }

    template <class Call>
    void expectFailure(Call call, Failure failure, const std::string& text) const {
        try {
            call();
            FAIL() << "did not fail";
        } catch (const recording::Error& error) {
            EXPECT_EQ(error.failure(), failure);
            EXPECT_THAT(error.what(), testing::HasSubstr(text));
        }
        EXPECT_EQ(files(), 0);
    }
};

struct Case {
    int mode;
    bool xl;
};

class CutOf : public Cut, public testing::WithParamInterface<Case> {
protected:
    const int mode = GetParam().mode;
    const bool xl = GetParam().xl;

    Bytes planes(int frame) const {
        const std::size_t size =
            xl ? 2 * std::size_t{1536} : 512 * static_cast<std::size_t>(naive::planes(mode));
        return dumps::randomPlanes(size, static_cast<unsigned>(frame));
    }
    /// As a capture writes them.
    Bytes text(int first, int last) const {
        std::string text;
        for (int frame = first; frame <= last; ++frame) {
            text += naive::text(mode, xl, stampOf(frame), planes(frame));
        }
        return dumps::bytesOf(text);
    }
    Bytes raw(int first, int last) const {
        Bytes bytes = naive::rawHeader(mode);
        for (int frame = first; frame <= last; ++frame) {
            bytes = bytes + naive::raw(mode, stampOf(frame), planes(frame));
        }
        return bytes;
    }
};

TEST_P(CutOf, TextIsWhatACaptureOfTheseFramesWouldHaveWritten) {
    const Opened dump(text(0, Frames - 1));
    EXPECT_EQ(write(dump, {1, 3}, Kind::Text), text(1, 3));
    EXPECT_EQ(write(dump, {4, 4}, Kind::Text), text(4, 4));
    EXPECT_EQ(write(dump, *recording::allFrames(*dump.dump), Kind::Text), text(0, Frames - 1));
}

TEST_P(CutOf, RawIsWhatACaptureOfTheseFramesWouldHaveWritten) {
    if (!naive::hasRawFile(mode)) {
        return;
    }
    const Opened dump(raw(0, Frames - 1));
    EXPECT_EQ(write(dump, {1, 3}, Kind::Raw), raw(1, 3));
    EXPECT_EQ(write(dump, {0, 4}, Kind::Raw), raw(0, 4));
}

TEST_P(CutOf, RawBecomesTheTextOfTheSameCapture) {
    if (!naive::hasRawFile(mode) || xl) {
        return;
    }
    const Opened dump(raw(0, Frames - 1));
    dump->setMode(static_cast<std::uint8_t>(mode));
    EXPECT_EQ(write(dump, {1, 4}, Kind::Text), text(1, 4));
}

TEST_P(CutOf, TextBecomesARawDumpThatSaysTheSame) {
    if (!naive::hasRawFile(mode)) {
        return;
    }
    const auto number = static_cast<std::uint8_t>(mode);
    const Bytes made = write(Opened(text(0, Frames - 1)), {0, Frames - 1}, Kind::Raw, number);
    if (xl) {
        // All bits are known from the digits.
        EXPECT_EQ(made, raw(0, Frames - 1));
        return;
    }
    const Opened back(made);
    back->setMode(number);
    EXPECT_EQ(write(back, {0, Frames - 1}, Kind::Text), text(0, Frames - 1));
}

std::vector<Case> everyCase() {
    std::vector<Case> cases;
    for (const int mode : naive::allModes()) {
        cases.push_back({mode, false});
        cases.push_back({mode, true});
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(EveryMode, CutOf, testing::ValuesIn(everyCase()), [](const auto& row) {
    return (row.param.xl ? "Xl" : "Standard") + std::to_string(row.param.mode);
});

TEST_F(Cut, TextBecomesPlanesOfWhichTheFirstAreSet) {
    // Gottlieb 1 has the digit 7 for 3, 4 and 5 planes: the first three are taken.
    std::string text = dumps::plainText(0x11223344);
    text[12 + 9] = '7';  // Row 0, column 9: bit 1 of byte 1.
    Bytes wanted = dumps::rawHeader(12) + dumps::plainRaw(0x11223344, 12);
    for (const std::size_t plane : {0U, 1U, 2U}) {
        wanted[8 + 4 + plane * 512 + 1] = 0x02;
    }
    EXPECT_EQ(write(Opened(dumps::bytesOf(text)), {0, 0}, Kind::Raw, 6), wanted);
}

TEST_F(Cut, LeavesDamagedPlacesAndOtherLineEndsBehind) {
    std::string lfOnly = dumps::plainText(2, 'B');
    std::erase(lfOnly, '\r');
    const Opened dump(dumps::bytesOf(dumps::plainText(1) + "what?\r\n" + lfOnly));
    EXPECT_EQ(write(dump, {0, 1}, Kind::Text),
              dumps::bytesOf(dumps::plainText(1) + dumps::plainText(2, 'b')));
}

TEST_F(Cut, KeepsAHeaderWhereThePlanesChange) {
    const Bytes one = dumps::plainRaw(1), two = dumps::plainRaw(2), other = dumps::plainRaw(3, 8);
    const Opened dump(dumps::rawHeader() + one + dumps::rawHeader() + two + dumps::rawHeader(8) +
                      other);
    EXPECT_EQ(write(dump, {0, 2}, Kind::Raw),
              dumps::rawHeader() + one + two + dumps::rawHeader(8) + other);
    EXPECT_EQ(write(dump, {2, 2}, Kind::Raw), dumps::rawHeader(8) + other);
}

TEST_F(Cut, TakesThePlaceOfItsOwnSource) {
    const auto path = folder.path() / "out";
    support::writeFile(path, dumps::bytesOf(dumps::plainText(1) + dumps::plainText(2, '2')));
    recording::Recording dump(path);
    dump.extend();
    EXPECT_TRUE(recording::writeDump(dump, {1, 1}, Kind::Text, path));
    EXPECT_EQ(support::readFile(path), dumps::bytesOf(dumps::plainText(2, '2')));
}

TEST_F(Cut, CountsItsFramesAndEndsWhenItIsAskedTo) {
    const Opened dump(dumps::rawHeader() + dumps::plainRaw(1) + dumps::plainRaw(2) +
                      dumps::plainRaw(3));
    support::writeFile(out, dumps::bytesOf("before"));
    std::vector<std::uint64_t> told;
    EXPECT_FALSE(recording::writeDump(*dump.dump, {0, 2}, Kind::Raw, out, std::nullopt,
                                      [&](std::uint64_t done, std::uint64_t total) {
                                          EXPECT_EQ(total, 3U);
                                          told.push_back(done);
                                          return done < 2;
                                      }));
    EXPECT_THAT(told, testing::ElementsAre(1, 2));
    EXPECT_EQ(support::readFile(out), dumps::bytesOf("before"));
    EXPECT_EQ(files(), 1);
}

TEST_F(Cut, WantsFramesThatAreThere) {
    const Opened dump(dumps::rawHeader() + dumps::plainRaw(1));
    for (const Range& range : {Range{0, 1}, Range{1, 0}, Range{5, 7}}) {
        EXPECT_THROW(recording::writeDump(*dump.dump, range, Kind::Raw, out), std::out_of_range);
    }
    EXPECT_EQ(recording::allFrames(*Opened(dumps::rawHeader()).dump), std::nullopt);
    EXPECT_EQ(files(), 0);
}

TEST_F(Cut, OfRawAsTextWantsTheModeIfThePlanesDoNotTell) {
    const Opened dump(dumps::rawHeader(4) + dumps::plainRaw(1, 4));
    expectFailure(
        [&] {
            recording::writeDump(*dump.dump, {0, 0}, Kind::Text, out);
        },
        Failure::ModeNeeded, "9 (");
}

TEST_F(Cut, OfTextAsRawWantsAModeThatWritesRawDumps) {
    const Opened dump(dumps::bytesOf(dumps::plainText(1)));
    expectFailure(
        [&] {
            recording::writeDump(*dump.dump, {0, 0}, Kind::Raw, out);
        },
        Failure::ModeNeeded, "13 (");
    for (const std::uint8_t mode : Bytes{0, 2, 11, 77, 239}) {
        expectFailure(
            [&] {
                recording::writeDump(*dump.dump, {0, 0}, Kind::Raw, out, mode);
            },
            Failure::ModeUnfit, "13 (");
    }
}

TEST_F(Cut, OfTextAsRawFailsAtAShadeThatTheModeDoesNotHave) {
    const Opened standard(dumps::bytesOf(dumps::plainText(1) + dumps::plainText(2, '4')));
    expectFailure(
        [&] {
            recording::writeDump(*standard.dump, {0, 1}, Kind::Raw, out, 1);
        },
        Failure::CannotConvert, "frame 1 has the shade 4");
    const Opened xl(dumps::bytesOf(dumps::plainText(1, '4', true)));
    expectFailure(
        [&] {
            recording::writeDump(*xl.dump, {0, 0}, Kind::Raw, out, 10);
        },
        Failure::CannotConvert, "frame 0 has the shade 4");
}

}  // namespace
