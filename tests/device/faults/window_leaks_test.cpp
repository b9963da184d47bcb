// What the commands of the window keep on purpose, and that they keep nothing else.

#include <wx/dirdlg.h>
#include <wx/filedlg.h>

#include "device/interfaceUSB.h"
#include "tests/device/faults/heap_watch.h"
#include "tests/support/capture_rounds.h"
#include "tests/support/message_box.h"
#include "tests/support/toolkit.h"
#include "tests/ui/storage/storage_fixture.h"

namespace {

using faults::Kept;
using std::filesystem::path;
using support::Members;

/// The open window, hidden; its commands, and the dialogs that they bring.
class Window : public Storage {
public:
    void choose(wxMenuItem* MainFrameBaseClass::*item) { Storage::choose(item); }
    template <class Control>
    void send(Control* MainFrameBaseClass::*member, wxEventType type, int value) {
        support::send(the(member), type, value);
    }
    void drag() { support::send(the(&Members::brightness_Slider), wxEVT_SCROLL_THUMBTRACK); }
    void tick() { send(&Members::dump_CheckBox, wxEVT_CHECKBOX, 1); }

    // The paths are so short that a string of them takes no block: the test's own stay out of it.

    path makeFile(std::size_t size, std::uint8_t first = 1) {
        support::writeFile("file", Bytes(size, first));
        return "file";
    }
    path missing() const { return "no/file"; }

