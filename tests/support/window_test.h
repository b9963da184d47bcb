#ifndef LUMADOT_TESTS_SUPPORT_WINDOW_TEST_H
#define LUMADOT_TESTS_SUPPORT_WINDOW_TEST_H

#include <gmock/gmock.h>

#include <array>
#include <cstdint>
#include <memory>

#include "simulator/bus.h"
#include "tests/support/dialogs.h"
#include "tests/support/members.h"
#include "ui/MainFrame.h"

namespace support {

/// The VGA palette, which every start begins with.
inline constexpr std::array<std::uint8_t, 48> Vga = {
    0x00, 0x00, 0x00, 0x80, 0x00, 0x00, 0xFF, 0x00, 0x00, 0xFF, 0x00, 0xFF, 0x00, 0x80, 0x80, 0x00,
    0x80, 0x00, 0x00, 0xFF, 0x00, 0x00, 0xFF, 0xFF, 0x00, 0x00, 0x80, 0x80, 0x00, 0x80, 0x00, 0x00,
    0xFF, 0x40, 0x40, 0x40, 0x80, 0x80, 0x80, 0x80, 0x80, 0x00, 0xFF, 0xFF, 0x00, 0xFF, 0xFF, 0xFF};

/// The settings record before any controller has been read.
inline constexpr std::array<std::uint8_t, 23> FactorySettings = {
    0, 0, 15, 10, 15, 12, 15, 0, 15, 15, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 30};

/// Sends the event that the user's action on the control sends, `value` being its selection or
/// checked state. Returns whether a handler took it without skipping it.
bool send(wxControl& control, wxEventType type, int value = 0);
/// The same for the slider, whose value has already been set.
bool send(wxSlider& slider, wxEventType type);
/// The same for a menu item.
bool send(wxFrame& frame, const wxMenuItem& item);

/// Each test begins as the program does: an empty bus, the globals' first values, no geometry kept
/// from before, no window; and it leaves none of them behind, nor a device open.
class WindowTest : public testing::Test {
protected:
    WindowTest();
    ~WindowTest() override;

    /// Puts a controller on the bus.
    std::shared_ptr<simulator::Controller> plug(simulator::ControllerOptions options = {}) {
        return bus.plugController(std::move(options));
    }

    /// Makes the window, hidden.
    MainFrame& make();
    /// The same, and forgets the calls that this took.
    MainFrame& open();
    /// Makes the window and waits until it is on the screen.
    MainFrame& show();
    /// Destroys the window, as the toolkit does after it was closed.
    void destroy();

    MainFrame& window() { return *frame_; }
    /// The window's member that a pointer like &Members::set_Stern names.
    template <typename Control>
    Control& the(Control* MainFrameBaseClass::*member) {
        return in(*frame_, member);
    }

    simulator::Bus& bus = simulator::Bus::instance();
    Dialogs dialogs;

private:
    MainFrame* frame_ = nullptr;
};

/// The mode numbers of the radio buttons that are checked.
std::vector<int> checkedModes(MainFrameBaseClass& frame);
/// The numbers of the colour buttons that are shown.
std::vector<int> shownColours(MainFrameBaseClass& frame);
/// The colours of the sixteen buttons, as palette bytes.
std::array<std::uint8_t, 48> paintedPalette(MainFrameBaseClass& frame);

}  // namespace support

#endif
