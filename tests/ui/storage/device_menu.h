#ifndef LUMADOT_TESTS_UI_STORAGE_DEVICE_MENU_H
#define LUMADOT_TESTS_UI_STORAGE_DEVICE_MENU_H

#include <chrono>

#include "tests/ui/storage/storage_fixture.h"

inline constexpr const char* Unsupported = "Firmware version not supported ! Please upgrade !";

class DeviceMenu : public Storage {
protected:
    /// When the nth frame (0 = the first) was sent.
    std::chrono::steady_clock::time_point sentAt(std::size_t nth) {
        for (const simulator::Call& call : bus.calls()) {
            if (call.endpoint == 0x01 && call.function == "libusb_bulk_transfer" && nth-- == 0) {
                return call.at;
            }
        }
        ADD_FAILURE() << "fewer frames were sent";
        return {};
    }

    void expectLoaded(const wxString& text) { dialogs.expectMessage(text, "Configuration Loaded"); }
};

#endif
