// "Create Dump File": ticking asks for a folder and starts a capture, unticking ends it.

#include "tests/ui/capture/capture_window.h"

namespace {

using CheckBox = support::CaptureWindow;
using testing::ElementsAre;

TEST_F(CheckBox, AsksTheControllerForItsSettingsBeforeTheUserForAFolder) {
    plugAt(2);
    makeWindow();
    config.inputMode = 9;
    config.brightness = 1;
    dialogs.expect([&](wxDialog& dialog) -> int {
        EXPECT_NE(dynamic_cast<wxDirDialog*>(&dialog), nullptr);
        EXPECT_EQ(countCalls("out 0x01 2052 1000ms #0: 81 C3 E7 FF 10 00*2047"), 1);
        EXPECT_EQ(countCalls("in 0x81 63"), 1);
        EXPECT_EQ(config.inputMode, 2);
        EXPECT_EQ(support::in(*frame, &support::Members::brightness_Slider).GetValue(), 30);
        EXPECT_THAT(support::checkedModes(*frame), ElementsAre(2));
        EXPECT_EQ(bus.openHandles(), 0);
        return wxID_CANCEL;
    });
    tick();
    EXPECT_EQ(countCalls("out"), 1);
}

class CancelledFolder : public CheckBox, public testing::WithParamInterface<bool> {};

TEST_P(CancelledFolder, UnticksTheBoxStartsNothingAndLeavesTheFlag) {
    start();
    dump_running = GetParam();
    choose(std::nullopt);
    tick();
    EXPECT_FALSE(box().GetValue());
    EXPECT_EQ(dump_running, GetParam());
    EXPECT_EQ(rounds.frames(), 0);
    EXPECT_EQ(rounds.enumerations(), 3);  // Two as the window was made, one by the box.
    expectGivenBack();
}

INSTANTIATE_TEST_SUITE_P(Flag, CancelledFolder, testing::Bool());

TEST_F(CheckBox, WithoutControllerStaysTickedAndTheFlagTrue) {
    makeWindow();
    choose(folder.path());
    tick();
    EXPECT_TRUE(box().GetValue());
    EXPECT_TRUE(dump_running);
    EXPECT_EQ(rounds.frames(), 0);
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));

    untick();
    EXPECT_FALSE(dump_running);
}

TEST_F(CheckBox, WithoutControllerCanBeTickedAgainWhenThereIsOne) {
    makeWindow();
    choose(folder.path());
    tick();
    untick();
    plugAt(1);
    choose(folder.path());
    rounds.after(2, [&] { untick(); });
    tick();
    EXPECT_EQ(textFrames(folder.path()), 2U);
    expectGivenBack();
}

TEST_F(CheckBox, WithoutControllerLetsTheWindowClose) {
    makeWindow();
    choose(folder.path());
    tick();
    EXPECT_TRUE(frame->Close());
    support::deleteClosedWindows();
    EXPECT_FALSE(frame);
}

TEST_F(CheckBox, CapturesInTheControllersOwnMode) {
    start(6);
    config.inputMode = 3;
    choose(folder.path());
    rounds.after(2, [&] { untick(); });
    tick();
    EXPECT_EQ(countCalls("out 0x01 64 2000ms #0: 02 C3 E8 0C 00*60"), 2);
    EXPECT_EQ(textFrames(folder.path()), 2U);
}

TEST_F(CheckBox, CapturesInTheModeOfTheWindowWhenTheControllerDoesNotAnswer) {
    start(6);
    config.inputMode = 3;
    bus.inject({.function = "libusb_bulk_transfer", .result = -7, .endpoint = 0x81});
    dialogs.expectMessage("Firmware version not supported ! Please upgrade !", "Error");
    choose(folder.path());
    rounds.after(1, [&] { untick(); });
    tick();
    EXPECT_EQ(countCalls("out 0x01 64 2000ms #0: 02 C3 E8 02 00*60"), 1);
}

TEST_F(CheckBox, UntickedEndsTheCaptureAfterTheRoundAndGivesTheControllerBack) {
    start();
    choose(folder.path());
    rounds.after(5, [&] {
        EXPECT_TRUE(dump_running);
        EXPECT_EQ(bus.claimedInterfaces(), 1);
        untick();
        EXPECT_FALSE(dump_running);
    });
    tick();
    EXPECT_FALSE(dump_running);
    EXPECT_FALSE(box().GetValue());
    EXPECT_EQ(rounds.frames(), 5);
    EXPECT_EQ(textFrames(folder.path()), 5U);
    EXPECT_EQ(countCalls("libusb_claim_interface"), 2);  // For the settings, for the capture.
    expectGivenBack();
}

TEST_F(CheckBox, ModeChosenDuringACaptureIsTheNextCapturesMode) {
    start(1);
    choose(folder.path());
    rounds.after(2, [&] {
        support::send(support::in(*frame, &support::Members::set_Stern), wxEVT_RADIOBUTTON, 1);
    });
    rounds.after(4, [&] { untick(); });
    tick();
    EXPECT_EQ(countCalls("out 0x01 64 2000ms #0: 02 C3 E8 03 00*60"), 4);

    choose(otherFolder.path());
    rounds.after(5, [&] { untick(); });
    tick();
    EXPECT_EQ(countCalls("out 0x01 64 2000ms #0: 02 C3 E8 04 00*60"), 1);
}

}  // namespace
