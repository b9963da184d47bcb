// A file that is recorded while it is read.

#include <gmock/gmock.h>

#include <algorithm>
#include <string>

#include "recording/error.h"
#include "tests/recording/dumps.h"
#include "tests/support/temporary_folder.h"

namespace {

using dumps::Bytes;
using namespace dumps::joining;
using dumps::Opened;

/// Bytes of which at first only some are there.
class Growing : public recording::Source {
public:
    Growing(const Bytes& bytes, const std::size_t& size) : bytes_(bytes), size_(size) {}
    std::uint64_t size() override { return size_; }
    std::size_t read(std::uint64_t offset, std::span<std::uint8_t> into) override {
        const std::span<const std::uint8_t> all(bytes_);
        recording::MemorySource there(all.first(size_));
        return there.read(offset, into);
    }
    std::unique_ptr<recording::Source> another() const override {
        return std::make_unique<Growing>(bytes_, size_);
    }

private:
    const Bytes& bytes_;
    const std::size_t& size_;
};

struct State {
    std::uint64_t frames;
    std::uint64_t durationMs;
    std::uint64_t equal;
    std::vector<std::string> damages;
    std::vector<std::uint32_t> stamps;

    bool operator==(const State&) const = default;
};

State stateOf(recording::Recording& dump) {
    return {dump.frames(), dump.summary().durationMs, dump.summary().equalNeighbours,
            dumps::damagesOf(dump), dumps::stampsOf(dump)};
}

/// Frames, damaged places of each kind, and frames again.
Bytes oddText() {
    std::string lfOnly = dumps::plainText(40, '3');
    std::erase(lfOnly, '\r');
    return dumps::bytesOf(dumps::plainText(10) + dumps::plainText(20) + "what?\r\n" +
                          dumps::plainText(30, '1').substr(0, 2000) + dumps::plainText(35, '1') +
                          lfOnly + dumps::plainText(50, '3').substr(0, 4172) +
                          dumps::plainText(60, '4') + "\r\n" + dumps::plainText(70, '4'));
}

Bytes oddRaw() {
    constexpr std::uint32_t Noon = 0x4D5A2F11;
    return dumps::rawHeader(1) + dumps::plainRaw(Noon, 1, 3) + dumps::plainRaw(Noon + 16, 1, 3) +
           dumps::rawHeader(1) + dumps::plainRaw(Noon + 32, 1, 3) + dumps::rawHeader(2) +
           dumps::plainRaw(Noon + 48, 2, 5) + dumps::plainRaw(5, 2, 6);
}

class GrowingFile : public testing::TestWithParam<std::size_t> {};

/// After each step the dump is what a fresh look at the same bytes finds.
void followEachStep(const Bytes& bytes, std::size_t start, std::size_t step) {
    std::size_t size = start;
    recording::Recording followed(std::make_unique<Growing>(bytes, size), "the growing dump");
    for (; size <= bytes.size(); size += step) {
        ASSERT_TRUE(followed.extend());
        const Opened fresh(Bytes(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size)));
        ASSERT_EQ(stateOf(followed), stateOf(*fresh.dump)) << "with " << size << " bytes";
    }
}

TEST_P(GrowingFile, IsFollowedAsText) { followEachStep(oddText(), 0, GetParam()); }
TEST_P(GrowingFile, IsFollowedAsRaw) { followEachStep(oddRaw(), 8, GetParam()); }

// Steps that meet the places where a frame, a line or a stamp is not whole.
INSTANTIATE_TEST_SUITE_P(InSteps, GrowingFile, testing::Values(7, 11, 130, 512, 1000, 4174, 9999),
                         testing::PrintToStringParamName());

TEST(GrowingFiles, CanBeAnyDumpAsLongAsTheyAreEmpty) {
    const Bytes bytes = oddRaw();
    std::size_t size = 0;
    recording::Recording dump(std::make_unique<Growing>(bytes, size), "the growing dump");
    ASSERT_TRUE(dump.extend());
    EXPECT_EQ(dump.kind(), recording::Kind::Text);
    size = bytes.size();
    ASSERT_TRUE(dump.extend());
    EXPECT_EQ(dump.kind(), recording::Kind::Raw);
    EXPECT_EQ(dump.frames(), 5U);
}

TEST(AFileThatBecameShorter, IsReadAnew) {
    const Bytes bytes = dumps::bytesOf(dumps::plainText(1) + dumps::plainText(2));
    std::size_t size = bytes.size();
    recording::Recording dump(std::make_unique<Growing>(bytes, size), "the shrinking dump");
    ASSERT_TRUE(dump.extend());
    ASSERT_EQ(dump.frames(), 2U);
    size = 4174;
    EXPECT_EQ(dump.frame(0).stampMs, 1U);
    try {
        dump.frame(1);
        FAIL() << "read what is not there";
    } catch (const recording::Error& error) {
        EXPECT_EQ(error.failure(), recording::Failure::Changed);
    }
    ASSERT_TRUE(dump.extend());
    EXPECT_EQ(dump.frames(), 1U);
}

TEST(AFile, IsFollowedOnTheDisk) {
    const support::TemporaryFolder folder;
    const auto path = folder.path() / "dump.txt";
    support::writeFile(path, dumps::bytesOf(dumps::plainText(1)));
    recording::Recording dump(path);
    ASSERT_TRUE(dump.extend());
    std::ofstream(path, std::ios::app | std::ios::binary) << dumps::plainText(2, '2');
    EXPECT_EQ(dump.frames(), 1U);
    ASSERT_TRUE(dump.extend());
    EXPECT_EQ(dump.frames(), 2U);
    EXPECT_EQ(dumps::digitsOf(dump.frame(1)), std::string(4096, '2'));
}

}  // namespace
