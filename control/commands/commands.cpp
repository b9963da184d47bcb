#include "control/commands/commands.h"

#include <array>

namespace control {

std::span<const Verb> commands() {
    static constexpr std::array All = std::to_array<Verb>({
        {"list", "List the controllers on the USB bus", defineList},
        {"check", "Say what is the matter with the controller and what to do", defineCheck},
        {"info", "Show firmware, unique id and settings", defineInfo},
        {"mode", "Show or select the input mode", defineMode},
        {"preset", "Show or select the palette preset", definePreset},
        {"brightness", "Show or set the brightness", defineBrightness},
        {"enhancer", "Show or switch the signal enhancer", defineEnhancer},
        {"palette", "Send a palette file, or write one", definePalette},
        {"store", "Store the working settings on the controller", defineStore},
        {"logo", "Show the built-in logo", defineLogo},
        {"reset", "Restart the controller", defineReset},
        {"settings", "Save, load, show and compare settings files", defineSettings},
        {"upload", "Copy files into the controller's storage", defineUpload},
        {"record", "Record captured frames into dump files", defineRecord},
        {"completion", "Print a completion script for a shell", defineCompletion},
    });
    return All;
}

}  // namespace control
