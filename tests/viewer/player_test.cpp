// Which frame is shown when.

#include "viewer/player.h"

#include <gmock/gmock.h>

#include <thread>

#include "recording/error.h"
#include "tests/recording/dumps.h"
#include "tests/support/temporary_folder.h"

namespace {

using std::chrono::milliseconds;
using testing::Each;
using testing::Optional;
using viewer::Player;

class Playing : public testing::Test {
protected:
    Player& open(const dumps::Bytes& bytes, const char* name = "a_lumadot_dump.txt") {
        support::writeFile(folder.path() / name, bytes);
        player = std::make_unique<Player>(folder.path() / name, [] {});
        waitUntilRead();
        return *player;
    }
    Player& openStamps(const std::vector<std::uint32_t>& stamps) {
        std::string text;
        for (const std::uint32_t stamp : stamps) {
            text += dumps::plainText(stamp, '2');
        }
        return open(dumps::bytesOf(text));
    }
    void waitUntilRead() {
        const auto limit = Player::Clock::now() + std::chrono::seconds(10);
        const auto isRead = [this] {
            player->update();
            return player->state().indexed && player->state().surveyed == player->state().frames;
        };
        while (!isRead() && Player::Clock::now() < limit) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }

    support::TemporaryFolder folder;
    std::unique_ptr<Player> player;
    const Player::Time start = Player::Clock::now();
};

TEST_F(Playing, ShowsEachFrameAtItsTime) {
    Player& it = openStamps({100, 140, 200});
    it.play(start);
    EXPECT_THAT(it.tick(start + milliseconds(39)), Optional(start + milliseconds(40)));
    EXPECT_EQ(it.number(), 0U);
    EXPECT_THAT(it.tick(start + milliseconds(40)), Optional(start + milliseconds(100)));
    EXPECT_EQ(it.number(), 1U);
    EXPECT_EQ(it.elapsedMs(), 40U);
    EXPECT_EQ(it.tick(start + milliseconds(100)), std::nullopt);
    EXPECT_EQ(it.number(), 2U);
    EXPECT_FALSE(it.isPlaying());
}

TEST_F(Playing, GoesFasterAndSlowerFromWhereItIs) {
    Player& it = openStamps({0, 1000, 2000, 3000});
    it.play(start);
    it.setSpeed(4, start);
    EXPECT_THAT(it.tick(start), Optional(start + milliseconds(250)));
    it.tick(start + milliseconds(500));
    EXPECT_EQ(it.number(), 2U);
    it.setSpeed(0.5, start + milliseconds(500));
    EXPECT_THAT(it.tick(start + milliseconds(500)), Optional(start + milliseconds(2500)));
}

TEST_F(Playing, StepsBackInTimeTakeNoTime) {
    Player& it = openStamps({1000, 900, 950});
    it.play(start);
    EXPECT_THAT(it.tick(start), Optional(start + milliseconds(50)));
    EXPECT_EQ(it.number(), 1U);
}

TEST_F(Playing, LoopsBetweenTheMarks) {
    Player& it = openStamps({0, 10, 20, 30, 40});
    it.setMarkIn(1);
    it.setMarkOut(2);
    it.setLoop(true);
    it.goTo(2);
    it.play(start);
    EXPECT_EQ(it.number(), 1U);
    std::vector<std::uint64_t> shown;
    for (int ms = 10; ms <= 50; ms += 10) {
        it.tick(start + milliseconds(ms));
        shown.push_back(it.number());
    }
    EXPECT_THAT(shown, testing::ElementsAre(2, 1, 2, 1, 2));
}

TEST_F(Playing, EndsAtTheMarkOrBehindItAtTheEnd) {
    Player& it = openStamps({0, 10, 20, 30, 40});
    it.setMarkOut(2);
    it.play(start);
    it.tick(start + milliseconds(900));
    EXPECT_EQ(it.number(), 2U);
    EXPECT_FALSE(it.isPlaying());
    it.goTo(3);
    it.play(start);
    it.tick(start + milliseconds(900));
    EXPECT_EQ(it.number(), 4U);
}

TEST_F(Playing, LoopsOverFramesOfOneTimeWithoutHanging) {
    Player& it = openStamps({7, 7, 7});
    it.setLoop(true);
    it.play(start);
    EXPECT_NE(it.tick(start), std::nullopt);
    EXPECT_TRUE(it.isPlaying());
}

TEST_F(Playing, AMarkBehindTheOtherTakesItAway) {
    Player& it = openStamps({0, 1, 2, 3});
    it.setMarkOut(1);
    it.setMarkIn(2);
    EXPECT_EQ(it.part().first, 2U);
    EXPECT_EQ(it.part().last, 3U);
    it.setMarkOut(0);
    EXPECT_EQ(it.part().first, 0U);
    EXPECT_EQ(it.part().last, 0U);
}

TEST_F(Playing, MovesByFramesAndByTimeAndStaysInside) {
    Player& it = openStamps({0, 400, 1000, 1400});
    it.step(-1);
    EXPECT_EQ(it.number(), 0U);
    it.skip(1000);
    EXPECT_EQ(it.number(), 2U);
    it.step(9);
    EXPECT_EQ(it.number(), 3U);
    it.skip(-1000);
    EXPECT_EQ(it.number(), 1U);
    it.skip(-1000);
    EXPECT_EQ(it.number(), 0U);
    it.goTo(1000);
    EXPECT_EQ(it.elapsedMs(), 1400U);
}

TEST_F(Playing, FollowsTheEndOnlyWhenItIsTold) {
    Player& it = openStamps({1, 2});
    const auto grow = [&] {
        std::ofstream(folder.path() / "a_lumadot_dump.txt", std::ios::app | std::ios::binary)
            << dumps::plainText(3);
        const std::uint64_t frames = it.state().frames;
        const auto limit = Player::Clock::now() + std::chrono::seconds(10);
        while (it.state().frames == frames && Player::Clock::now() < limit) {
            it.update();
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        EXPECT_EQ(it.state().frames, frames + 1);
    };
    grow();
    EXPECT_EQ(it.number(), 0U);
    it.setFollowEnd(true);
    EXPECT_EQ(it.number(), 2U);
    grow();
    EXPECT_EQ(it.number(), 3U);
    it.step(-1);
    grow();
    EXPECT_EQ(it.number(), 2U);
}

TEST_F(Playing, ShadesAreThoseOfTheFramesUntilTheyAreNamed) {
    Player& it = openStamps({1});  // All dots are 2.
    EXPECT_THAT(it.entries(), Each(4));
    it.setShades({.mode = {}, .set = ShadeSet::Five});
    EXPECT_THAT(it.entries(), Each(7));
    it.setShades({.mode = 2, .set = {}});  // Stern S.A.M.: 16 shades.
    EXPECT_THAT(it.entries(), Each(2));
}

TEST_F(Playing, ARawFrameOfSeveralModesAsksForOne) {
    using namespace dumps::joining;
    Player& it = open(dumps::rawHeader(4) + dumps::plainRaw(5, 4, 0xFF), "a_lumadot_dump.raw");
    EXPECT_THAT(it.failure(), Optional(recording::Failure::ModeNeeded));
    EXPECT_THAT(it.problem(), testing::HasSubstr("9 (Capcom), 10 (Alvin G)"));
    EXPECT_THAT(it.entries(), testing::IsEmpty());
    EXPECT_THROW(it.setShades({.mode = 1, .set = {}}), recording::Error);
    EXPECT_EQ(it.shades().mode, std::nullopt);
    it.setShades({.mode = 10, .set = {}});
    EXPECT_THAT(it.entries(), Each(15));  // The fifth of five shades.
    EXPECT_EQ(it.failure(), std::nullopt);
    it.setShades({.mode = 9, .set = {}});
    EXPECT_THAT(it.entries(), Each(15));
}

TEST_F(Playing, AnEmptyFileShowsWhatComes) {
    Player& it = open(dumps::Bytes());
    EXPECT_THAT(it.entries(), testing::IsEmpty());
    it.play(start);
    it.step(1);
    it.skip(1);
    EXPECT_EQ(it.tick(start), std::nullopt);
    support::writeFile(folder.path() / "a_lumadot_dump.txt", dumps::bytesOf(dumps::plainText(1)));
    const auto limit = Player::Clock::now() + std::chrono::seconds(10);
    while (it.entries().empty() && Player::Clock::now() < limit) {
        it.update();
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    EXPECT_EQ(it.entries().size(), 4096U);
}

}  // namespace
