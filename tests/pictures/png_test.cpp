// PNGs, decoded by another library and compared pixel by pixel.

#include "pictures/png.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <set>
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

class Png : public testing::Test {
protected:
    const support::TemporaryFolder folder;
    const std::filesystem::path path = folder.path() / "x.png";
    const Sequence sequence = decoded::chanceFrames({1, 2, 3, 4, 5, 6, 7}, {}, 16, 8);

    std::set<std::string> files() const {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
            names.insert(entry.path().filename().string());
        }
        return names;
    }
};

class PngOf : public Png, public testing::WithParamInterface<decoded::LookCase> {};

TEST_P(PngOf, ShowsTheFrameInItsColours) {
    const auto& row = GetParam();
    const Sequence frames = decoded::chanceFrames({1, 2}, {}, row.columns, row.rows);
    const display::Look look = decoded::chanceLook(row.scale, row.dots);
    EXPECT_TRUE(pictures::writePng(frames, 1, look, path));
    const auto image = decoded::image(path);
    EXPECT_EQ(image.width, row.columns * row.scale);
    EXPECT_EQ(image.height, row.rows * row.scale);
    ASSERT_EQ(image.frames.size(), 1U);
    EXPECT_TRUE(image.frames[0] == decoded::painted(frames, 1, look));
    EXPECT_EQ(files(), std::set<std::string>{"x.png"});
}

INSTANTIATE_TEST_SUITE_P(Looks, PngOf,
                         testing::Values(decoded::LookCase{"Dots1", 1, Dots::Square, 128, 32},
                                         decoded::LookCase{"Square3", 3, Dots::Square, 128, 32},
                                         decoded::LookCase{"Round4", 4, Dots::Round, 128, 32},
                                         decoded::LookCase{"Round8", 8, Dots::Round, 128, 32},
                                         decoded::LookCase{"Round256", 256, Dots::Round, 2, 2},
                                         decoded::LookCase{"Xl", 3, Dots::Round, 192, 64}),
                         [](const auto& test) { return test.param.name; });

TEST_F(Png, OfSeveralFramesAreNumbered) {
    const display::Look look = decoded::chanceLook(4, Dots::Round);
    EXPECT_TRUE(pictures::writePngs(sequence, look, path));
    EXPECT_EQ(files(),
              (std::set<std::string>{"x-000000.png", "x-000001.png", "x-000002.png", "x-000003.png",
                                     "x-000004.png", "x-000005.png", "x-000006.png"}));
    for (std::uint64_t number = 0; number < 7; ++number) {
        const auto image = decoded::image(pictures::numbered(path, number));
        EXPECT_TRUE(image.frames.at(0) == decoded::painted(sequence, number, look)) << number;
    }
}

TEST_F(Png, NamesHaveSixDigitsOrMore) {
    EXPECT_EQ(pictures::numbered("/a/b.c/x.png", 0), "/a/b.c/x-000000.png");
    EXPECT_EQ(pictures::numbered("x.y.PNG", 999999), "x.y-999999.PNG");
    EXPECT_EQ(pictures::numbered("x", 1234567), "x-1234567");
}

TEST_F(Png, OfSeveralFramesAreAllThereOrNone) {
    support::writeFile(folder.path() / "x-000001.png", Bytes{1, 2, 3});
    EXPECT_FALSE(pictures::writePngs(sequence, decoded::chanceLook(4, Dots::Round), path,
                                     [](std::uint64_t done, std::uint64_t total) {
                                         EXPECT_EQ(total, 7U);
                                         return done < 5;
                                     }));
    EXPECT_EQ(files(), std::set<std::string>{"x-000001.png"});
    EXPECT_EQ(support::readFile(folder.path() / "x-000001.png"), (Bytes{1, 2, 3}));
}

/// Where a frame of 16 x 8 dots lies in a sheet, in pixels.
Bytes cut(const decoded::Image& sheet, std::size_t column, std::size_t row, std::size_t scale) {
    Bytes part;
    for (std::size_t y = 0; y < 8 * scale; ++y) {
        const std::size_t at = 3 * ((row * 8 * scale + y) * sheet.width + column * 16 * scale);
        const auto from = sheet.frames.at(0).begin() + static_cast<std::ptrdiff_t>(at);
        part.insert(part.end(), from, from + static_cast<std::ptrdiff_t>(3 * 16 * scale));
    }
    return part;
}

