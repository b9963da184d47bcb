#ifndef LUMADOT_TESTS_UI_KEEPING_DEVICE_MENU_H
#define LUMADOT_TESTS_UI_KEEPING_DEVICE_MENU_H

#include <chrono>
#include <string>
#include <vector>

#include "tests/ui/keeping/keeping_fixture.h"

inline constexpr const char* Unsupported = "Firmware version not supported ! Please upgrade !";

/// The calls of one connection around these transfers.
inline std::vector<std::string> connection(const std::vector<std::string>& transfers) {
    std::vector<std::string> calls = {"init",
                                      "get_device_list",
                                      "get_device_descriptor",
                                      "open",
                                      "get_string_descriptor_ascii",
                                      "free_device_list",
                                      "claim_interface"};
    calls.insert(calls.end(), transfers.begin(), transfers.end());
    calls.insert(calls.end(), {"release_interface", "close"});
    return calls;
}

inline std::vector<std::string> joined(std::vector<std::string> one,
                                       const std::vector<std::string>& two) {
    one.insert(one.end(), two.begin(), two.end());
    return one;
}

class DeviceMenu : public Keeping {
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
