// From a recording to the palette entries of its pictures.

#include "pictures/sequence.h"

#include <gmock/gmock.h>

#include <string>

#include "pictures/colour_table.h"
#include "pictures/gif.h"
#include "recording/error.h"
#include "tests/pictures/decoded.h"
#include "tests/recording/dumps.h"
#include "tests/support/temporary_folder.h"

namespace {

using dumps::Bytes;
using namespace dumps::joining;
using dumps::Opened;

class SequenceOfText : public testing::Test {
protected:
    const Opened dump{dumps::bytesOf(dumps::plainText(1000, '1') + dumps::plainText(1016, '3') +
                                     dumps::plainText(1050, '4') + dumps::plainText(1100, 'f'))};
};

TEST_F(SequenceOfText, ShowsEachDigitInItsEntry) {
    const auto sequence = pictures::sequenceOf(*dump.dump, {0, 2}, digitEntries(ShadeSet::Four));
    EXPECT_EQ(sequence.count, 3U);
    EXPECT_EQ(sequence.columns, 128U);
    EXPECT_EQ(sequence.rows, 32U);
    EXPECT_EQ(sequence.spanMs, 50U);
    Bytes entries;
    EXPECT_EQ(sequence.read(0, entries), 1000U);
    EXPECT_EQ(entries, Bytes(4096, 1));
    EXPECT_EQ(sequence.read(1, entries), 1016U);
    EXPECT_EQ(entries, Bytes(4096, 15));
    EXPECT_EQ(sequence.read(2, entries), 1050U);
    EXPECT_EQ(entries, Bytes(4096, 4));
}

TEST_F(SequenceOfText, IsAPartOfTheRecording) {
    const auto sequence = pictures::sequenceOf(*dump.dump, {2, 3}, digitEntries(ShadeSet::Sixteen));
    EXPECT_EQ(sequence.count, 2U);
    Bytes entries;
    EXPECT_EQ(sequence.read(1, entries), 1100U);
    EXPECT_EQ(entries, Bytes(4096, 15));
    EXPECT_THROW(pictures::sequenceOf(*dump.dump, {2, 4}, digitEntries(ShadeSet::Four)),
                 std::out_of_range);
}

TEST_F(SequenceOfText, HasAsManyShadesAsItsHighestDigitWants) {
    ShadeSet shades = ShadeSet::Sixteen;
    EXPECT_TRUE(pictures::findShades(*dump.dump, {0, 1}, shades));
    EXPECT_EQ(shades, ShadeSet::Four);
    EXPECT_TRUE(pictures::findShades(*dump.dump, {0, 2}, shades));
    EXPECT_EQ(shades, ShadeSet::Five);
    EXPECT_TRUE(pictures::findShades(*dump.dump, {3, 3}, shades));
    EXPECT_EQ(shades, ShadeSet::Sixteen);
    EXPECT_FALSE(pictures::findShades(*dump.dump, {0, 3}, shades,
                                      [](auto done, auto total) { return done + 2 < total; }));
}

TEST_F(SequenceOfText, BecomesAGif) {
    const support::TemporaryFolder folder;
    display::Look look;
    look.palette = presets::colours(8);
    look.scale = 4;
    const auto sequence = pictures::sequenceOf(*dump.dump, {0, 3}, digitEntries(ShadeSet::Sixteen));
    EXPECT_TRUE(pictures::writeGif(sequence, look, folder.path() / "x.gif").finished);
    const auto image = decoded::image(folder.path() / "x.gif");
    ASSERT_EQ(image.frames.size(), 4U);
    EXPECT_THAT(image.timesMs, testing::ElementsAre(20, 30, 50, 50));
    for (std::uint64_t number = 0; number < 4; ++number) {
        EXPECT_TRUE(image.frames[number] == decoded::painted(sequence, number, look)) << number;
    }
    // Pixel 1, 1 of each frame: entry 1, 3, 4 and 15 of preset 8, under a round dot's middle.
    for (const auto& [number, red, green] :
         {std::tuple{0U, 17, 9}, {1U, 51, 27}, {2U, 68, 36}, {3U, 255, 135}}) {
        const Bytes& pixels = image.frames[number];
        const std::size_t at = 3 * (512 + 1);
        EXPECT_THAT((Bytes{pixels[at], pixels[at + 1], pixels[at + 2]}),
                    testing::ElementsAre(red, green, 0));
    }
}

TEST(ASequence, OfARawDumpWantsItsMode) {
    const Opened dump(dumps::rawHeader(4) + dumps::plainRaw(1, 4));
    try {
        pictures::sequenceOf(*dump.dump, {0, 0}, digitEntries(ShadeSet::Four));
        FAIL() << "does not know its mode";
    } catch (const recording::Error& error) {
        EXPECT_EQ(error.failure(), recording::Failure::ModeNeeded);
    }
}

TEST(Colours, OfPicturesAreEachThereOnce) {
    display::Look look;
    look.palette = presets::colours(0);
    EXPECT_EQ(pictures::ColourTable(look).colours().size(), 16U);
    look.palette[45] = look.palette[46] = look.palette[47] = 0;  // White becomes black.
    EXPECT_EQ(pictures::ColourTable(look).colours().size(), 15U);
}

TEST(Colours, OfPicturesAreNeverMoreThan256) {
    for (const std::size_t scale : {8U, 37U, 256U}) {
        const display::Look look = decoded::chanceLook(scale, display::Dots::Round);
        EXPECT_LE(pictures::ColourTable(look).colours().size(), 256U);
        EXPECT_GE(pictures::ColourTable(look).colours().size(), 46U);
    }
}

}  // namespace
