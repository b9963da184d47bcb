#include "control/commands/commands.h"

#include <CLI/CLI.hpp>
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
        {"dump", "Look at recordings, and make pictures of them", defineDump},
        {"play", "Play a recording on the display", definePlay},
        {"show", "Show a picture on the display", defineShow},
        {"completion", "Print a completion script for a shell", defineCompletion},
    });
    return All;
}

// No comparison finds "nan" out of a range.
std::string isTime(const std::string& text) {
    constexpr double Shortest = 0.001;
    constexpr double Longest = 1e9;
    double seconds = 0;
    const bool isNumber = CLI::detail::lexical_cast(text, seconds);
    return isNumber && seconds >= Shortest && seconds <= Longest
               ? ""
               : "\"" + text + "\" is no number of seconds from 0.001 on";
}

}  // namespace control
