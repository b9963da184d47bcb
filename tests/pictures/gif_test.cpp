// Animated GIFs, decoded by another library and compared pixel by pixel.

#include "pictures/gif.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <stdexcept>
#include <string>

#include "recording/error.h"
#include "tests/device/faults/disk.h"
#include "tests/pictures/decoded.h"
#include "tests/support/temporary_folder.h"

namespace {

using decoded::Bytes;
using display::Dots;
using pictures::Sequence;

class Gif : public testing::Test {
protected:
    const support::TemporaryFolder folder;
    const std::filesystem::path path = folder.path() / "x.gif";

    /// Frame by frame as the display's painter shows them.
    void expectFrames(const Sequence& sequence, const display::Look& look) const {
        const auto image = decoded::image(path);
        EXPECT_EQ(image.width, sequence.columns * look.scale);
        EXPECT_EQ(image.height, sequence.rows * look.scale);
        ASSERT_EQ(image.frames.size(), sequence.count);
        for (std::uint64_t number = 0; number < sequence.count; ++number) {
            ASSERT_TRUE(image.frames[number] == decoded::painted(sequence, number, look))
                << "frame " << number;
        }
    }

    bool isEmpty() const { return std::filesystem::is_empty(folder.path()); }
};

class GifOf : public Gif, public testing::WithParamInterface<decoded::LookCase> {};

TEST_P(GifOf, ShowsEachFrameInItsColours) {
    const auto& row = GetParam();
    const Sequence sequence = decoded::chanceFrames({1, 2, 3}, {0, 50, 100}, row.columns, row.rows);
    const display::Look look = decoded::chanceLook(row.scale, row.dots);
    const auto result = pictures::writeGif(sequence, look, path);
    EXPECT_TRUE(result.finished);
    EXPECT_EQ(result.frames, 3U);
    EXPECT_EQ(result.leftOut, 0U);
    expectFrames(sequence, look);
}

INSTANTIATE_TEST_SUITE_P(Looks, GifOf,
                         testing::Values(decoded::LookCase{"Dots1", 1, Dots::Square, 128, 32},
                                         decoded::LookCase{"Square3", 3, Dots::Square, 128, 32},
                                         decoded::LookCase{"Round4", 4, Dots::Round, 128, 32},
                                         decoded::LookCase{"Round8", 8, Dots::Round, 128, 32},
                                         decoded::LookCase{"Round37", 37, Dots::Round, 16, 4},
                                         decoded::LookCase{"Xl", 2, Dots::Round, 192, 64}),
                         [](const auto& test) { return test.param.name; });

/// A dark display on which a part changes, frame by frame.
Sequence movingPart() {
    Sequence sequence;
    sequence.count = 6;
    sequence.columns = 128;
    sequence.rows = 32;
    sequence.spanMs = 500;
    sequence.read = [](std::uint64_t number, std::vector<std::uint8_t>& entries) {
        entries.assign(std::size_t{128} * 32, 0);
        if (number == 1 || number == 2) {
            entries[0] = 15;  // The first corner; the third frame equals the second.
        } else if (number == 3) {
            entries[4095] = 7;  // The last corner.
        } else if (number == 4) {
            entries[128 * 10 + 50] = 3;
            entries[128 * 20 + 40] = 4;
        }
        return static_cast<std::uint32_t>(100 * number);
    };
    return sequence;
}

TEST_F(Gif, StoresOnlyWhatChangesAndShowsTheWhole) {
    const display::Look look = decoded::chanceLook(8, Dots::Round);
    EXPECT_TRUE(pictures::writeGif(movingPart(), look, path).finished);
    expectFrames(movingPart(), look);
    EXPECT_LT(std::filesystem::file_size(path), 20000U);
}

TEST_F(Gif, IsRepeatedForEverInTheRecordingsTime) {
    const auto sequence = decoded::chanceFrames({1, 2, 3, 4}, {1000, 1033, 1066, 2066}, 16, 8);
    pictures::writeGif(sequence, decoded::chanceLook(2, Dots::Square), path);
    const auto image = decoded::image(path);
    EXPECT_EQ(image.repeats, 0);
    EXPECT_THAT(image.timesMs, testing::ElementsAre(30, 40, 1000, 1000));
}

TEST_F(Gif, OfASingleFrameStaysForASecond) {
    const auto sequence = decoded::chanceFrames({1}, {77}, 16, 8);
    pictures::writeGif(sequence, decoded::chanceLook(1, Dots::Square), path);
    EXPECT_THAT(decoded::image(path).timesMs, testing::ElementsAre(1000));
}

TEST_F(Gif, LeavesFramesOutToKeepTheTime) {
    std::vector<unsigned> seeds;
    std::vector<std::uint32_t> stamps;
    for (unsigned frame = 0; frame < 50; ++frame) {
        seeds.push_back(frame);
        stamps.push_back(16 * frame);
    }
    const display::Look look = decoded::chanceLook(1, Dots::Square);
    const auto sequence = decoded::chanceFrames(seeds, stamps, 16, 8);
    const auto result = pictures::writeGif(sequence, look, path);
    EXPECT_EQ(result.frames, 40U);
    EXPECT_EQ(result.leftOut, 10U);
    const auto image = decoded::image(path);
    ASSERT_EQ(image.frames.size(), 40U);
    EXPECT_THAT(image.timesMs, testing::Each(20));
    EXPECT_TRUE(image.frames[4] == decoded::painted(sequence, 5, look));
}

/// A display of one dot, all of one entry.
TEST_F(Gif, CanBeOfTwoColoursAndOneDot) {
    Sequence sequence = decoded::chanceFrames({1, 2}, {0, 100}, 1, 1);
    display::Look look;
    look.palette[45] = 255;
    EXPECT_TRUE(pictures::writeGif(sequence, look, path).finished);
    expectFrames(sequence, look);
}

TEST_F(Gif, TakesThePlaceOfAnOldFileOnlyWhenItIsWhole) {
    support::writeFile(path, Bytes{1, 2, 3});
    const auto sequence = decoded::chanceFrames({1, 2, 3}, {0, 50, 100});
    const display::Look look = decoded::chanceLook(2, Dots::Round);
    std::vector<std::uint64_t> told;
    const auto result =
        pictures::writeGif(sequence, look, path, [&](std::uint64_t done, std::uint64_t total) {
            EXPECT_EQ(total, 3U);
            told.push_back(done);
            return done < 2;
        });
    EXPECT_FALSE(result.finished);
    EXPECT_THAT(told, testing::ElementsAre(1, 2));
    EXPECT_EQ(support::readFile(path), (Bytes{1, 2, 3}));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 1);
    EXPECT_TRUE(pictures::writeGif(sequence, look, path).finished);
    expectFrames(sequence, look);
}

