// Unticking and ticking again before the capture has come to the end of its round.

#include "tests/ui/capture/capture_window.h"

namespace {

using TickingAgain = support::CaptureWindow;

TEST_F(TickingAgain, InOneRoundStartsACaptureIntoTheNewFolder) {
    start();
    choose(folder.path());
    choose(otherFolder.path());
    // Two events of their own, both pending before the window handles the first.
    rounds.after(3, [&] { untick(); });
    rounds.after(3, [&] { tick(); });
    rounds.after(7, [&] { untick(); });
    tick();
    EXPECT_EQ(rounds.frames(), 7);
    EXPECT_EQ(textFrames(folder.path()), 3U);
    EXPECT_EQ(textFrames(otherFolder.path()), 4U);
    EXPECT_FALSE(dump_running);
    EXPECT_FALSE(box().GetValue());
    expectGivenBack();
}

TEST_F(TickingAgain, IsPossibleAnyNumberOfTimes) {
    start();
    choose(folder.path());
    for (int round = 1; round <= 10; ++round) {
        choose(otherFolder.path());
        rounds.after(round, [&] { untick(); });
        rounds.after(round, [&] { tick(); });
    }
    rounds.after(12, [&] { untick(); });
    tick();
    EXPECT_EQ(textFrames(folder.path()), 1U);
    EXPECT_EQ(textFrames(otherFolder.path()), 11U);
    expectGivenBack();
}

TEST_F(TickingAgain, AndUntickingEndsEverything) {
    start();
    choose(folder.path());
    choose(otherFolder.path());
    rounds.after(3, [&] { untick(); });
    rounds.after(3, [&] { tick(); });
    rounds.after(3, [&] { untick(); });
    tick();
    EXPECT_EQ(rounds.frames(), 3);
    EXPECT_FALSE(dump_running);
    EXPECT_TRUE(std::filesystem::is_empty(otherFolder.path()));
    expectGivenBack();
}

TEST_F(TickingAgain, TwiceInOneRoundUsesTheLastFolder) {
    start();
    const support::TemporaryFolder lastFolder;
    choose(folder.path());
    choose(otherFolder.path());
    choose(lastFolder.path());
    for (int i = 0; i < 2; ++i) {
        rounds.after(3, [&] { untick(); });
        rounds.after(3, [&] { tick(); });
    }
    rounds.after(5, [&] { untick(); });
    tick();
    EXPECT_EQ(textFrames(folder.path()), 3U);
    EXPECT_TRUE(std::filesystem::is_empty(otherFolder.path()));
    EXPECT_EQ(textFrames(lastFolder.path()), 2U);
    expectGivenBack();
}

TEST_F(TickingAgain, AndCancellingEndsTheCaptureThatWasUnticked) {
    start();
    choose(folder.path());
    choose(std::nullopt);
    rounds.after(3, [&] { untick(); });
    rounds.after(3, [&] { tick(); });
    tick();
    EXPECT_EQ(rounds.frames(), 3);
    EXPECT_FALSE(box().GetValue());
    EXPECT_FALSE(dump_running);
    expectGivenBack();
}

TEST_F(TickingAgain, UsesTheModeThatTheControllerHasThen) {
    start(1);
    choose(folder.path());
    choose(otherFolder.path());
    rounds.after(3, [&] {
        support::send(support::in(*frame, &support::Members::set_Stern), wxEVT_RADIOBUTTON, 1);
        untick();
        tick();
    });
    rounds.after(5, [&] { untick(); });
    tick();
    EXPECT_EQ(countCalls("out 0x01 64 2000ms #0: 02 C3 E8 03 00*60"), 3);
    EXPECT_EQ(countCalls("out 0x01 64 2000ms #0: 02 C3 E8 04 00*60"), 2);
}

TEST_F(TickingAgain, WithTheControllerUnpluggedEndsAndLeavesTheBoxTicked) {
    start();
    choose(folder.path());
    choose(otherFolder.path());
    rounds.after(3, [&] {
        bus.unplug(0);
        untick();
        tick();
    });
    tick();
    EXPECT_EQ(rounds.frames(), 3);
    EXPECT_TRUE(box().GetValue());
    EXPECT_TRUE(dump_running);
    untick();
    EXPECT_FALSE(dump_running);
    EXPECT_EQ(bus.openHandles(), 0);
}

}  // namespace
