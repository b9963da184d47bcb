#ifndef LUMADOT_SIMULATOR_WINDOW_MENUS_H
#define LUMADOT_SIMULATOR_WINDOW_MENUS_H

#include <wx/menu.h>

#include <functional>
#include <string>

#include "simulator/server/server.h"

namespace simulator {

class Frame;

/// The menus of the window: whatever can go wrong with a controller, and how it is looked at.
class Menus {
public:
    /// Gives them to the window.
    Menus(Frame& frame, Server& server);

    /// Checks what is true of the device: it is unplugged by faults, too.
    void show(const UsbDevice& device);

private:
    using Action = std::function<void()>;

    wxMenuItem* add(wxMenu& menu, const wxString& label, wxItemKind kind, Action action);
    wxMenuItem* addDevice(wxMenu& menu, const wxString& label,
                          std::function<void(UsbDevice&)> action);
    wxMenu* controllerMenu();
    wxMenu* faultMenu();
    wxMenu* displayMenu();
    wxMenu* helpMenu();
    wxMenu* slownessMenu();
    wxMenu* frameRateMenu();

    Frame& frame_;
    Server& server_;
    wxMenuItem* xl_ = nullptr;
    wxMenuItem* olderLayout_ = nullptr;
    wxMenuItem* pluggedIn_ = nullptr;
};

}  // namespace simulator

#endif
