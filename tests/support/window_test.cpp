#include "tests/support/window_test.h"

#include <wx/config.h>

#include <algorithm>
#include <bit>
#include <vector>

#include "device/interfaceUSB.h"
#include "tests/support/toolkit.h"
#include "ui/palette.h"

namespace support {

namespace {

bool process(wxWindow& source, wxCommandEvent&& event) {
    event.SetEventObject(&source);
    return source.GetEventHandler()->ProcessEvent(event);
}

}  // namespace

bool send(wxControl& control, wxEventType type, int value) {
    wxCommandEvent event(type, control.GetId());
    event.SetInt(value);
    return process(control, std::move(event));
}

bool send(wxSlider& slider, wxEventType type) {
    return process(slider, wxScrollEvent(type, slider.GetId(), slider.GetValue(), wxHORIZONTAL));
}

bool send(wxFrame& frame, const wxMenuItem& item) {
    return process(frame, wxCommandEvent(wxEVT_MENU, item.GetId()));
}

WindowTest::WindowTest() {
    bus.reset();
    wxConfigBase::Get()->DeleteAll();
    config = std::bit_cast<configDescriptor>(FactorySettings);
    palette = Vga;
    std::ranges::fill(versionString, '\0');
    std::ranges::fill(UIDString, '\0');
    MyLibusbDeviceHandle = nullptr;
}

WindowTest::~WindowTest() {
    destroy();
    EXPECT_EQ(bus.openHandles(), 0);
    EXPECT_EQ(bus.claimedInterfaces(), 0);
}

MainFrame& WindowTest::make() {
    frame_ = new MainFrame(nullptr);
    return *frame_;
}

MainFrame& WindowTest::open() {
    make();
    bus.clearCalls();
    return *frame_;
}

MainFrame& WindowTest::show() {
    open();
    showAndWait(*frame_);
    return *frame_;
}

void WindowTest::destroy() {
    if (frame_ != nullptr) {
        frame_->Destroy();
        deleteClosedWindows();
        frame_ = nullptr;
    }
}

std::vector<int> checkedModes(MainFrameBaseClass& frame) {
    std::vector<int> modes;
    for (std::size_t i = 0; i < ModeButtons.size(); ++i) {
        if (in(frame, ModeButtons[i]).GetValue()) {
            modes.push_back(static_cast<int>(i));
        }
    }
    return modes;
}

std::vector<int> shownColours(MainFrameBaseClass& frame) {
    std::vector<int> shown;
    for (std::size_t i = 0; i < ColourButtons.size(); ++i) {
        if (in(frame, ColourButtons[i]).IsShown()) {
            shown.push_back(static_cast<int>(i));
        }
    }
    return shown;
}

std::array<std::uint8_t, 48> paintedPalette(MainFrameBaseClass& frame) {
    std::array<std::uint8_t, 48> bytes{};
    auto* next = bytes.data();
    for (const auto button : ColourButtons) {
        const wxColour colour = in(frame, button).GetBackgroundColour();
        *next++ = colour.Red();
        *next++ = colour.Green();
        *next++ = colour.Blue();
    }
    return bytes;
}

}  // namespace support
