// A recording that a thread reads while others look at it.

#include <gmock/gmock.h>

#include <chrono>
#include <condition_variable>
#include <fstream>
#include <thread>

#include "recording/error.h"
#include "tests/recording/dumps.h"
#include "tests/support/temporary_folder.h"
#include "viewer/followed.h"
#include "viewer/words.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using viewer::Followed;
using viewer::Gap;
using viewer::State;

/// Waits, 10 s at most, until the state is such.
template <class Condition>
State waitFor(Followed& followed, Condition condition) {
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    State state = followed.state();
    while (!condition(state) && std::chrono::steady_clock::now() < limit) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        state = followed.state();
    }
    EXPECT_TRUE(condition(state));
    return state;
}

bool isRead(const State& state) { return state.indexed && state.surveyed == state.frames; }

class FollowedFile : public testing::Test {
protected:
    std::filesystem::path write(const std::string& text) const {
        support::writeFile(path, dumps::bytesOf(text));
        return path;
    }
    void append(const std::string& text) const {
        std::ofstream(path, std::ios::app | std::ios::binary) << text;
    }

    support::TemporaryFolder folder;
    std::filesystem::path path = folder.path() / "050324_140709_lumadot_dump.txt";
};

TEST_F(FollowedFile, HasItsGapsItsDamageAndItsShades) {
    using dumps::plainText;
    Followed followed(
        write(plainText(1000) + plainText(2999) + plainText(3000, '1').substr(0, 402) +
              plainText(3999, '4') + plainText(3900)),
        [] {});
    const State state = waitFor(followed, isRead);
    EXPECT_EQ(state.frames, 4U);
    EXPECT_EQ(state.damages, 1U);
    EXPECT_EQ(state.highestDigit, 4);
    const auto gaps = followed.useSurvey([](auto&, const auto& survey) { return survey.gaps(); });
    EXPECT_THAT(gaps, ElementsAre(Gap{0, 1999}, Gap{1, 1000}, Gap{2, 0xFFFFFF9D}));
    EXPECT_EQ(viewer::words::gap(gaps[0]), "2.0 s without a frame");
    EXPECT_EQ(viewer::words::gap(gaps[2]), "A step of 0.1 s back in time");
}

TEST_F(FollowedFile, IsReadOnWhenItGrows) {
    Followed followed(write(dumps::plainText(1)), [] {});
    waitFor(followed, [](const State& state) { return isRead(state) && state.frames == 1; });
    append(dumps::plainText(2, 'f'));
    const State state =
        waitFor(followed, [](const State& each) { return isRead(each) && each.frames == 2; });
    EXPECT_EQ(state.highestDigit, 15);
    EXPECT_EQ(followed.use([](auto& dump) { return dump.frame(1).stampMs; }), 2U);
}

TEST_F(FollowedFile, TellsWhyItDoesNotGoOnAndGoesOnWhenItCan) {
    Followed followed(write(dumps::plainText(1)), [] {});
    waitFor(followed, isRead);
    write("something else");
    EXPECT_THAT(waitFor(followed, [](const State& state) { return !state.error.empty(); }).error,
                testing::HasSubstr("is no recording"));
    write(dumps::plainText(5) + dumps::plainText(6) + dumps::plainText(7));
    const State state = waitFor(followed, [](const State& each) { return each.frames == 3; });
    EXPECT_THAT(state.error, IsEmpty());
}

TEST_F(FollowedFile, IsNotReadOnWhileItIsStopped) {
    Followed followed(write(dumps::plainText(1)), [] {});
    waitFor(followed, isRead);
    followed.stop(true);
    append(dumps::plainText(2));
    std::this_thread::sleep_for(3 * Followed::LookInterval);  // It would have looked by then.
    EXPECT_EQ(followed.state().frames, 1U);
    EXPECT_TRUE(followed.state().stopped);
    followed.stop(false);
    waitFor(followed, [](const State& state) { return state.frames == 2; });
}

TEST_F(FollowedFile, CallsOnceUntilItIsAsked) {
    std::atomic<int> calls = 0;
    Followed followed(write(dumps::plainText(1)), [&] { ++calls; });
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (calls == 0 && std::chrono::steady_clock::now() < limit) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    append(dumps::plainText(2));
    std::this_thread::sleep_for(3 * Followed::LookInterval);
    EXPECT_EQ(calls, 1);
    followed.state();
    append(dumps::plainText(3));
    while (calls == 1 && std::chrono::steady_clock::now() < limit) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    EXPECT_EQ(calls, 2);
}

TEST(ALargeRecording, ShowsItsFirstFrameAtOnceAndAnyOtherSoon) {
    constexpr std::uintmax_t Size = std::uintmax_t{2} << 30U;
    const support::TemporaryFolder folder;
    const auto path = folder.path() / "050324_140709_lumadot_dump.raw";
    support::writeFile(path, dumps::rawHeader(3));
    std::filesystem::resize_file(path, Size);  // Sparse: dark frames of one time.
    using Clock = std::chrono::steady_clock;
    const auto start = Clock::now();
    Followed followed(path, [] {});
    const State first = followed.state();
    const auto opened = Clock::now();
    EXPECT_GE(first.frames, 1U);
    EXPECT_LT(opened - start, std::chrono::seconds(2));
    std::uint64_t frames = 0;
    while (!followed.state().indexed && Clock::now() - opened < std::chrono::seconds(60)) {
        const State state = followed.state();
        EXPECT_GE(state.frames, frames);
        frames = state.frames;
        followed.use([&](auto& dump) { return dump.frame(state.frames - 1); });
    }
    const auto indexed = Clock::now();
    EXPECT_EQ(followed.state().frames, (Size - 8) / (4 + 3 * 512));
    const auto ms = [](auto time) {
        return std::chrono::duration_cast<std::chrono::milliseconds>(time).count();
    };
    std::cout << "first frame of 2 GiB after " << ms(opened - start) << " ms, index after "
              << ms(indexed - start) << " ms\n";
}

TEST(AFile, ThatIsNoRecordingIsNotOpened) {
    const support::TemporaryFolder folder;
    support::writeFile(folder.path() / "x.raw", dumps::bytesOf("GIF89a"));
    EXPECT_THROW(Followed(folder.path() / "x.raw", [] {}), recording::Error);
    EXPECT_THROW(Followed(folder.path() / "missing.raw", [] {}), recording::Error);
}

TEST(Times, AreInHoursMinutesSecondsAndThousandths) {
    EXPECT_EQ(viewer::words::time(0), "0:00:00.000");
    EXPECT_EQ(viewer::words::time(3723004), "1:02:03.004");
}

}  // namespace
