// The window's menus under a real keyboard.

#include <wx/filefn.h>
#include <wx/uiaction.h>
#include <wx/utils.h>

#include <vector>

#include "tests/simulator/window/shown_window.h"
#include "tests/support/temporary_folder.h"

namespace {

using simulator::UsbDevice;
using simulator::usbip::Direction;
using support::runUntil;

class Keys : public ShownWindow {
protected:
    void press(int key, int modifiers = wxMOD_NONE) { keyboard.Char(key, modifiers); }
    void choose(char letter) { press(letter, wxMOD_CONTROL); }
    /// Opens a menu by its letter, a menu inside it by another one, and chooses an item there.
    void choose(char menu, char inside, char item) {
        int opened = 0;
        frame.Bind(wxEVT_MENU_OPEN, [&opened](wxMenuEvent& event) {
            ++opened;
            event.Skip();
        });
        press(menu, wxMOD_ALT);
        EXPECT_TRUE(runUntil([&] { return opened == 1; }));
        press(inside);
        EXPECT_TRUE(runUntil([&] { return opened == 2; }));
        press(item);
    }

    /// What becomes at once of a transfer of 64 bytes: its status; nothing: it waits.
    std::optional<std::int32_t> transfer(Direction direction) {
        return server.withDevice([direction](UsbDevice& device) -> std::optional<std::int32_t> {
            const auto hold = device.attach();
            device.controller().receive(packets::command({0x11}));
            device.submit({.sequence = 1,
                           .direction = direction,
                           .endpoint = 1,
                           .length = 64,
                           .data = simulator::usbip::Bytes(direction == Direction::Out ? 64 : 0)});
            const auto completed = device.takeCompleted();
            device.detach(hold.value());
            return completed.empty() ? std::nullopt : std::optional(completed[0].status);
        });
    }

    wxUIActionSimulator keyboard;
};

TEST_F(Keys, ChooseTheBoard) {
    choose('2');
    EXPECT_TRUE(
        becomes([](UsbDevice& device) { return device.options().board == simulator::Board::Xl; }));
    choose('1');
    EXPECT_TRUE(becomes(
        [](UsbDevice& device) { return device.options().board == simulator::Board::Standard; }));
}

TEST_F(Keys, ChooseTheOlderLayout) {
    choose('O');
    EXPECT_TRUE(becomes([](UsbDevice& device) {
        return device.options().layout == simulator::SettingsLayout::Older;
    }));
}

TEST_F(Keys, UnplugAndPlugIn) {
    choose('P');
    EXPECT_TRUE(becomes([](UsbDevice& device) { return !device.pluggedIn(); }));
    choose('P');
    EXPECT_TRUE(becomes([](UsbDevice& device) { return device.pluggedIn(); }));
}

TEST_F(Keys, PlugInWhatAFaultHasUnplugged) {
    server.withDevice([](UsbDevice& device) { device.unplug(); });
    EXPECT_TRUE(runUntil([this] { return frame.GetStatusBar()->GetStatusText(2) == "Unplugged"; }));
    choose('P');
    EXPECT_TRUE(becomes([](UsbDevice& device) { return device.pluggedIn(); }));
}

TEST_F(Keys, RefuseTheNextUploadFrame) {
    choose('R');
    EXPECT_TRUE(becomes([](UsbDevice& device) {
        device.controller().receive(packets::openUpload("a"));
        return device.controller().takeReply() == simulator::Packet{0x01};
    }));
}

TEST_F(Keys, StallTheNextTransfers) {
    EXPECT_EQ(transfer(Direction::Out), 0);
    choose('T');
    EXPECT_TRUE(
        runUntil([this] { return transfer(Direction::Out) == simulator::usbip::result::Stall; }));
    EXPECT_EQ(transfer(Direction::In), 0);
    choose('L');
    EXPECT_TRUE(
        runUntil([this] { return transfer(Direction::In) == simulator::usbip::result::Stall; }));
    EXPECT_EQ(transfer(Direction::In), 0);
}

TEST_F(Keys, SlowDownThroughTheMenu) {
    EXPECT_EQ(transfer(Direction::Out), 0);
    choose('F', 'D', '5');
    EXPECT_TRUE(runUntil([this] { return transfer(Direction::Out) == std::nullopt; }));
}

TEST_F(Keys, ChooseTheFrameRateThroughTheMenu) {
    choose('C', 'F', '1');
    EXPECT_TRUE(
        becomes([](UsbDevice& device) { return device.controller().frameInterval() == 1000; }));
}

TEST_F(Keys, AnotherBoardKeepsTheFrameRate) {
    frame.setFrameInterval(33);
    choose('2');
    EXPECT_TRUE(becomes([](UsbDevice& device) {
        return device.options().board == simulator::Board::Xl &&
               device.controller().frameInterval() == 33;
    }));
}

TEST_F(Keys, MakeTheDotsLargerAndSmaller) {
    const std::size_t scale = frame.canvas().scale();
    choose('-');
    EXPECT_TRUE(runUntil([&] { return frame.canvas().scale() == scale - 1; }));
    press('+', wxMOD_CONTROL | wxMOD_SHIFT);
    EXPECT_TRUE(runUntil([&] { return frame.canvas().scale() == scale; }));
}

TEST_F(Keys, SaveAPicture) {
    const support::TemporaryFolder folder;
    const wxString before = wxGetCwd();
    ASSERT_TRUE(wxSetWorkingDirectory(folder.path().string()));
    receive(packets::image());
    receive(packets::command({0x08, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 255}));
    EXPECT_TRUE(runUntil([this] { return frame.canvas().picture().GetGreen(0, 0) == 0; }));
    // The dialog has an event loop of its own: the keys come from there.
    wxTimer answer;
    answer.Bind(wxEVT_TIMER, [&](auto&) {
        if (!frame.IsActive()) {
            press(WXK_RETURN);
        }
    });
    answer.Start(500);
    choose('S');
    const std::string file = (folder.path() / "display.png").string();
    EXPECT_TRUE(runUntil([&] { return wxFileExists(file); }));
    answer.Stop();
    wxImage saved;
    EXPECT_TRUE(runUntil([&] { return saved.LoadFile(file); }));
    EXPECT_EQ(saved.GetSize(), wxSize(768, 192));
    EXPECT_EQ(saved.GetRed(3, 3), 128);  // Entry 9 of the first palette: violet.
    EXPECT_EQ(saved.GetGreen(3, 3), 0);
    EXPECT_EQ(saved.GetBlue(3, 3), 128);
    wxSetWorkingDirectory(before);
}

}  // namespace
