// A program to be killed: endless_capture FOLDER MODE [FRAME]. Captures from a simulated controller
// into the folder, for ever; with a number it kills itself between that frame and the next one.

#include <libusb.h>
#include <wx/app.h>
#include <wx/init.h>

#include <csignal>
#include <cstdlib>

#include "device/interfaceUSB.h"
#include "simulator/bus.h"
#include "tests/support/capture_rounds.h"

int main(int argc, char** argv) {
    if (argc < 3) {
        return EXIT_FAILURE;
    }
    const wxString folder = argv[1];
    const int mode = std::atoi(argv[2]);
    const int lastFrame = argc > 3 ? std::atoi(argv[3]) : 0;

    int toolkitArguments = 1;  // The rest is not the toolkit's.
    wxApp::SetInstance(new wxApp);
    if (!wxEntryStart(toolkitArguments, argv)) {
        return EXIT_FAILURE;
    }
    auto& bus = simulator::Bus::instance();
    bus.reset();
    bus.setLogging(false);
    simulator::ControllerOptions options;
    options.settings[0] = static_cast<std::uint8_t>(mode);
    bus.plugController(options);

    support::CaptureRounds rounds;
    rounds.setLimit(10000000);
    if (lastFrame > 0) {
        rounds.after(lastFrame, [] { std::raise(SIGKILL); });
    }
    dump_running = true;
    usb.receiveDump(static_cast<unsigned char>(mode), folder);
    return EXIT_FAILURE;  // It should never get here.
}
