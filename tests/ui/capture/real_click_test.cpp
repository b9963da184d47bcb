// The pointer's way to the box while a capture runs.

#include <wx/uiaction.h>

#include "tests/ui/capture/capture_window.h"

namespace {

using RealClick = support::CaptureWindow;

TEST_F(RealClick, OnTheBoxEndsTheCapture) {
    start();
    support::showAndWait(*frame);
    choose(folder.path());
    rounds.setLimit(1000000);
    bus.keepCalls(100);
    // The window must have shown that it is ticked before it is clicked.
    rounds.after(5, [&] {
        wxUIActionSimulator mouse;
        const wxPoint place = box().GetScreenPosition() + wxPoint(10, box().GetSize().y / 2);
        EXPECT_TRUE(mouse.MouseMove(place));
        EXPECT_TRUE(mouse.MouseClick());
    });
    tick();
    EXPECT_GE(rounds.frames(), 5);
    EXPECT_FALSE(box().GetValue());
    EXPECT_FALSE(dump_running);
    EXPECT_EQ(textFrames(folder.path()), static_cast<std::size_t>(rounds.frames()));
    expectGivenBack();
}

TEST_F(RealClick, OnAModeChangesItAndTheCaptureGoesOn) {
    start();
    support::showAndWait(*frame);
    choose(folder.path());
    rounds.setLimit(1000000);
    bus.keepCalls(100);
    int clickedAt = 0;
    auto& stern = support::in(*frame, &support::Members::set_Stern);
    stern.Bind(wxEVT_RADIOBUTTON, [&](wxCommandEvent& event) {
        clickedAt = rounds.frames();
        rounds.after(clickedAt + 3, [&] { untick(); });
        event.Skip();
    });
    rounds.after(5, [&] {
        wxUIActionSimulator mouse;
        const wxPoint place = stern.GetScreenPosition() + wxPoint(10, stern.GetSize().y / 2);
        EXPECT_TRUE(mouse.MouseMove(place));
        EXPECT_TRUE(mouse.MouseClick());
    });
    tick();
    EXPECT_EQ(config.inputMode, 2);
    EXPECT_EQ(rounds.frames(), clickedAt + 3);
    EXPECT_EQ(textFrames(folder.path()), static_cast<std::size_t>(rounds.frames()));
    expectGivenBack();
}

}  // namespace
