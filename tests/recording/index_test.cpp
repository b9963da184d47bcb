// Large files: several threads, many irregular places, and an index that stays small.

#include <gmock/gmock.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <vector>

#include "recording/error.h"
#include "recording/frame_index.h"
#include "tests/recording/dumps.h"

namespace {

using dumps::Bytes;
using namespace dumps::joining;
using dumps::Opened;

/// Large enough for the threads, with something irregular where the test says.
class LargeText : public testing::Test {
protected:
    static constexpr std::uint32_t Frames = 8000;  // 33 MB

    /// Frame n has stamp 16 n, and every tenth frame the dots of the one before.
    static std::string frame(std::uint32_t number) {
        const auto digit = "0123456789"[(number - number / 10) % 10];
        return dumps::plainText(16 * number,
                                number % 10 == 0 && number > 0
                                    ? "0123456789"[(number - 1 - (number - 1) / 10) % 10]
                                    : digit);
    }

    static Bytes file(const std::vector<std::uint32_t>& broken) {
        Bytes bytes;
        bytes.reserve(Frames * std::size_t{4174});
        for (std::uint32_t number = 0; number < Frames; ++number) {
            std::string text = frame(number);
            if (std::ranges::count(broken, number) != 0) {
                text[100] = '?';
            }
            bytes.insert(bytes.end(), text.begin(), text.end());
        }
        return bytes;
    }

