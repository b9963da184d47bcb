// The window under a real keyboard and a real mouse.

#include <wx/dnd.h>
#include <wx/filedlg.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <thread>

#include "recording/error.h"
#include "tests/viewer/shown_window.h"

namespace {

using support::runUntil;
using testing::HasSubstr;
using testing::StartsWith;
using namespace dumps::joining;

class Keys : public ShownWindow {
protected:
    viewer::Player& openFrames(int count, std::uint32_t ms = 100) {
        std::string text;
        for (int i = 0; i < count; ++i) {
            text += dumps::plainText(static_cast<std::uint32_t>(i) * ms, '1');
        }
        return open(text);
    }
};

TEST_F(Keys, MoveThroughTheFrames) {
    openFrames(30);
    press(WXK_RIGHT, [this] { return number() == 1; });
    press(WXK_END, [this] { return number() == 29; });
    press(WXK_LEFT, [this] { return number() == 28; });
    press(WXK_PAGEUP, [this] { return number() == 18; });
    press(WXK_PAGEDOWN, [this] { return number() == 28; });
    press(WXK_HOME, [this] { return number() == 0; });
    press(
        WXK_RIGHT, [this] { return number() == 1; }, wxMOD_ALT);
    EXPECT_EQ(window.playBar().slider->GetValue(), 1);
    EXPECT_EQ(window.playBar().time->GetLabel(), "0:00:00.100 of 0:00:02.900");
    EXPECT_EQ(window.GetStatusBar()->GetStatusText(1), "Time stamp 0x00000064");
    EXPECT_EQ(window.playBar().frames->GetLabel(), "of 30");
}

/// Where the thumb of a slider is seen, which is not in the middle: 0 left, 1 right.
double thumbOf(const wxSlider& slider) {
    const ScreenPixels screen = screenOf(slider);
    const int aboveTrough = screen.height / 2 - 5;
    const auto* const row = &screen.rgb[static_cast<std::size_t>(3 * aboveTrough * screen.width)];
    const auto* const background = row + 3 * (screen.width / 2);
    int sum = 0;
    int count = 0;
    for (int x = 0; x < screen.width; ++x) {
        if (!std::equal(background, background + 3, row + 3 * x)) {
            sum += x;
            ++count;
        }
    }
    return count == 0 ? 0.5 : static_cast<double>(sum) / count / screen.width;
}

TEST_F(Keys, TheSliderIsSeenWhereTheFrameIs) {
    openFrames(30);
    press(WXK_END, [&] { return thumbOf(*window.playBar().slider) > 0.95; });
    press(WXK_HOME, [&] { return thumbOf(*window.playBar().slider) < 0.05; });
}

TEST_F(Keys, AFrameIsGoneToByItsNumber) {
    openFrames(30);
    press('G', [this] { return !window.canvas().HasFocus(); });
    input.Text("17");
    press(WXK_TAB, [this] { return number() == 17; });
}

TEST_F(Keys, SpacePlaysAndPauses) {
    openFrames(30, 20);
    press(WXK_SPACE, [this] { return number() > 2; });
    EXPECT_EQ(window.playBar().play->GetLabel(), "&Pause");
    press(WXK_SPACE, [this] { return !window.player()->isPlaying(); });
    EXPECT_EQ(window.playBar().play->GetLabel(), "&Play");
    click(*window.playBar().play, [this] { return number() == 29; });
    EXPECT_TRUE(runUntil([this] { return !window.player()->isPlaying(); }));
}

TEST_F(Keys, LoopSpeedAndMarks) {
    viewer::Player& player = openFrames(30, 20);
    press('L', [&] { return player.loops(); });
    EXPECT_TRUE(window.playBar().loop->GetValue());
    press(WXK_UP, [&] { return player.speed() == 2; });
    press(WXK_DOWN, [&] { return player.speed() == 1; });
    press(WXK_RIGHT, [this] { return number() == 1; });
    press('I', [&] { return player.markIn() == 1U; });
    press(WXK_RIGHT, [this] { return number() == 2; });
    press('O', [&] { return player.markOut() == 2U; });
    EXPECT_EQ(window.playBar().marks->GetLabel(), "Frames 1 to 2");
    int starts = 0;
    std::uint64_t before = number();
    press(WXK_SPACE, [&] {
        starts += number() < before ? 1 : 0;
        before = number();
        return starts == 3;
    });
    press(WXK_BACK, [&] { return !player.markIn() && !player.markOut(); });
    EXPECT_EQ(window.playBar().marks->GetLabel(), "All frames");
}

TEST_F(Keys, TheSliderIsDraggedAndTheButtonsAreClicked) {
    openFrames(30);
    click(*window.playBar().next, [this] { return number() == 1; });
    click(*window.playBar().last, [this] { return number() == 29; });
    click(*window.playBar().back, [this] { return number() == 28; });
    click(*window.playBar().first, [this] { return number() == 0; });
    const wxRect rect = window.playBar().slider->GetScreenRect();
    const wxPoint thumb(rect.x + rect.height / 2, rect.y + rect.height / 2);
    input.MouseMove(thumb);
    input.MouseDown();
    input.MouseMove(thumb + wxPoint(rect.width / 4, 0));
    input.MouseMove(thumb + wxPoint(rect.width / 2, 0));
    EXPECT_TRUE(runUntil([this] { return number() > 10; }));
    input.MouseUp();
    EXPECT_LT(number(), 20U);
}

TEST_F(Keys, AFileIsOpenedByTheDialogAndNamedByTheTitle) {
    EXPECT_EQ(window.GetTitle(), "LUMADOT Viewer");
    support::writeFile(path("050324_140709_lumadot_dump.txt"), dumps::bytesOf(dumps::plainText(1)));
    dialogs.expectFile(
        {"Open a Recording", "Recordings (*.txt;*.raw)|*.txt;*.raw|All files|*", wxFD_OPEN, ""},
        path("050324_140709_lumadot_dump.txt").string());
    press(
        'O', [this] { return window.player() != nullptr; }, wxMOD_CONTROL);
    EXPECT_EQ(window.GetTitle(), "050324_140709_lumadot_dump.txt - LUMADOT Viewer");
}

/// Another program's window, as far as the viewer knows: what is dragged from it is this file.
class FileManager : public wxFrame {
public:
    explicit FileManager(const std::filesystem::path& file)
        : wxFrame(nullptr, wxID_ANY, "Files", wxPoint(20, 880), wxSize(200, 100)) {
        auto* const icon = new wxPanel(this);
        icon->Bind(wxEVT_LEFT_DOWN, [icon, file](auto&) {
            wxFileDataObject dragged;
            dragged.AddFile(file.string());
            wxDropSource source(dragged, icon);
            source.DoDragDrop(wxDrag_CopyOnly);
        });
    }
};

TEST_F(Keys, AFileThatIsDroppedIsOpened) {
    support::writeFile(path("b_lumadot_dump.txt"), dumps::bytesOf(dumps::plainText(1)));
    auto* const files = new FileManager(path("b_lumadot_dump.txt"));
    support::showAndWait(*files);
    const auto at = [](const wxRect& rect) {
        return std::to_string(rect.x + rect.width / 2) + " " +
               std::to_string(rect.y + rect.height / 2);
    };
    // The drag has a loop of its own: somebody else moves the mouse, again when a busy machine has
    // not seen all of it.
    const std::string script =
        "timeout 60 sh -c 'until xdotool search --name ^b_lumadot_dump; do xdotool mousemove " +
        at(files->GetScreenRect()) +
        " mousedown 1 sleep 0.2 mousemove_relative 20 0 sleep 0.1 mousemove_relative 20 0"
        " sleep 0.1 mousemove " +
        at(window.canvas().GetScreenRect()) +
        " sleep 0.2 mousemove_relative 5 5 sleep 0.2 mouseup 1 sleep 0.3; done' >/dev/null 2>&1";
    std::thread user([&] { EXPECT_EQ(std::system(script.c_str()), 0); });
    EXPECT_TRUE(runUntil([this] { return window.player() != nullptr; }));
    user.join();
    files->Destroy();
    EXPECT_THAT(window.GetTitle().utf8_string(), StartsWith("b_lumadot_dump.txt"));
}

TEST_F(Keys, AFileOfSeveralGiBIsLookedAtWhileItIsRead) {
    constexpr std::uintmax_t Size = std::uintmax_t{3} << 30U;
    support::writeFile(path("a_lumadot_dump.raw"),
                       dumps::rawHeader() + dumps::plainRaw(5, 3, 0xFF));
    std::filesystem::resize_file(path("a_lumadot_dump.raw"), Size);  // Sparse: dark frames.
    const auto start = std::chrono::steady_clock::now();
    window.open(path("a_lumadot_dump.raw"));
    EXPECT_TRUE(runUntil([this] { return window.indexBar().gauge->IsShownOnScreen(); }));
    EXPECT_THAT(window.player()->entries(), testing::Each(15));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
    EXPECT_FALSE(window.player()->state().indexed);
    EXPECT_TRUE(runUntil([this] { return window.indexBar().gauge->GetValue() > 0; }));
    EXPECT_EQ(window.indexBar().text->GetLabel(), "Reading the recording");
    press(WXK_RIGHT, [this] { return number() == 1; });
    click(*window.indexBar().stop, [this] { return window.player()->state().stopped; });
    EXPECT_EQ(window.indexBar().text->GetLabel(), "Stopped");
    press(
        WXK_RIGHT, [this] { return number() == 2; }, wxMOD_ALT);
}

TEST_F(Keys, WhatIsNoRecordingLeavesTheOneThatIsShown) {
    openFrames(3);
    support::writeFile(path("song.txt"), dumps::bytesOf("la la la\n"));
    window.open(path("song.txt"));
    EXPECT_THAT(window.message().utf8_string(),
                testing::AllOf(HasSubstr("song.txt is no recording"),
                               HasSubstr("Open a file that a recording has written")));
    EXPECT_THAT(window.GetTitle().utf8_string(), StartsWith("a_lumadot_dump.txt"));
    press(WXK_RIGHT, [this] { return number() == 1; });
}

TEST_F(Keys, DamagedPlacesAndGapsAreListedAndGoneTo) {
    using dumps::plainText;
    open(plainText(0) + plainText(10) + plainText(20).substr(0, 402) + plainText(30) +
         plainText(5030) + plainText(5040));
    EXPECT_EQ(window.GetStatusBar()->GetStatusText(2), "1 damaged place, 1 gap");
    ASSERT_TRUE(runUntil([this] { return window.places().places().size() == 2; }));
    EXPECT_EQ(window.places().cell(0, 0), "Damaged");
    EXPECT_THAT(window.places().cell(0, 1).utf8_string(), StartsWith("Byte "));
    EXPECT_EQ(window.places().cell(1, 1), "After frame 2");
    EXPECT_EQ(window.places().cell(1, 2), "5.0 s without a frame");
    press('D', [this] { return number() == 2; });
    EXPECT_EQ(window.places().selected(), 0U);
    press(WXK_HOME, [this] { return number() == 0; });
    press('D', [this] { return number() == 2 && window.places().selected() == 1U; });
}

TEST_F(Keys, AFileThatGrowsIsFollowed) {
    openFrames(3);
    const auto grow = [this](std::uint32_t stamp) {
        std::ofstream(path("a_lumadot_dump.txt"), std::ios::app | std::ios::binary)
            << dumps::plainText(stamp, '3');
    };
    grow(300);
    EXPECT_TRUE(runUntil([this] { return window.player()->state().frames == 4; }));
    EXPECT_EQ(number(), 0U);
    press('F', [this] { return number() == 3; });
    EXPECT_TRUE(window.GetMenuBar()->IsChecked(viewer::idOf(viewer::Command::FollowEnd)));
    grow(400);
    EXPECT_TRUE(runUntil([this] { return number() == 4; }));
    EXPECT_THAT(window.player()->entries(), testing::Each(15));
    press(WXK_LEFT, [this] { return number() == 3; });
    EXPECT_FALSE(window.player()->followsEnd());
}

TEST_F(Keys, ARawFileOfSeveralModesAsksForOne) {
    open(dumps::rawHeader(4) + dumps::plainRaw(5, 4, 0xFF), "a_lumadot_dump.raw");
    EXPECT_THAT(window.message().utf8_string(),
                testing::AllOf(HasSubstr("9 (Capcom), 10 (Alvin G)"),
                               HasSubstr("Choose it under \"Input mode\".")));
    window.lookBar().inputMode->SetFocus();
    EXPECT_TRUE(runUntil([this] { return window.lookBar().inputMode->HasFocus(); }));
    press(WXK_END, [this] { return !window.player()->entries().empty(); });
    EXPECT_EQ(window.message(), "");
}

TEST_F(Keys, ARawFileOfTheXlBoardSaysWhatItIsMissing) {
    support::writeFile(path("x_lumadot_dump.txt"), dumps::bytesOf(dumps::plainText(5, '1', true)));
    open(dumps::rawHeader(4) + dumps::plainRaw(5, 4, 0xFF), "x_lumadot_dump.raw");
    EXPECT_THAT(window.message().utf8_string(), HasSubstr("it is missing the second"));
}

TEST_F(Keys, EveryMenuItemWithoutARecordingDoesNoHarm) {
    for (int i = 0; i <= static_cast<int>(viewer::Command::About); ++i) {
        const auto command = static_cast<viewer::Command>(i);
        using enum viewer::Command;
        if (command != Open && command != Quit && command != PaletteFile && command != Keys &&
            command != About) {
            window.perform(command);
        }
    }
    EXPECT_EQ(window.player(), nullptr);
}

}  // namespace