    void expectFile(const support::Dialogs::FileQuestion& question,
                    const std::optional<path>& answer) {
        std::optional<wxString> chosen;
        if (answer) {
            chosen = wxString::FromUTF8(answer->string());
        }
        dialogs.expectFile(question, chosen);
    }
    void expectFileError() { support::expectPlainMessage(dialogs, "File Error"); }
    void expectBox() {
        dialogs.expect([](wxDialog&) -> int { return wxID_OK; });
    }
    void expectUpload() {
        expectFile({"Upload File", "All files (*.*)|*.*", wxFD_OPEN | wxFD_FILE_MUST_EXIST, ""},
                   makeFile(100));
        dialogs.expectText("Destination Filename", "Upload File", "file", "file");
    }
    void expectColour() {
        dialogs.expectColour(the(&Members::set_col0).GetBackgroundColour(), *wxRED);
    }
    /// Captures two frames into the folder.
    void expectCapture() {
        dialogs.expectFolder("Choose dump directory", wxDD_DIR_MUST_EXIST, ".");
        rounds.stopAfter(rounds.frames() + 2);
    }

protected:
    Window() { std::filesystem::current_path(folder.path()); }
    ~Window() override { std::filesystem::current_path("/"); }

private:
    support::CaptureRounds rounds;
};

/// A command, and what it keeps each time.
struct Command {
    std::string name;
    std::function<void(Window&)> announce;  ///< the dialogs
    std::function<void(Window&)> give;
    Kept kept = {};
    int deviceLists = 0;
};

void PrintTo(const Command& command, std::ostream* out) { *out << command.name; }

void announceNothing(Window&) {}

// The menu "File"

struct FileItem {
    std::string name;
    support::Dialogs::FileQuestion question;
    wxMenuItem* MainFrameBaseClass::*item;
};

constexpr const char* ConfigFiles = "Config files (lumadot.dat)|lumadot.dat";
constexpr const char* PaletteFiles = "Palette files (*.pal)|*.pal";
constexpr long Opens = wxFD_OPEN | wxFD_FILE_MUST_EXIST;
constexpr long Saves = wxFD_SAVE | wxFD_OVERWRITE_PROMPT;

const FileItem LoadSettings = {
    "LoadSettings", {"Open Config file", ConfigFiles, Opens, ""}, &Members::load_config};
const FileItem SaveSettings = {
    "SaveSettings", {"Save Config file", ConfigFiles, Saves, "lumadot.dat"}, &Members::save_config};
const FileItem LoadPalette = {
    "LoadPalette", {"Open PAL file", PaletteFiles, Opens, ""}, &Members::load_palette};
const FileItem SavePalette = {
    "SavePalette", {"Save PAL file", PaletteFiles, Saves, "lumadot.pal"}, &Members::save_palette};

enum class Says { Nothing, FileError };

/// The command with a file that `choose` names; nothing: cancelled.
Command with(const std::string& what, const FileItem& command,
             const std::function<std::optional<path>(Window&)>& choose, Says says,
             const Kept& kept) {
    return {.name = command.name + what,
            .announce =
                [=](Window& window) {
                    window.expectFile(command.question, choose(window));
                    if (says == Says::FileError) {
                        window.expectFileError();
                    }
                },
            .give = [=](Window& window) { window.choose(command.item); },
            .kept = kept};
}

Command withFile(const FileItem& command, std::size_t size, std::uint8_t first = 1,
                 Says says = Says::Nothing, const Kept& kept = {}) {
    return with(
        "Of" + std::to_string(size) + "StartingWith" + std::to_string(first), command,
        [=](Window& window) { return window.makeFile(size, first); }, says, kept);
}

Command cancelled(const FileItem& command) {
    return with("Cancelled", command, [](Window&) { return std::nullopt; }, Says::Nothing, {});
}

Command unopenable(const FileItem& command, Says says, const Kept& kept = {}) {
    return with(
        "ThatCannotBeOpened", command, [](Window& window) { return window.missing(); }, says, kept);
}

std::vector<Command> fileCommands() {
    using enum Says;
    return {withFile(LoadSettings, 23), cancelled(LoadSettings),
            unopenable(LoadSettings, FileError),
            // Another length: the buffer, of a record and one byte at most, and the open file.
            withFile(LoadSettings, 0, 1, FileError, {{0}, 1}),
            withFile(LoadSettings, 22, 1, FileError, {{22}, 1}),
            withFile(LoadSettings, 24, 1, FileError, {{24}, 1}),
            withFile(LoadSettings, 1000, 1, FileError, {{24}, 1}),

            withFile(SaveSettings, 0), cancelled(SaveSettings), unopenable(SaveSettings, Nothing),

            withFile(LoadPalette, 56), withFile(LoadPalette, 56, 2), withFile(LoadPalette, 0),
            withFile(LoadPalette, 55), cancelled(LoadPalette), unopenable(LoadPalette, FileError),

            withFile(SavePalette, 0), cancelled(SavePalette),
            // The bytes of the file.
            unopenable(SavePalette, FileError, {{56}})};
}

// The commands that the controller takes

constexpr auto SelectMode = [](Window& window) {
    window.send(&Members::set_Stern, wxEVT_RADIOBUTTON, 1);
};
constexpr auto SelectPreset = [](Window& window) {
    window.send(&Members::set_pal, wxEVT_CHOICE, 1);
};
constexpr auto PickColour = [](Window& window) {
    window.send(&Members::set_col0, wxEVT_BUTTON, 0);
};
constexpr auto SetEnhancer = [](Window& window) {
    window.send(&Members::enhancer_CheckBox, wxEVT_CHECKBOX, 1);
};

std::function<void(Window&)> item(wxMenuItem* MainFrameBaseClass::*member) {
    return [=](Window& window) { window.choose(member); };
}

/// What goes through sendConfigCmd leaves its frame, and each enumeration its device list.
std::vector<Command> commandsWithoutController() {
    return {
        {"LoadDevice", &Window::expectBox, item(&Members::load_Device), {}, 2},
        {"SaveDevice", announceNothing, item(&Members::save_Device), {{2052}}, 2},
        {"PaletteDevice", announceNothing, item(&Members::palette_Device), {{2052, 2052}}, 3},
        {"UploadDevice", &Window::expectUpload, item(&Members::upload_Device), {}, 1},
        {"ResetDevice", announceNothing, item(&Members::reset_Device), {{2052}}, 2},
        {"Mode", announceNothing, SelectMode, {{2052}}, 1},
        {"Preset", announceNothing, SelectPreset, {{2052}}, 1},
        {"Colour", &Window::expectColour, PickColour, {}, 1},
        {"Brightness", announceNothing, &Window::drag, {}, 1},
        {"Enhancer", announceNothing, SetEnhancer},
        {"Capture", &Window::expectCapture, &Window::tick, {}, 2},
    };
}

void expectSuccessfulUpload(Window& window) {
    window.expectUpload();
    window.expectBox();
}

/// With a controller nothing is left.
std::vector<Command> commandsWithController() {
    return {
        {"LoadDevice", &Window::expectBox, item(&Members::load_Device)},
        {"SaveDevice", announceNothing, item(&Members::save_Device)},
        {"PaletteDevice", announceNothing, item(&Members::palette_Device)},
        {"UploadDevice", expectSuccessfulUpload, item(&Members::upload_Device)},
        {"ResetDevice", announceNothing, item(&Members::reset_Device)},
        {"Mode", announceNothing, SelectMode},
        {"Preset", announceNothing, SelectPreset},
        {"Colour", &Window::expectColour, PickColour},
        {"Brightness", announceNothing, &Window::drag},
        {"Enhancer", announceNothing, SetEnhancer},
        {"Capture", &Window::expectCapture, &Window::tick},
    };
}

class WindowLeaks : public Window, public testing::WithParamInterface<Command> {
protected:
    /// Gives the command again and again, each time on a fresh bus, and compares what the last one
    /// keeps: the first ones take what is taken once for all.
    void expectListedOnes(bool withController) {
        constexpr int Times = 3;
        Kept kept;
        for (int i = 0; i < Times; ++i) {
            bus.reset();
            bus.setLogging(false);
            if (withController) {
                plug({.restartTime = 0});
            }
            GetParam().announce(*this);
            kept = faults::keptBy([this] { giveAndCleanUp(); });
        }
        EXPECT_EQ(kept, GetParam().kept);
    }

private:
    void giveAndCleanUp() {
        GetParam().give(*this);
        support::deleteClosedWindows();
        EXPECT_EQ(bus.deviceLists(), GetParam().deviceLists);
        bus.reset();  // The controller goes, with the files that it has been sent.
    }
};

constexpr auto CommandName = [](const auto& test) { return test.param.name; };

TEST_P(WindowLeaks, AreTheListedOnesWithoutController) {
    open();
    expectListedOnes(false);
}

INSTANTIATE_TEST_SUITE_P(OfFiles, WindowLeaks, testing::ValuesIn(fileCommands()), CommandName);
INSTANTIATE_TEST_SUITE_P(OfCommands, WindowLeaks, testing::ValuesIn(commandsWithoutController()),
                         CommandName);

class WindowWithController : public WindowLeaks {};

TEST_P(WindowWithController, LeaksNothing) {
    open();
    expectListedOnes(true);
}

INSTANTIATE_TEST_SUITE_P(OfCommands, WindowWithController,
                         testing::ValuesIn(commandsWithController()), CommandName);

}  // namespace
