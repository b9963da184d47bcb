// lumadot-viewer: looks at what captures have recorded.

#include <wx/app.h>
#include <wx/init.h>

#include <clocale>
#include <filesystem>
#include <iostream>
#include <optional>
#include <string_view>
#include <utility>

#include "platform/native_file.h"
#include "platform/start.h"
#include "viewer/window.h"

namespace {

constexpr const char* Help =
    "lumadot-viewer [FILE]\n"
    "\n"
    "Plays a recording of a LUMADOT controller: ..._lumadot_dump.txt or ..._lumadot_dump.raw.\n"
    "\n"
    "  -h, --help     show this\n"
    "  -V, --version  show the version\n";

class App : public wxApp {
public:
    explicit App(std::optional<std::filesystem::path> file) : file_(std::move(file)) {}

    /// The base class's own start is left out: the arguments have been read.
    bool OnInit() override {
        wxDISABLE_ASSERTS_IN_RELEASE_BUILD();
        SetAppName("lumadot-viewer");
        wxUpdateUIEvent::SetUpdateInterval(-1);  // No item asks.
        auto* const window = new viewer::Window;
        window->Show();
        if (file_) {
            window->open(*file_);
        }
        return true;
    }

private:
    std::optional<std::filesystem::path> file_;
};

/// Not with wxEntry, which shows a window to say that it cannot show one.
int run(App* app, char** argv) {
    wxApp::SetInstance(app);
    int onlyTheName = 1;
    if (!wxEntryStart(onlyTheName, argv)) {
        std::cerr
            << "lumadot-viewer: there is no display for the window; in a terminal, lumadotctl "
               "dump show draws recordings\n";
        return 1;
    }
    start::leaveConsole();
    const int result = app->CallOnInit() ? app->OnRun() : 1;
    app->OnExit();
    wxEntryCleanup();
    return result;
}

}  // namespace

int main(int argumentCount, char** arguments) {
    start::CommandLine line(argumentCount, arguments);
    const int argc = line.count();
    char** const argv = line.values();
    // File names are converted by the C library, which needs to know the user's encoding.
    std::setlocale(LC_CTYPE, "");
    const std::string_view first = argc > 1 ? argv[1] : "";
    if (first == "-h" || first == "--help") {
        std::cout << Help;
        return 0;
    }
    if (first == "-V" || first == "--version") {
        std::cout << "lumadot-viewer " LUMADOT_VERSION "\n";
        return 0;
    }
    const int at = first == "--" ? 2 : 1;  // Behind it a name may start with a dash.
    if (at == 1 && first.size() > 1 && first.front() == '-') {
        std::cerr << "lumadot-viewer: \"" << first << "\" is no option; see --help\n";
        return 2;
    }
    if (argc > at + 1) {
        std::cerr << "lumadot-viewer: one recording is shown at a time; see --help\n";
        return 2;
    }
    const auto path = argc > at ? std::optional(native_file::named(argv[at])) : std::nullopt;
    return run(new App(path), argv);
}
