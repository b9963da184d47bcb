// File names with letters outside ASCII.

#include <wx/filedlg.h>

#include <clocale>

#include "device/interfaceUSB.h"
#include "tests/support/message_box.h"
#include "tests/ui/storage/storage_fixture.h"
#include "ui/palette.h"

namespace {

using std::filesystem::path;
using support::Members;

/// Each command's file dialog, in which a path was chosen whose every part is not ASCII.
class FileNamedInUtf8 : public Storage {
protected:
    FileNamedInUtf8() {
        openWithSomeSettings();
        std::filesystem::create_directory(file.parent_path());
    }

    void pick(const support::Dialogs::FileQuestion& question) {
        dialogs.expectFile(question, wxString::FromUTF8(file.string()));
    }

    const path file =
        folder.path() / "Gr\xC3\xB6\xC3\x9F\x65 \xE2\x82\xAC" / "\xC3\xBC.\xE6\x96\x87";

    const support::Dialogs::FileQuestion loadConfig = {"Open Config file",
                                                       "Config files (lumadot.dat)|lumadot.dat",
                                                       wxFD_OPEN | wxFD_FILE_MUST_EXIST, ""};
    const support::Dialogs::FileQuestion saveConfig = {
        "Save Config file", "Config files (lumadot.dat)|lumadot.dat",
        wxFD_SAVE | wxFD_OVERWRITE_PROMPT, "lumadot.dat"};
    const support::Dialogs::FileQuestion loadPalette = {
        "Open PAL file", "Palette files (*.pal)|*.pal", wxFD_OPEN | wxFD_FILE_MUST_EXIST, ""};
    const support::Dialogs::FileQuestion savePalette = {
        "Save PAL file", "Palette files (*.pal)|*.pal", wxFD_SAVE | wxFD_OVERWRITE_PROMPT,
        "lumadot.pal"};
    const support::Dialogs::FileQuestion upload = {"Upload File", "All files (*.*)|*.*",
                                                   wxFD_OPEN | wxFD_FILE_MUST_EXIST, ""};
};

TEST_F(FileNamedInUtf8, HoldsSettings) {
    pick(saveConfig);
    choose(&Members::save_config);
    EXPECT_THAT(support::readFile(file), testing::ElementsAreArray(SomeRecord));
    setConfig({});
    pick(loadConfig);
    choose(&Members::load_config);
    EXPECT_EQ(configBytes(), SomeRecord);
}

TEST_F(FileNamedInUtf8, HoldsAPalette) {
    pick(savePalette);
    choose(&Members::save_palette);
    EXPECT_EQ(support::readFile(file).size(), 56U);
    palette = support::Vga;
    pick(loadPalette);
    choose(&Members::load_palette);
    EXPECT_EQ(palette, SomePalette);
}

TEST_F(FileNamedInUtf8, IsUploadedUnderThatName) {
    const auto board = plug();
    support::writeFile(file, Bytes{1, 2, 3});
    pick(upload);
    const wxString name = wxString::FromUTF8("\xC3\xBC.\xE6\x96\x87");
    dialogs.expectText("Destination Filename", "Upload File", name, name);
    support::expectPlainMessage(dialogs, "File Upload Successful !");
    choose(&Members::upload_Device);
    EXPECT_THAT(board->files(),
                testing::ElementsAre(testing::Pair("\xC3\xBC.\xE6\x96\x87", Bytes{1, 2, 3})));
}

/// Where the user's encoding is unknown, such a file cannot be named; nothing may break.
class FileNamedInUtf8InLocaleC : public FileNamedInUtf8 {
protected:
    FileNamedInUtf8InLocaleC() {
        support::writeFile(file, SomeRecord);
        std::setlocale(LC_CTYPE, "C");
    }
};

TEST_F(FileNamedInUtf8InLocaleC, IsReportedByLoading) {
    expectNothingChanges([this] {
        pick(loadConfig);
        support::expectPlainMessage(dialogs, "File Error");
        choose(&Members::load_config);
        pick(loadPalette);
        support::expectPlainMessage(dialogs, "File Error");
        choose(&Members::load_palette);
    });
}

TEST_F(FileNamedInUtf8InLocaleC, IsNotTouchedBySaving) {
    expectNothingChanges([this] {
        pick(saveConfig);
        choose(&Members::save_config);
        pick(savePalette);
        support::expectPlainMessage(dialogs, "File Error");
        choose(&Members::save_palette);
    });
    EXPECT_THAT(support::readFile(file), testing::ElementsAreArray(SomeRecord));
}

TEST_F(FileNamedInUtf8InLocaleC, IsReportedByUploading) {
    plug();
    pick(upload);
    dialogs.expectText("Destination Filename", "Upload File",
                       wxString::FromUTF8("\xC3\xBC.\xE6\x96\x87"), "a");
    support::expectPlainMessage(dialogs, "File Error");
    choose(&Members::upload_Device);
    usb.release();
}

TEST_F(FileNamedInUtf8InLocaleC, IsNotWhatAnUploadCanBeCalled) {
    plug();
    support::writeFile(folder.path() / "a.bin", Bytes{1, 2, 3});
    expectNothingChanges([this] {
        dialogs.expectFile(upload, (folder.path() / "a.bin").string());
        dialogs.expectText("Destination Filename", "Upload File", "a.bin",
                           wxString::FromUTF8("\xC3\xBC.bin"));
        support::expectPlainMessage(dialogs, "File Error");
        choose(&Members::upload_Device);
    });
}

}  // namespace
