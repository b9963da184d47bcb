// Exports through the window: the dialog, the work, and what is written.

#include <cstdlib>
#include <thread>

#include "tests/pictures/decoded.h"
#include "tests/viewer/shown_window.h"
#include "viewer/export_dialog.h"

namespace {

using support::runUntil;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;
using viewer::ExportDialog;
using viewer::ExportKind;

class Export : public ShownWindow {
protected:
    /// Answers the dialog as a user who enters this.
    void expectExport(ExportKind kind, const std::function<void(ExportDialog&)>& enter = {}) {
        dialogs.expect([=](wxDialog& shown) {
            auto& dialog = dynamic_cast<ExportDialog&>(shown);
            for (unsigned i = 0; i < viewer::ExportKinds.size(); ++i) {
                if (viewer::ExportKinds[i].kind == kind) {
                    dialog.kind->SetSelection(static_cast<int>(i));
                }
            }
            wxCommandEvent chosen(wxEVT_CHOICE, dialog.kind->GetId());
            dialog.kind->ProcessWindowEvent(chosen);
            if (enter) {
                enter(dialog);
            }
            return wxID_OK;
        });
    }
    void exportNow() {
        const int before = dialogs.seen();
        input.Char('E', wxMOD_CONTROL);
        EXPECT_TRUE(runUntil([&] { return dialogs.seen() > before; }));
    }
    std::vector<std::string> filesInFolder() {
        std::vector<std::string> names;
        for (const auto& file : std::filesystem::directory_iterator(folder.path())) {
            names.push_back(file.path().filename().string());
        }
        return names;
    }
    std::string words() { return window.message().utf8_string(); }

    std::string fourFrames() {
        std::string text;
        for (unsigned i = 0; i < 4; ++i) {
            text += chanceText(100 + 50 * i, i, 3, digits[i]);
        }
        return text;
    }
    /// What square dots of 2 x 2 pixels in preset 8 make of a frame.
    decoded::Bytes squares(std::size_t frame) const {
        constexpr std::uint8_t Entry[] = {0, 1, 4, 15};
        decoded::Bytes rgb;
        for (std::size_t y = 0; y < 64; ++y) {
            for (std::size_t x = 0; x < 256; ++x) {
                const std::uint8_t entry = Entry[digits[frame][y / 2 * 128 + x / 2]];
                rgb.push_back(static_cast<std::uint8_t>(17 * entry));
                rgb.push_back(static_cast<std::uint8_t>(9 * entry));
                rgb.push_back(0);
            }
        }
        return rgb;
    }

