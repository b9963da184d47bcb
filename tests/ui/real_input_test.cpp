// The window under a real mouse and a real keyboard: what the X server delivers, the toolkit turns
// into events, and the tool sends.

#include <gmock/gmock.h>
#include <wx/uiaction.h>

#include <chrono>
#include <functional>
#include <vector>

#include "device/interfaceUSB.h"
#include "tests/support/bus_log.h"
#include "tests/support/toolkit.h"
#include "tests/support/window_test.h"
#include "ui/palette.h"

namespace {

using support::Members;
using support::runUntil;
using support::sentFrames;
using testing::ElementsAre;
using testing::IsEmpty;

class RealInput : public support::WindowTest {
protected:
    RealInput() {
        board = plug();
        show();
        window().Raise();
        EXPECT_TRUE(runUntil([this] { return window().IsActive(); }));
    }

    static wxPoint centreOf(const wxWindow& control) {
        const wxRect rect = control.GetScreenRect();
        return rect.GetPosition() + rect.GetSize() / 2;
    }

    void moveTo(const wxPoint& point) {
        mouse.MouseMove(point);
        EXPECT_TRUE(runUntil([&] { return wxGetMousePosition() == point; }));
    }

    /// Clicks on the control and waits for what must come of it.
    void click(const wxWindow& control, const std::function<bool()>& happened) {
        moveTo(centreOf(control));
        mouse.MouseClick();
        EXPECT_TRUE(runUntil(happened)) << control.GetLabel().utf8_string();
    }

    void press(int key, const std::function<bool()>& happened) {
        mouse.Char(key);
        EXPECT_TRUE(runUntil(happened)) << "key " << key;
    }

