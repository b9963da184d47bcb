#ifndef LUMADOT_TESTS_UI_CAPTURE_CAPTURE_WINDOW_H
#define LUMADOT_TESTS_UI_CAPTURE_CAPTURE_WINDOW_H

#include <wx/checkbox.h>
#include <wx/dirdlg.h>
#include <wx/weakref.h>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "device/interfaceUSB.h"
#include "tests/support/bus_log.h"
#include "tests/support/capture_rounds.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/toolkit.h"
#include "tests/support/window_test.h"

namespace support {

/// A window whose check box starts captures into folders of the test's own. The window may be
/// closed by the test.
class CaptureWindow : public WindowTest {
protected:
    static constexpr std::size_t TextFrame = 12 + 32 * 130 + 2;

    CaptureWindow() { dump_running = false; }
    ~CaptureWindow() override {
        if (frame) {
            frame->Destroy();
        }
        deleteClosedWindows();
        dump_running = false;
    }

    /// A controller set to this mode, and a window.
    void start(int mode = 1) {
        plugAt(mode);
        makeWindow();
    }
    std::shared_ptr<simulator::Controller> plugAt(int mode) {
        simulator::ControllerOptions options;
        options.settings[0] = static_cast<std::uint8_t>(mode);
        return plug(options);
    }
    void makeWindow() {
        frame = new MainFrame(nullptr);
        bus.clearCalls();
    }

    wxCheckBox& box() { return in(*frame, &Members::dump_CheckBox); }

    /// What the user's click on the box does.
    void tick() { click(true); }
    void untick() { click(false); }
    void click(bool checked) {
        box().SetValue(checked);
        EXPECT_TRUE(send(box(), wxEVT_CHECKBOX, checked ? 1 : 0));
    }

    /// The next dialog asks for the folder, and this is the answer; nothing: cancel.
    void choose(const std::optional<std::filesystem::path>& answer) {
        std::optional<wxString> path;
        if (answer) {
            path = wxString::FromUTF8(answer->string());
        }
        dialogs.expectFolder("Choose dump directory", wxDD_DEFAULT_STYLE | wxDD_DIR_MUST_EXIST,
                             path);
    }

    /// Frames in the folder's text files; a part of one fails the test.
    static std::size_t textFrames(const std::filesystem::path& place) {
        std::size_t frames = 0;
        for (const auto& entry : std::filesystem::directory_iterator(place)) {
            if (entry.path().extension() == ".txt") {
                EXPECT_EQ(entry.file_size() % TextFrame, 0U);
                frames += entry.file_size() / TextFrame;
            }
        }
        return frames;
    }

    /// All that the capture and what came in between had open is given back, and nobody used a
    /// handle that was not open.
    void expectGivenBack() const {
        EXPECT_EQ(bus.openHandles(), 0);
        EXPECT_EQ(bus.claimedInterfaces(), 0);
        EXPECT_EQ(MyLibusbDeviceHandle, nullptr);
        EXPECT_THAT(callLines(), testing::Not(testing::Contains(testing::HasSubstr("stale"))));
    }

    /// Calls that start like this, in the log.
    static std::ptrdiff_t countCalls(const std::string& start) {
        const Lines lines = callLines();
        return std::ranges::count_if(
            lines, [&](const std::string& line) { return line.starts_with(start); });
    }

    wxWeakRef<MainFrame> frame;
    TemporaryFolder folder;
    TemporaryFolder otherFolder;
    CaptureRounds rounds;
};

}  // namespace support

#endif
