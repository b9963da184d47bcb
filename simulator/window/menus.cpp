#include "simulator/window/menus.h"

#include <wx/aboutdlg.h>

#include <utility>

#include "simulator/server/descriptors.h"
#include "simulator/window/frame.h"

namespace simulator {

namespace {

using What = TransferFault::What;

struct Choice {
    const char* label;
    std::uint32_t ms;
};

constexpr Choice Slownesses[] = {{"&Not at All", 0},
                                 {"By a &Tenth of a Second", 100},
                                 {"By &1 Second", 1000},
                                 {"By &5 Seconds", 5000}};

constexpr Choice FrameIntervals[] = {{"As &Fast as Asked", 0},
                                     {"&60 a Second", 16},
                                     {"&30 a Second", 33},
                                     {"1&0 a Second", 100},
                                     {"&1 a Second", 1000}};

void check(wxMenuItem& item, bool checked) {
    if (item.IsChecked() != checked) {
        item.Check(checked);
    }
}

void about() {
    wxAboutDialogInfo info;
    info.SetName("LUMADOT Simulator");
    info.SetVersion(LUMADOT_VERSION);
    info.SetDescription("A LUMADOT display controller without the hardware.");
    wxAboutBox(info);
}

}  // namespace

Menus::Menus(Frame& frame, Server& server) : frame_(frame), server_(server) {
    auto* const bar = new wxMenuBar;
    bar->Append(controllerMenu(), "&Controller");
    bar->Append(faultMenu(), "&Faults");
    bar->Append(displayMenu(), "&Display");
    bar->Append(helpMenu(), "&Help");
    frame_.SetMenuBar(bar);
}

void Menus::show(const UsbDevice& device) { check(*pluggedIn_, device.pluggedIn()); }

wxMenuItem* Menus::add(wxMenu& menu, const wxString& label, wxItemKind kind, Action action) {
    wxMenuItem* const item = menu.Append(wxID_ANY, label, "", kind);
    frame_.Bind(
        wxEVT_MENU, [action = std::move(action)](auto&) { action(); }, item->GetId());
    return item;
}

wxMenuItem* Menus::addDevice(wxMenu& menu, const wxString& label,
                             std::function<void(UsbDevice&)> action) {
    return add(menu, label, wxITEM_NORMAL,
               [this, action = std::move(action)] { server_.withDevice(action); });
}

wxMenu* Menus::controllerMenu() {
    auto* const menu = new wxMenu;
    const auto replace = [this] {
        frame_.replace(xl_->IsChecked() ? Board::Xl : Board::Standard,
                       olderLayout_->IsChecked() ? SettingsLayout::Older : SettingsLayout::Newer);
    };
    const auto options = server_.inspect([](const UsbDevice& device) { return device.options(); });
    add(*menu, "&Standard Board, 128 x 32\tCtrl+1", wxITEM_RADIO, replace);
    xl_ = add(*menu, "&XL Board, 192 x 64\tCtrl+2", wxITEM_RADIO, replace);
    if (options.board == Board::Xl) {
        xl_->Check();
    }
    menu->AppendSeparator();
    olderLayout_ = add(*menu, "&Older Firmware Layout\tCtrl+O", wxITEM_CHECK, replace);
    olderLayout_->Check(options.layout == SettingsLayout::Older);
    menu->AppendSeparator();
    pluggedIn_ = add(*menu, "&Plugged In\tCtrl+P", wxITEM_CHECK, [this] {
        const bool in = pluggedIn_->IsChecked();
        server_.withDevice([in](UsbDevice& device) { in ? device.plugIn() : device.unplug(); });
    });
    menu->AppendSubMenu(frameRateMenu(), "&Frame Rate");
    menu->AppendSeparator();
    add(*menu, "&Quit\tCtrl+Q", wxITEM_NORMAL, [this] { frame_.Close(); });
    return menu;
}

wxMenu* Menus::faultMenu() {
    auto* const menu = new wxMenu;
    addDevice(*menu, "&Refuse the Next Upload Frame\tCtrl+R",
              [](UsbDevice& device) { device.controller().refuseUploadFrame(1); });
    addDevice(*menu, "Stall the Next &Command\tCtrl+T", [](UsbDevice& device) {
        device.inject({.endpoint = descriptors::OutEndpoint, .nth = 1, .what = What::Stall});
    });
    addDevice(*menu, "Stall the Next Rep&ly\tCtrl+L", [](UsbDevice& device) {
        device.inject({.endpoint = descriptors::InEndpoint, .nth = 1, .what = What::Stall});
    });
    menu->AppendSubMenu(slownessMenu(), "Slow &Down");
    menu->AppendSeparator();
    addDevice(*menu, "&Forget the Faults\tCtrl+F", [](UsbDevice& device) {
        device.clearFaults();
        device.controller().refuseUploadFrame(0);
    });
    return menu;
}

wxMenu* Menus::slownessMenu() {
    auto* const menu = new wxMenu;
    for (const auto& [label, ms] : Slownesses) {
        add(*menu, label, wxITEM_RADIO, [this, time = ms] {
            server_.withDevice([time](UsbDevice& device) { device.slowDown(time); });
        });
    }
    return menu;
}

wxMenu* Menus::frameRateMenu() {
    auto* const menu = new wxMenu;
    const auto interval =
        server_.inspect([](const UsbDevice& device) { return device.options().frameInterval; });
    for (const auto& [label, ms] : FrameIntervals) {
        auto* const item =
            add(*menu, label, wxITEM_RADIO, [this, time = ms] { frame_.setFrameInterval(time); });
        if (ms == interval) {
            item->Check();
        }
    }
    return menu;
}

wxMenu* Menus::displayMenu() {
    auto* const menu = new wxMenu;
    add(*menu, "&Save a Picture...\tCtrl+S", wxITEM_NORMAL, [this] { frame_.savePicture(); });
    menu->AppendSeparator();
    add(*menu, "&Larger Dots\tCtrl++", wxITEM_NORMAL, [this] { frame_.grow(1); });
    add(*menu, "S&maller Dots\tCtrl+-", wxITEM_NORMAL, [this] { frame_.grow(-1); });
    menu->AppendSeparator();
    add(*menu, "&Round Dots", wxITEM_RADIO,
        [this] { frame_.canvas().setDots(display::Dots::Round); });
    add(*menu, "S&quare Dots", wxITEM_RADIO,
        [this] { frame_.canvas().setDots(display::Dots::Square); });
    return menu;
}

wxMenu* Menus::helpMenu() {
    auto* const menu = new wxMenu;
    add(*menu, "&About", wxITEM_NORMAL, about);
    return menu;
}

}  // namespace simulator