    wxUIActionSimulator mouse;
    std::shared_ptr<simulator::Controller> board;
};

TEST_F(RealInput, ClickOnAnInputModeSelectsAndSendsIt) {
    click(the(&Members::set_Capcom), [this] { return board->working()[0] == 9; });
    EXPECT_THAT(support::checkedModes(window()), ElementsAre(9));
    EXPECT_EQ(config.inputMode, 9);
    EXPECT_THAT(sentFrames(), ElementsAre("81 C3 E7 FF 02 09 00*2046"));
    EXPECT_THAT(support::shownColours(window()), ElementsAre(0, 1, 4, 15));
}

TEST_F(RealInput, ClickBesideTheFirstPlatformsCaptionSelectsIt) {
    click(the(&Members::set_WPC), [this] { return board->working()[0] == 1; });
    EXPECT_THAT(support::checkedModes(window()), ElementsAre(1));
    EXPECT_THAT(sentFrames(), ElementsAre("81 C3 E7 FF 02 01 00*2046"));
}

TEST_F(RealInput, ClickOnTheFirstPlatformsCaptionSelectsAndSendsItOnce) {
    click(the(&Members::wpc_Label), [this] { return board->working()[0] == 1; });
    EXPECT_THAT(support::checkedModes(window()), ElementsAre(1));
    EXPECT_THAT(support::shownColours(window()), ElementsAre(0, 1, 4, 15));
    EXPECT_TRUE(the(&Members::set_WPC).HasFocus());
    // Once it is selected a click changes nothing, as with every other caption.
    click(the(&Members::wpc_Label), [] { return true; });
    click(the(&Members::set_Stern), [this] { return board->working()[0] == 2; });
    EXPECT_THAT(sentFrames(),
                ElementsAre("81 C3 E7 FF 02 01 00*2046", "81 C3 E7 FF 02 02 00*2046"));
}

TEST_F(RealInput, ClicksOnTwoInputModesSendOneFrameEach) {
    click(the(&Members::set_Spike), [this] { return board->working()[0] == 4; });
    click(the(&Members::set_PinMame), [this] { return board->working()[0] == 0; });
    EXPECT_THAT(support::checkedModes(window()), ElementsAre(0));
    EXPECT_THAT(sentFrames(), ElementsAre("81 C3 E7 FF 02 04 00*2046", "81 C3 E7 FF 02 00*2047"));
}

TEST_F(RealInput, ClicksOnTheEnhancerChangeTheRecordAndSendNothing) {
    ASSERT_EQ(config.enhancer, 1);
    click(the(&Members::enhancer_CheckBox), [] { return config.enhancer == 0; });
    EXPECT_FALSE(the(&Members::enhancer_CheckBox).GetValue());
    click(the(&Members::enhancer_CheckBox), [] { return config.enhancer == 1; });
    EXPECT_TRUE(the(&Members::enhancer_CheckBox).GetValue());
    EXPECT_THAT(bus.calls(), IsEmpty());
}

TEST_F(RealInput, ArrowKeysAndEnterChooseAPreset) {
    wxChoice& choice = the(&Members::set_pal);
    choice.SetFocus();
    ASSERT_TRUE(runUntil([&] { return choice.HasFocus(); }));
    press(WXK_DOWN, [&] { return choice.GetSelection() == 1 || config.paletteIndex == 1; });
    ASSERT_TRUE(runUntil([] { return config.paletteIndex == 1; }));
    EXPECT_EQ(choice.GetSelection(), 1);
    EXPECT_EQ(board->working()[1], 1);
    EXPECT_THAT(sentFrames(), ElementsAre("81 C3 E7 FF 03 01 00*2046"));
    EXPECT_EQ(support::paintedPalette(window()), palette);
}

TEST_F(RealInput, ClickOnAColourButtonOpensTheDialogAndSendsThePickedColour) {
    dialogs.expectColour(wxColour(0x80, 0, 0), wxColour(0x12, 0x34, 0x56));
    click(the(&Members::set_col1), [this] { return board->palette()[3] == 0x12; });
    EXPECT_THAT(sentFrames(), ElementsAre("81 C3 E7 FF 04 00 01 "
                                          "00 00 00 12 34 56 FF 00 00 FF 00 FF 00 80 80 00 80 00 "
                                          "00 FF 00 00 FF FF 00 00 80 80 00 80 00 00 FF 40 40 40 "
                                          "80 80 80 80 80 00 FF FF 00 FF FF FF 00*1997"));
}

TEST_F(RealInput, DragOfTheSliderSendsEachPositionAndTheLastOneOnceMore) {
    wxSlider& slider = the(&Members::brightness_Slider);
    std::vector<int> positions;
    int changes = 0;
    slider.Bind(wxEVT_SCROLL_THUMBTRACK, [&](wxScrollEvent& event) {
        positions.push_back(slider.GetValue());
        event.Skip();
    });
    slider.Bind(wxEVT_SCROLL_CHANGED, [&](wxScrollEvent& event) {
        ++changes;
        event.Skip();
    });

    // The thumb, at its left end.
    slider.SetValue(slider.GetMin());
    const wxRect rect = slider.GetScreenRect();
    wxPoint point(rect.x + rect.height / 2, rect.y + rect.height / 2);
    moveTo(point);
    mouse.MouseDown();
    for (int step = 0; step < 10; ++step) {
        const std::size_t before = positions.size();
        point.x += 9;
        moveTo(point);
        ASSERT_TRUE(runUntil([&] { return positions.size() > before; })) << "step " << step;
    }
    mouse.MouseUp();
    ASSERT_TRUE(runUntil([&] { return changes > 0; }));

    EXPECT_EQ(changes, 1);
    std::vector<int> sent;
    std::vector<std::chrono::steady_clock::time_point> times;
    for (const simulator::Call& call : bus.calls()) {
        if (call.function == "libusb_bulk_transfer") {
            EXPECT_EQ(call.data.at(4), 0x08);
            sent.push_back(call.data.at(17));
            times.push_back(call.at);
        }
    }
    positions.push_back(slider.GetValue());
    EXPECT_EQ(sent, positions);
    EXPECT_GE(sent.size(), 11U);
    for (std::size_t i = 1; i < times.size(); ++i) {
        EXPECT_GE(times[i] - times[i - 1], std::chrono::milliseconds(50));
    }
    EXPECT_EQ(config.brightness, slider.GetValue());
}

}  // namespace