TEST_F(Gif, IsNotWrittenWhenAFrameCannotBeRead) {
    auto sequence = decoded::chanceFrames({1, 2, 3}, {0, 50, 100});
    sequence.count = 4;
    EXPECT_THROW(pictures::writeGif(sequence, decoded::chanceLook(2, Dots::Round), path),
                 std::out_of_range);
    EXPECT_TRUE(isEmpty());
}

TEST_F(Gif, HasNoMorePixelsThanItsFormatAllows) {
    Sequence sequence = decoded::chanceFrames({1}, {0}, 257, 1);
    try {
        pictures::writeGif(sequence, decoded::chanceLook(256, Dots::Square), path);
        FAIL() << "65792 pixels are too many";
    } catch (const recording::Error& error) {
        EXPECT_EQ(error.failure(), recording::Failure::CannotConvert);
        EXPECT_THAT(error.what(), testing::HasSubstr("65535"));
    }
    EXPECT_TRUE(isEmpty());
    sequence = decoded::chanceFrames({1}, {0}, 255, 1);
    EXPECT_TRUE(
        pictures::writeGif(sequence, decoded::chanceLook(256, Dots::Square), path).finished);
}

TEST_F(Gif, WantsFrames) {
    EXPECT_THROW(pictures::writeGif(Sequence{}, display::Look{}, path), std::invalid_argument);
    EXPECT_TRUE(isEmpty());
}

TEST_F(Gif, ThatDoesNotFitOnTheDiskSaysSo) {
    faults::Disk disk;
    if (!disk.why().empty()) {
        GTEST_SKIP() << disk.why();
    }
    support::writeFile(disk.path() / "x.gif", Bytes{1, 2, 3});
    const auto sequence = decoded::chanceFrames({1, 2, 3, 4, 5, 6, 7, 8}, {0, 1, 2, 3, 4, 5, 6, 7});
    try {
        pictures::writeGif(sequence, decoded::chanceLook(8, Dots::Round), disk.path() / "x.gif");
        FAIL() << "the disk is too small for it";
    } catch (const recording::Error& error) {
        EXPECT_EQ(error.failure(), recording::Failure::CannotWrite);
        EXPECT_THAT(error.what(), testing::HasSubstr("No space left on device"));
    }
    EXPECT_EQ(support::readFile(disk.path() / "x.gif"), (Bytes{1, 2, 3}));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(disk.path()), {}), 1);
}

}  // namespace
