// "Upload File" of the menu "Device".

#include <wx/filedlg.h>
#include <wx/textdlg.h>

#include "device/interfaceUSB.h"
#include "tests/support/bus_log.h"
#include "tests/support/message_box.h"
#include "tests/support/odd_files.h"
#include "tests/support/toolkit.h"
#include "tests/ui/storage/storage_fixture.h"

namespace {

using std::filesystem::path;
using support::Members;
using support::sentFrames;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

constexpr const char* Success = "File Upload Successful !";

class UploadCommand : public Storage {
protected:
    UploadCommand() {
        openWithSomeSettings();
        board = plug();
        bus.clearCalls();
    }

    path makeFile(const std::string& name, const Bytes& content = {0x48, 0x69, 0x21}) {
        support::writeFile(folder.path() / name, content);
        return folder.path() / name;
    }

    void pick(const std::optional<path>& file) {
        std::optional<wxString> chosen;
        if (file) {
            chosen = wxString::FromUTF8(file->string());
        }
        dialogs.expectFile(
            {"Upload File", "All files (*.*)|*.*", wxFD_OPEN | wxFD_FILE_MUST_EXIST, ""}, chosen);
    }
    void name(const wxString& proposed, const std::optional<wxString>& entered) {
        dialogs.expectText("Destination Filename", "Upload File", proposed, entered);
    }

    /// Uploads the file under the name that is entered in place of the proposed one.
    void upload(const path& file, const wxString& entered, const wxString& outcome = Success) {
        pick(file);
        name(wxString::FromUTF8(file.filename().string()), entered);
        support::expectPlainMessage(dialogs, outcome);
        choose(&Members::upload_Device);
    }

    std::shared_ptr<simulator::Controller> board;
};

TEST_F(UploadCommand, SendsTheFileUnderItsBareName) {
    upload(makeFile("a.bin"), "a.bin");
    EXPECT_THAT(sentFrames(), ElementsAre("81 C3 E7 FF 0A 00 61 2E 62 69 6E 00*2041",
                                          "81 C3 E7 FF 0A 01 00 03 48 69 21 00*2041",
                                          "81 C3 E7 FF 0A FF 00*2046"));
    EXPECT_THAT(board->files(), ElementsAre(Pair("a.bin", Bytes{0x48, 0x69, 0x21})));
}

TEST_F(UploadCommand, LeavesSettingsPaletteAndControlsAndTheFile) {
    const path file = makeFile("a.bin");
    const std::string before = everything();
    upload(file, "a.bin");
    EXPECT_EQ(everything(), before);
    EXPECT_EQ(support::readFile(file), (Bytes{0x48, 0x69, 0x21}));
    EXPECT_EQ(support::timesOpen(file), 0);
}

TEST_F(UploadCommand, SendsNothingWhenTheFileDialogIsCancelled) {
    expectNothingChanges([this] {
        pick(std::nullopt);
        choose(&Members::upload_Device);
    });
    EXPECT_EQ(dialogs.seen(), 1);
}

TEST_F(UploadCommand, SendsNothingWhenTheNameDialogIsCancelled) {
    const path file = makeFile("a.bin");
    expectNothingChanges([&] {
        pick(file);
        name("a.bin", std::nullopt);
        choose(&Members::upload_Device);
    });
    EXPECT_EQ(dialogs.seen(), 2);
}

struct Entered {
    std::string what;
    std::string name;  ///< in UTF-8
};

void PrintTo(const Entered& each, std::ostream* out) { *out << each.what; }

class UploadCommandWithName : public UploadCommand, public testing::WithParamInterface<Entered> {};

TEST_P(UploadCommandWithName, PassesItOnAsItStands) {
    upload(makeFile("a.bin"), wxString::FromUTF8(GetParam().name));
    EXPECT_THAT(board->files(), ElementsAre(Pair(GetParam().name, Bytes{0x48, 0x69, 0x21})));
}

INSTANTIATE_TEST_SUITE_P(Entered, UploadCommandWithName,
                         testing::Values(Entered{"Cleared", ""},
                                         Entered{"BlanksAround", "  a.bin \t"},
                                         Entered{"WithFolders", "/x/../y\\z"},
                                         Entered{"NotAscii", "gr\xC3\xBC\xC3\x9F \xE2\x82\xAC"},
                                         Entered{"FormatSigns", "%s%n&"},
                                         Entered{"Long", std::string(2046, 'n')}),
                         [](const auto& test) { return test.param.what; });

class UploadCommandOf : public UploadCommand, public testing::WithParamInterface<std::string> {};

TEST_P(UploadCommandOf, ProposesTheBareFileName) {
    const path inner = folder.path() / "in ner.d";
    std::filesystem::create_directory(inner);
    support::writeFile(inner / GetParam(), Bytes{7});
    upload(inner / GetParam(), wxString::FromUTF8(GetParam()));
    EXPECT_THAT(board->files(), ElementsAre(Pair(GetParam(), Bytes{7})));
}

INSTANTIATE_TEST_SUITE_P(Name, UploadCommandOf,
                         testing::Values("noextension", ".hidden", "two.dots.tar", "with blank.x",
                                         "trailing.", "gr\xC3\xBC\xC3\x9F\xE2\x82\xAC.bin"));

TEST_F(UploadCommand, WithoutControllerAsksForFileAndNameAndSaysNothing) {
    bus.unplug(0);
    pick(makeFile("a.bin"));
    name("a.bin", "a.bin");
    choose(&Members::upload_Device);
    EXPECT_EQ(dialogs.seen(), 2);
    EXPECT_EQ(support::callLines(), support::emptyBusLines());
}

TEST_F(UploadCommand, ReportsAFileThatHasGoneAndLeavesTheControllerOpen) {
    upload(folder.path() / "gone", "gone", "File Error");
    EXPECT_THAT(sentFrames(), IsEmpty());
    EXPECT_EQ(bus.openHandles(), 1);
    EXPECT_EQ(bus.claimedInterfaces(), 1);
    usb.release();
}

TEST_F(UploadCommand, HasDialogsThatBelongToTheWindow) {
    support::showAndWait(window());
    dialogs.expect([this](wxDialog& dialog) -> int {
        EXPECT_EQ(dialog.GetParent(), &window());
        return wxID_OK;
    });
    dialogs.expect([this](wxDialog& dialog) -> int {
        EXPECT_EQ(dialog.GetParent(), &window());
        EXPECT_NE(dialog.FindWindow(wxID_OK), nullptr);
        EXPECT_NE(dialog.FindWindow(wxID_CANCEL), nullptr);
        return wxID_CANCEL;
    });
    choose(&Members::upload_Device);
}

}  // namespace