    std::vector<std::uint8_t> digits[4];
};

TEST_F(Export, AnAnimatedGifOfThePartBetweenTheMarks) {
    open(fourFrames());
    window.perform(viewer::Command::SquareDots);
    press(WXK_RIGHT, [this] { return number() == 1; });
    press('I', [this] { return window.player()->markIn().has_value(); });
    press(WXK_RIGHT, [this] { return number() == 2; });
    press('O', [this] { return window.player()->markOut().has_value(); });
    expectExport(ExportKind::Gif, [](ExportDialog& dialog) { dialog.scale->SetValue(2); });
    exportNow();
    EXPECT_THAT(words(), StartsWith("Wrote 2 frames to "));
    const decoded::Image gif = decoded::image(path("a_lumadot_dump.gif"));
    EXPECT_THAT(gif.timesMs, ElementsAre(50, 50));
    EXPECT_EQ(gif.repeats, 0);
    ASSERT_EQ(gif.frames.size(), 2U);
    EXPECT_EQ(gif.frames[0], squares(1));
    EXPECT_EQ(gif.frames[1], squares(2));
    press(WXK_LEFT, [this] { return number() == 1; });  // The keys go to the display again.
}

TEST_F(Export, APictureOfTheFrameThatIsShown) {
    open(fourFrames());
    window.perform(viewer::Command::SquareDots);
    press(WXK_END, [this] { return number() == 3; });
    expectExport(ExportKind::Picture, [](ExportDialog& dialog) { dialog.scale->SetValue(2); });
    exportNow();
    EXPECT_THAT(words(), StartsWith("Wrote 1 frame to "));
    EXPECT_EQ(decoded::image(path("a_lumadot_dump.png")).frames.at(0), squares(3));
}

TEST_F(Export, NumberedPicturesAndAContactSheet) {
    open(fourFrames());
    expectExport(ExportKind::Pictures, [](ExportDialog& dialog) { dialog.scale->SetValue(1); });
    exportNow();
    EXPECT_TRUE(std::filesystem::exists(path("a_lumadot_dump-000003.png")));
    expectExport(ExportKind::Sheet, [](ExportDialog& dialog) {
        dialog.scale->SetValue(1);
        dialog.columns->SetValue(3);
    });
    exportNow();
    const decoded::Image sheet = decoded::image(path("a_lumadot_dump.png"));
    EXPECT_EQ(sheet.width, 3U * 128);
    EXPECT_EQ(sheet.height, 2U * 32);
}

TEST_F(Export, ACutTextDumpAndARawDumpOfAMode) {
    const std::string text = fourFrames();
    open(text);
    expectExport(ExportKind::Text, [this](ExportDialog& dialog) {
        EXPECT_EQ(dialog.file->GetValue(), path("a_lumadot_dump-part.txt").string());
        dialog.from->SetValue(2);
    });
    exportNow();
    EXPECT_EQ(support::readFile(path("a_lumadot_dump-part.txt")),
              dumps::bytesOf(text.substr(text.size() / 2)));
    expectExport(ExportKind::Raw, [this](ExportDialog& dialog) {
        EXPECT_TRUE(dialog.mode->IsEnabled());
        dialog.file->SetValue(path("cut.raw").string());
    });
    exportNow();
    EXPECT_EQ(std::filesystem::file_size(path("cut.raw")), 8U + 4 * (4 + 3 * 512));
}

TEST_F(Export, AFolderThatDoesNotTakeItIsNamed) {
    open(fourFrames());
    expectExport(ExportKind::Gif, [this](ExportDialog& dialog) {
        dialog.file->SetValue(path("missing/x.gif").string());
    });
    exportNow();
    EXPECT_THAT(words(), testing::AllOf(HasSubstr("missing/x.gif"), HasSubstr("Check the folder")));
}

TEST_F(Export, CancelledItLeavesNothingBehind) {
    std::string text;
    std::vector<std::uint8_t> some;
    for (unsigned i = 0; i < 300; ++i) {
        text += chanceText(100 * i, i, 3, some);
    }
    open(text);
    expectExport(ExportKind::Gif, [](ExportDialog& dialog) { dialog.scale->SetValue(24); });
    // A user who presses Escape when the progress can be seen.
    constexpr const char* Script =
        "timeout 60 sh -c 'seen() { xdotool search --onlyvisible --name ^Export$; };"
        "until seen; do sleep 0.05; done; while seen; do xdotool key Escape; sleep 0.2; done' "
        ">/dev/null 2>&1";
    std::thread user([] { EXPECT_EQ(std::system(Script), 0); });
    exportNow();
    user.join();
    EXPECT_EQ(words(), "The export was cancelled; nothing was written.");
    EXPECT_THAT(filesInFolder(), ElementsAre("a_lumadot_dump.txt"));
}

TEST_F(Export, TheRecordingItselfIsNotWrittenOver) {
    open(fourFrames());
    ExportDialog::Offer offer;
    offer.recording = path("a_lumadot_dump.txt");
    offer.part = {0, 3};
    offer.lastFrame = 3;
    ExportDialog dialog(&window, offer);
    dialog.file->SetValue(path("a_lumadot_dump.txt").string());
    dialogs.expectMessage("This is the recording itself. Enter another name.", "Export");
    wxCommandEvent pressed(wxEVT_BUTTON, wxID_OK);
    dialog.ProcessWindowEvent(pressed);
}

}  // namespace