TEST_F(Png, SheetShowsTheFramesRowAfterRow) {
    const display::Look look = decoded::chanceLook(5, Dots::Round);
    EXPECT_TRUE(pictures::writeSheet(sequence, look, 3, path));
    const auto sheet = decoded::image(path);
    ASSERT_EQ(sheet.width, 3U * 16 * 5);
    ASSERT_EQ(sheet.height, 3U * 8 * 5);
    for (std::size_t number = 0; number < 7; ++number) {
        EXPECT_TRUE(cut(sheet, number % 3, number / 3, 5) ==
                    decoded::painted(sequence, number, look))
            << number;
    }
    Sequence dark = decoded::chanceFrames({0}, {}, 16, 8);
    dark.read = [](std::uint64_t, std::vector<std::uint8_t>& entries) {
        entries.assign(std::size_t{16} * 8, 0);
        return 0U;
    };
    EXPECT_TRUE(cut(sheet, 2, 2, 5) == decoded::painted(dark, 0, look));
}

TEST_F(Png, SheetIsNoWiderThanItsFrames) {
    EXPECT_TRUE(pictures::writeSheet(sequence, decoded::chanceLook(1, Dots::Square), 1000, path));
    EXPECT_EQ(decoded::image(path).width, 7U * 16);
    EXPECT_TRUE(pictures::writeSheet(sequence, decoded::chanceLook(1, Dots::Square), 0, path));
    EXPECT_EQ(decoded::image(path).width, 16U);
}

TEST_F(Png, SheetIsThereWholeOrNotAtAll) {
    EXPECT_FALSE(
        pictures::writeSheet(sequence, decoded::chanceLook(1, Dots::Square), 2, path,
                             [](std::uint64_t done, std::uint64_t total) { return done < total; }));
    EXPECT_TRUE(files().empty());
}

TEST_F(Png, SheetIsRefusedWhereItWouldTakeTooMuchMemory) {
    Sequence many = decoded::chanceFrames({}, {}, 192, 64);
    many.count = 100;
    try {
        pictures::writeSheet(many, decoded::chanceLook(256, Dots::Square), 100, path);
        FAIL() << "80 GB";
    } catch (const recording::Error& error) {
        EXPECT_EQ(error.failure(), recording::Failure::CannotConvert);
        EXPECT_THAT(error.what(), testing::HasSubstr("100 frames side by side"));
    }
    EXPECT_TRUE(files().empty());
}

TEST_F(Png, SheetIsRefusedWhereItWouldBeTooHighForTheFormat) {
    Sequence many = decoded::chanceFrames({}, {}, 1, 64);
    many.count = 1'000'000;
    EXPECT_THROW(pictures::writeSheet(many, decoded::chanceLook(256, Dots::Square), 1, path),
                 recording::Error);
    EXPECT_TRUE(files().empty());
}

TEST_F(Png, WantsAFrameThatIsThereAndAScale) {
    EXPECT_THROW(pictures::writePng(sequence, 7, display::Look{}, path), std::out_of_range);
    display::Look look;
    look.scale = 0;
    EXPECT_THROW(pictures::writePng(sequence, 0, look, path), std::invalid_argument);
    EXPECT_TRUE(files().empty());
}

TEST_F(Png, ThatDoesNotFitOnTheDiskSaysSo) {
    faults::Disk disk;
    if (!disk.why().empty()) {
        GTEST_SKIP() << disk.why();
    }
    disk.fill();
    const auto failing = [&](auto write) {
        try {
            write(disk.path() / "x.png");
            ADD_FAILURE() << "the disk is full";
        } catch (const recording::Error& error) {
            EXPECT_THAT(error.what(), testing::HasSubstr("No space left on device"));
        }
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(disk.path()), {}), 1);
    };
    const display::Look look = decoded::chanceLook(32, Dots::Round);
    failing([&](const auto& to) { pictures::writePng(sequence, 0, look, to); });
    failing([&](const auto& to) { pictures::writePngs(sequence, look, to); });
    failing([&](const auto& to) { pictures::writeSheet(sequence, look, 2, to); });
}

}  // namespace
