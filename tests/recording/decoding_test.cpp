// What is read back from dumps, frame by frame, against a second decoder and files made once and
// for all.

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <string>

#include "tests/recording/dumps.h"
#include "tests/support/page_examples.h"

namespace {

using dumps::Bytes;
using namespace dumps::joining;
using dumps::Opened;

constexpr int Frames = 40;

std::uint32_t stampOf(int frame) { return 0xFFFFFF00U + 16U * static_cast<std::uint32_t>(frame); }

struct Case {
    int mode;
    bool xl;
};

class EveryMode : public testing::TestWithParam<Case> {
protected:
    const int mode = GetParam().mode;
    const bool xl = GetParam().xl;
    const std::size_t planeBytes =
        xl ? 2 * std::size_t{1536} : 512 * static_cast<std::size_t>(naive::planes(mode));

    Bytes planesOf(int frame) const {
        return dumps::randomPlanes(planeBytes, static_cast<unsigned>(frame));
    }

    /// What the second decoder writes for a frame, without stamp and line ends.
    std::string wantedDigits(int frame) const {
        std::string text = naive::text(mode, xl, 0, planesOf(frame)).substr(12);
        std::erase_if(text, [](char each) { return each == '\r' || each == '\n'; });
        return text;
    }

    void expectFrames(recording::Recording& dump) const {
        ASSERT_EQ(dump.frames(), static_cast<std::uint64_t>(Frames));
        for (int number = Frames - 1; number >= 0; --number) {
            const auto frame = dump.frame(static_cast<std::uint64_t>(number));
            EXPECT_EQ(frame.stampMs, stampOf(number));
            ASSERT_EQ(dumps::digitsOf(frame), wantedDigits(number)) << "frame " << number;
        }
        EXPECT_THAT(dumps::damagesOf(dump), testing::IsEmpty());
    }
};

TEST_P(EveryMode, IsReadFromTextAsTheSecondDecoderWroteIt) {
    std::string text;
    for (int frame = 0; frame < Frames; ++frame) {
        text += naive::text(mode, xl, stampOf(frame), planesOf(frame));
    }
    const Opened dump(dumps::bytesOf(text));
    EXPECT_EQ(dump->kind(), recording::Kind::Text);
    EXPECT_EQ(dump->planes(), std::nullopt);
    EXPECT_EQ(dump->display()->columns(), xl ? 192U : 128U);
    EXPECT_EQ(dump->display()->rows, xl ? 64U : 32U);
    expectFrames(*dump.dump);
}

TEST_P(EveryMode, IsReadFromRawAsTheSecondDecoderReadsIt) {
    if (!naive::hasRawFile(mode) || xl) {
        return;  // The XL board's raw dumps are the matter of xl_raw_test.
    }
    Bytes bytes = naive::rawHeader(mode);
    for (int frame = 0; frame < Frames; ++frame) {
        bytes = bytes + naive::raw(mode, stampOf(frame), planesOf(frame));
    }
    const Opened dump(bytes);
    dump->setMode(static_cast<std::uint8_t>(mode));
    EXPECT_EQ(dump->kind(), recording::Kind::Raw);
    EXPECT_EQ(dump->planes(), naive::planes(mode));
    expectFrames(*dump.dump);
    EXPECT_EQ(dump->frame(3).planes, planesOf(3));
}

std::vector<Case> everyCase() {
    std::vector<Case> cases;
    for (const int mode : naive::allModes()) {
        cases.push_back({mode, false});
        cases.push_back({mode, true});
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(OnBothBoards, EveryMode, testing::ValuesIn(everyCase()),
                         [](const auto& row) {
                             return (row.param.xl ? "Xl" : "Standard") +
                                    std::to_string(row.param.mode);
                         });

/// The golden files of the captures, read back.
struct Golden {
    std::filesystem::path path;
    int mode;
    bool xl;
};

std::vector<Golden> goldenFiles() {
    std::vector<Golden> files;
    for (const auto& entry : std::filesystem::directory_iterator(LUMADOT_GOLDEN_FOLDER)) {
        const std::string name = entry.path().stem().string();
        files.push_back(
            {entry.path(), std::stoi(name.substr(name.find('_') + 1)), name.starts_with("xl")});
    }
    std::ranges::sort(files, {}, &Golden::path);
    return files;
}

class GoldenFile : public testing::TestWithParam<Golden> {
protected:
    Bytes example(const std::string& name) const {
        return support::pageExample(GetParam().path, name);
    }
};

TEST_P(GoldenFile, IsReadBackFromItsText) {
    const Bytes bytes = example("text");
    std::string digits(bytes.begin() + 12, bytes.end());
    std::erase_if(digits, [](char each) { return each == '\r' || each == '\n'; });
    const Opened dump(bytes + bytes);
    ASSERT_EQ(dump->frames(), 2U);
    EXPECT_EQ(dump->frame(1).stampMs, 0xA1B2C3D4U);
    EXPECT_EQ(dumps::digitsOf(dump->frame(1)), digits);
    EXPECT_EQ(dump->summary().equalNeighbours, 1U);
}

TEST_P(GoldenFile, IsReadBackFromItsRawBlock) {
    if (!naive::hasRawFile(GetParam().mode)) {
        return;
    }
    const Bytes block = example("raw");
    const Opened dump(example("raw-header") + block + block);
    dump->setMode(static_cast<std::uint8_t>(GetParam().mode));
    ASSERT_EQ(dump->frames(), 2U);
    const auto frame = dump->frame(1);
    EXPECT_EQ(frame.stampMs, 0xA1B2C3D4U);
    EXPECT_EQ(frame.planes, Bytes(block.begin() + 4, block.end()));
    if (!GetParam().xl) {
        const Bytes text = example("text");
        std::string digits(text.begin() + 12, text.end());
        std::erase_if(digits, [](char each) { return each == '\r' || each == '\n'; });
        EXPECT_EQ(dumps::digitsOf(frame), digits);
    }
}

INSTANTIATE_TEST_SUITE_P(Captures, GoldenFile, testing::ValuesIn(goldenFiles()),
                         [](const auto& row) { return row.param.path.stem().string(); });

TEST(GoldenFiles, AreThereForEveryModeAndBothBoards) {
    EXPECT_EQ(goldenFiles().size(), naive::allModes().size() + 3);
}

}  // namespace
