// Every block that a command of the menu "File" asks for is refused once. The exception reaches the
// toolkit, whose event the command answers; the user's file, settings and palette are as they were
// or as they should become, and nothing in between.

#include <functional>
#include <iostream>
#include <new>
#include <string>
#include <vector>

#include "device/interfaceUSB.h"
#include "tests/device/allocations/answers.h"
#include "tests/device/allocations/failing_new.h"
#include "tests/support/odd_files.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/window_test.h"
#include "ui/palette.h"

namespace {

using allocations::Asked;
using Bytes = std::vector<std::uint8_t>;
using Handler = void (MainFrame::*)(wxCommandEvent&);

struct Command {
    std::string name;
    Handler handler;
    std::string file;  ///< the name that the user chooses
    std::size_t size;  ///< of the file before
};

void PrintTo(const Command& command, std::ostream* out) { *out << command.name; }

// clang-format off
const std::vector<Command> Commands = {
    {"LoadSettings",               &MainFrame::OnLoad_configMenuSelected,  "file",    23},
    {"LoadSettingsOf22Bytes",      &MainFrame::OnLoad_configMenuSelected,  "file",    22},
    {"LoadSettingsThatAreMissing", &MainFrame::OnLoad_configMenuSelected,  "no/file", 0},
    {"SaveSettings",               &MainFrame::OnSave_configMenuSelected,  "file",    100},
    {"LoadPalette",                &MainFrame::OnLoad_paletteMenuSelected, "file",    56},
    {"LoadPaletteThatIsMissing",   &MainFrame::OnLoad_paletteMenuSelected, "no/file", 0},
    {"SavePalette",                &MainFrame::OnSave_paletteMenuSelected, "file",    100},
    {"SavePaletteNowhere",         &MainFrame::OnSave_paletteMenuSelected, "no/file", 0},
};
// clang-format on

/// All that a command may change.
struct State {
    Bytes file;
    Bytes settings;
    Bytes colours;
};

class FileCommandsWithoutMemory : public support::WindowTest,
                                  public testing::WithParamInterface<Command> {
protected:
    FileCommandsWithoutMemory() { open(); }

    /// Everything as it is before a command.
    void begin() {
        if (!GetParam().file.starts_with("no/")) {
            support::writeFile(path_, support::pattern(GetParam().size));
        }
        config = before_;
        palette = support::Vga;
    }

    /// The nth block is refused; 0: none.
    void run(int nth) {
        begin();
        allocations::Answers answers(path_);
        wxCommandEvent event;
        threw = false;
        allocations::watch(nth);
        try {
            (window().*GetParam().handler)(event);
        } catch (const std::bad_alloc&) {
            threw = true;
        }
        asked = allocations::endWatch();
        openFiles = support::timesOpen(path_);
    }

    State state() const {
        const auto* const record = reinterpret_cast<const std::uint8_t*>(&config);
        return {support::readFile(path_),
                {record, record + sizeof config},
                {palette.begin(), palette.end()}};
    }

    Asked asked;
    int openFiles = 0;
    bool threw = false;

private:
    const configDescriptor before_ = config;
    const support::TemporaryFolder folder_;
    const std::string path_ = folder_.path() / GetParam().file;
};

TEST_P(FileCommandsWithoutMemory, LeaveNothingHalfDoneWhicheverBlockIsRefused) {
    run(0);  // Takes what is taken once for all.
    begin();
    const State before = state();
    run(0);
    const State after = state();
    const Asked usual = asked;
    const int usualFiles = openFiles;
    EXPECT_GE(usual.tool, 1);
    for (int nth = 1; nth <= usual.tool; ++nth) {
        SCOPED_TRACE("block " + std::to_string(nth));
        run(nth);
        EXPECT_TRUE(asked.refused && threw);
        const State now = state();
        EXPECT_TRUE(now.file == before.file || now.file == after.file);
        EXPECT_TRUE(now.settings == before.settings || now.settings == after.settings);
        EXPECT_TRUE(now.colours == before.colours || now.colours == after.colours);
        EXPECT_LE(asked.kept, usual.kept);
        EXPECT_LE(openFiles, usualFiles);
    }
    std::cout << "without memory: " << GetParam().name << ", each of " << usual.tool
              << " blocks refused, " << usual.toolkit << " of the toolkit left alone\n";
}

INSTANTIATE_TEST_SUITE_P(Every, FileCommandsWithoutMemory, testing::ValuesIn(Commands),
                         [](const auto& test) { return test.param.name; });

}  // namespace
