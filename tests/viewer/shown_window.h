#ifndef LUMADOT_TESTS_VIEWER_SHOWN_WINDOW_H
#define LUMADOT_TESTS_VIEWER_SHOWN_WINDOW_H

#include <gmock/gmock.h>
#include <wx/uiaction.h>

#include <string>
#include <vector>

#include "tests/recording/dumps.h"
#include "tests/support/dialogs.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/toolkit.h"
#include "viewer/window.h"

/// The viewer's window on the screen.
class ShownWindow : public testing::Test {
protected:
    ShownWindow();
    ~ShownWindow() override;

    /// Opens a file with these bytes, and waits until all is known of it.
    viewer::Player& open(const dumps::Bytes& bytes, const char* name = "a_lumadot_dump.txt");
    viewer::Player& open(const std::string& text) { return open(dumps::bytesOf(text)); }
    void waitUntilRead();

    /// A key of a real keyboard, and what must come of it.
    void press(int key, const std::function<bool()>& happened, int modifiers = wxMOD_NONE);
    void click(const wxWindow& control, const std::function<bool()>& happened);

    std::uint64_t number() { return window.player()->number(); }
    std::filesystem::path path(const char* name) const { return folder.path() / name; }

    support::TemporaryFolder folder;
    support::Dialogs dialogs;
    wxUIActionSimulator input;
    viewer::Window& window = *new viewer::Window;
};

/// A text dump's frame of random digits from 0 to `highest`, and these.
std::string chanceText(std::uint32_t stampMs, unsigned seed, int highest,
                       std::vector<std::uint8_t>& digits);

/// What the X server shows of a window's client area: red, green, blue.
struct ScreenPixels {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> rgb;

    /// The part of it in the middle.
    std::vector<std::uint8_t> middle(int columns, int rows) const;
};
ScreenPixels screenOf(const wxWindow& window);

#endif