    /// Equal to a slow walk over the file, frame by frame.
    static void expect(recording::Recording& dump, const std::vector<std::uint32_t>& broken) {
        ASSERT_EQ(dump.frames(), Frames - broken.size());
        ASSERT_EQ(dump.damageCount(), broken.size());
        std::uint64_t equal = 0;
        std::string before;
        std::uint64_t number = 0;
        for (std::uint32_t place = 0; place < Frames; ++place) {
            if (std::ranges::count(broken, place) != 0) {
                EXPECT_EQ(dump.damages()[place - number].offset, place * std::uint64_t{4174} + 100);
                continue;
            }
            const std::string dots = frame(place).substr(12);
            equal += dots == before ? 1 : 0;
            before = dots;
            if (place % 97 == 0 || place + 1 == Frames) {
                const auto read = dump.frame(number);
                ASSERT_EQ(read.stampMs, 16 * place);
                ASSERT_EQ(read.offset, place * std::uint64_t{4174});
                ASSERT_EQ(dump.elapsedMs(number), read.stampMs - dump.summary().firstMs);
                ASSERT_EQ(dump.frameAt(read.stampMs - dump.summary().firstMs + 15), number);
            }
            ++number;
        }
        EXPECT_EQ(dump.summary().equalNeighbours, equal);
        EXPECT_EQ(dump.summary().durationMs, 16U * (Frames - 1) - dump.summary().firstMs);
    }
};

TEST_F(LargeText, WithoutDamageIsIndexedWhole) {
    const Opened dump(file({}));
    expect(*dump.dump, {});
}

TEST_F(LargeText, WithDamageAnywhereIsIndexedAsFrameByFrame) {
    std::vector<std::uint32_t> broken = {0, 1, 255, 300, 1500, 1501, 4000, 7990};
    const Opened dump(file(broken));
    expect(*dump.dump, broken);
}

TEST_F(LargeText, GoesOnWhereItWasAskedToEnd) {
    const Bytes bytes = file({1500});
    recording::Recording dump(std::make_unique<recording::MemorySource>(bytes), "dump");
    int stops = 0;
    std::uint64_t frames = 0;
    while (!dump.extend([&](std::uint64_t done, std::uint64_t total) {
        EXPECT_LE(done, total);
        EXPECT_EQ(total, bytes.size());
        return false;
    })) {
        ++stops;
        ASSERT_GE(dump.frames(), frames);
        ASSERT_LT(stops, 5000) << "does not get on";
        frames = dump.frames();
        EXPECT_EQ(dump.frame(frames - 1).number, frames - 1);
    }
    EXPECT_GT(stops, 10);
    expect(dump, {1500});
}

TEST(AFrame, OfALargeRawDumpIsFoundByItsNumber) {
    constexpr std::uint32_t Frames = 30000;  // 46 MB
    Bytes bytes = dumps::rawHeader();
    bytes.reserve(Frames * std::size_t{1540} + 16);
    for (std::uint32_t number = 0; number < Frames; ++number) {
        if (number == 20000) {
            bytes = std::move(bytes) + dumps::rawHeader();
        }
        const Bytes frame = dumps::plainRaw(number * 16, 3, static_cast<std::uint8_t>(number / 2));
        bytes.insert(bytes.end(), frame.begin(), frame.end());
    }
    const Opened dump(std::move(bytes));
    ASSERT_EQ(dump->frames(), Frames);
    EXPECT_EQ(dump->summary().equalNeighbours, Frames / 2);
    EXPECT_EQ(dump->summary().durationMs, 16U * (Frames - 1));
    EXPECT_THAT(dumps::damagesOf(*dump.dump), testing::SizeIs(1));
    for (std::uint32_t number = 0; number < Frames; number += 991) {
        EXPECT_EQ(dump->frame(number).stampMs, number * 16);
        EXPECT_EQ(dump->elapsedMs(number), number * 16);
    }
}

/// More irregular places than the index has entries.
TEST(AFrame, AmongMoreIrregularPlacesThanThereAreEntriesIsFound) {
    constexpr std::uint32_t Frames = recording::FrameIndex::MaxRuns * 5 / 4;
    Bytes bytes;
    bytes.reserve(Frames * std::size_t{524});
    for (std::uint32_t number = 0; number < Frames; ++number) {
        const Bytes part = dumps::rawHeader(1) + dumps::plainRaw(number, 1);
        bytes.insert(bytes.end(), part.begin(), part.end());
    }
    const Opened dump(std::move(bytes));
    ASSERT_EQ(dump->frames(), Frames);
    for (std::uint32_t number = 0; number < Frames; number += 7919) {
        EXPECT_EQ(dump->frame(number).stampMs, number);
        EXPECT_EQ(dump->frame(number).offset, number * std::uint64_t{524} + 8);
    }
    for (std::uint32_t number = 1000; number < 1100; ++number) {
        EXPECT_EQ(dump->frame(number).stampMs, number);
    }
    EXPECT_EQ(dump->elapsedMs(Frames - 1), Frames - 1);
}

TEST(TheIndex, JoinsShortEntriesAndKeepsLongOnes) {
    recording::FrameIndex index;
    index.add(8, 1'000'000, 1540, 3);
    std::uint64_t offset = 8 + 1'000'000 * std::uint64_t{1540} + 8;
    for (std::size_t i = 0; i < 3 * recording::FrameIndex::MaxRuns; ++i, offset += 1548) {
        index.add(offset, 1, 1540, 3);
    }
    const auto early = index.place(999'999);
    EXPECT_EQ(early.skip, 0U);
    EXPECT_EQ(early.offset, 8 + 999'999 * std::uint64_t{1540});
    std::uint64_t most = 0;
    for (std::uint64_t number = 1'000'000; number < index.frames(); number += 13) {
        const auto place = index.place(number);
        most = std::max(most, place.skip);
        ASSERT_EQ(place.offset + place.skip * 1548, 8 + 1'000'000 * std::uint64_t{1540} + 8 +
                                                        (number - 1'000'000) * std::uint64_t{1548});
    }
    EXPECT_LE(most, 16U);
    EXPECT_THROW(static_cast<void>(index.place(index.frames())), std::out_of_range);
}

TEST(TheIndex, ThinsOutItsMarks) {
    recording::FrameIndex index;
    constexpr std::uint64_t Marks = 5 * recording::FrameIndex::MaxMarks;
    for (std::uint64_t mark = 0; mark < Marks; ++mark) {
        index.addMark({mark * 3, mark * 48});
    }
    for (std::uint64_t frame = 0; frame < 3 * Marks; frame += 1009) {
        const auto mark = index.markBefore(frame);
        ASSERT_LE(mark.frame, frame);
        ASSERT_LE(frame - mark.frame, 60U);
        ASSERT_EQ(mark.elapsedMs, mark.frame * 16);
        ASSERT_EQ(index.markAt(mark.elapsedMs).frame, mark.frame);
    }
}

/// Fails where it is told to.
class Failing : public recording::Source {
public:
    Failing(const Bytes& bytes, std::uint64_t from) : bytes_(bytes), from_(from) {}
    std::uint64_t size() override { return bytes_.size(); }
    std::size_t read(std::uint64_t offset, std::span<std::uint8_t> into) override {
        if (offset >= from_) {
            throw recording::Error(recording::Failure::CannotRead, "a bad sector");
        }
        return recording::MemorySource(bytes_).read(offset, into);
    }
    std::unique_ptr<recording::Source> another() const override {
        return std::make_unique<Failing>(bytes_, from_);
    }

private:
    const Bytes& bytes_;
    std::uint64_t from_;
};

TEST(AnErrorOfTheDisk, IsThrownFromAllThreads) {
    Bytes bytes = dumps::rawHeader();
    bytes.resize(8 + 20000 * std::size_t{1540});
    for (const std::uint64_t from : {0U, 100000U, 5'000'000U, 20'000'000U}) {
        try {
            recording::Recording dump(std::make_unique<Failing>(bytes, from), "dump");
            dump.extend();
            FAIL() << "did not notice";
        } catch (const recording::Error& error) {
            EXPECT_STREQ(error.what(), "a bad sector");
        }
    }
}

}  // namespace
