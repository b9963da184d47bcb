// Closing the window while a capture runs inside one of its handlers.

#include "tests/ui/capture/capture_window.h"

namespace {

using Closing = support::CaptureWindow;

class ClosingKinds : public Closing, public testing::WithParamInterface<bool> {
protected:
    const bool force = GetParam();
};

TEST_P(ClosingKinds, EndsTheCaptureAfterTheRoundAndDestroysTheWindowThen) {
    start();
    choose(folder.path());
    rounds.after(3, [&] {
        EXPECT_EQ(frame->Close(force), force) << "who may be told so hears that it stays open";
        EXPECT_FALSE(dump_running);
        EXPECT_FALSE(frame->IsBeingDeleted());
    });
    tick();
    EXPECT_EQ(rounds.frames(), 3);
    EXPECT_EQ(textFrames(folder.path()), 3U);
    expectGivenBack();
    support::deleteClosedWindows();
    EXPECT_FALSE(frame) << "the window is still there";
}

TEST_P(ClosingKinds, TwiceIsAsOnce) {
    start();
    choose(folder.path());
    for (int i = 0; i < 2; ++i) {
        rounds.after(3, [&] { frame->Close(force); });
    }
    tick();
    EXPECT_EQ(rounds.frames(), 3);
    support::deleteClosedWindows();
    EXPECT_FALSE(frame);
}

TEST_P(ClosingKinds, AfterUntickingAndTickingAgainStartsNoOtherCapture) {
    start();
    choose(folder.path());
    choose(otherFolder.path());
    rounds.after(3, [&] {
        untick();
        tick();
        frame->Close(force);
    });
    tick();
    EXPECT_EQ(rounds.frames(), 3);
    EXPECT_TRUE(std::filesystem::is_empty(otherFolder.path()));
    expectGivenBack();
    support::deleteClosedWindows();
    EXPECT_FALSE(frame);
}

TEST_P(ClosingKinds, AfterUntickingIsDoneToo) {
    start();
    choose(folder.path());
    rounds.after(3, [&] { untick(); });
    rounds.after(3, [&] { frame->Close(force); });
    tick();
    EXPECT_EQ(rounds.frames(), 3);
    support::deleteClosedWindows();
    EXPECT_FALSE(frame);
}

TEST_P(ClosingKinds, WhileTheFolderForTheNextCaptureIsAskedStartsNoOtherCapture) {
    start();
    choose(folder.path());
    rounds.after(3, [&] {
        untick();
        dialogs.expect([&](wxDialog&) -> int {
            frame->Close(force);
            return wxID_OK;
        });
        tick();
    });
    rounds.setLimit(20);
    tick();
    EXPECT_EQ(rounds.frames(), 3);
    expectGivenBack();
    support::deleteClosedWindows();
    EXPECT_FALSE(frame);
}

TEST_P(ClosingKinds, AfterACommandIsDoneToo) {
    start();
    choose(folder.path());
    rounds.after(3, [&] {
        support::send(support::in(*frame, &support::Members::set_Stern), wxEVT_RADIOBUTTON, 1);
        frame->Close(force);
    });
    tick();
    EXPECT_EQ(rounds.frames(), 3);
    expectGivenBack();
    support::deleteClosedWindows();
    EXPECT_FALSE(frame);
}

TEST_P(ClosingKinds, WhileTheCaptureLooksForAControllerEndsIt) {
    start();
    choose(folder.path());
    rounds.after(2, [&] {
        bus.unplug(0);
        support::send(support::in(*frame, &support::Members::set_Stern), wxEVT_RADIOBUTTON, 1);
        rounds.afterEnumeration(rounds.enumerations() + 2, [&] { frame->Close(force); });
    });
    tick();
    EXPECT_EQ(rounds.frames(), 2);
    expectGivenBack();
    support::deleteClosedWindows();
    EXPECT_FALSE(frame);
}

INSTANTIATE_TEST_SUITE_P(Asked, ClosingKinds, testing::Values(false),
                         [](const auto&) { return "and_may_be_refused"; });
INSTANTIATE_TEST_SUITE_P(Forced, ClosingKinds, testing::Values(true),
                         [](const auto&) { return "and_may_not_be_refused"; });

TEST_F(Closing, AfterACaptureIsDoneAtOnce) {
    start();
    choose(folder.path());
    rounds.after(2, [&] { untick(); });
    tick();
    EXPECT_TRUE(frame->Close());
    support::deleteClosedWindows();
    EXPECT_FALSE(frame);
}

TEST_F(Closing, ForgetsNothingForTheNextWindow) {
    start();
    choose(folder.path());
    rounds.after(2, [&] { frame->Close(); });
    tick();
    support::deleteClosedWindows();

    makeWindow();
    choose(otherFolder.path());
    rounds.after(4, [&] { untick(); });
    tick();
    EXPECT_EQ(textFrames(otherFolder.path()), 2U);
    support::deleteClosedWindows();
    EXPECT_TRUE(frame) << "it was not this window that was closed";
}

}  // namespace
