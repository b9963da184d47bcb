// "Load Palette" and "Save Palette" of the menu "File".

#include <wx/filedlg.h>

#include <algorithm>

#include "device/interfaceUSB.h"
#include "tests/support/message_box.h"
#include "tests/support/odd_files.h"
#include "tests/support/page_examples.h"
#include "tests/support/toolkit.h"
#include "tests/ui/storage/storage_fixture.h"
#include "ui/palette.h"

namespace {

using std::filesystem::path;
using support::Members;
using support::paintedPalette;
using support::readFile;
using support::writeFile;

const support::Dialogs::FileQuestion LoadQuestion = {"Open PAL file", "Palette files (*.pal)|*.pal",
                                                     wxFD_OPEN | wxFD_FILE_MUST_EXIST, ""};
const support::Dialogs::FileQuestion SaveQuestion = {"Save PAL file", "Palette files (*.pal)|*.pal",
                                                     wxFD_SAVE | wxFD_OVERWRITE_PROMPT,
                                                     "lumadot.pal"};

/// A palette file with this header.
Bytes fileOf(const Bytes& header, const PaletteBytes& colours) {
    Bytes bytes = header;
    bytes.insert(bytes.end(), colours.begin(), colours.end());
    return bytes;
}

const Bytes Header = {0x01, 0x00, 0x01, 0x00, 0x00, 0x00, 0x10, 0x01};

class PaletteFile : public Storage {
protected:
    PaletteFile() { openWithSomeSettings(); }

    void load(const path& chosen) {
        dialogs.expectFile(LoadQuestion, wxString::FromUTF8(chosen.string()));
        choose(&Members::load_palette);
    }
    void load(const Bytes& content) {
        writeFile(file, content);
        load(file);
    }
    void save(const path& chosen) {
        dialogs.expectFile(SaveQuestion, wxString::FromUTF8(chosen.string()));
        choose(&Members::save_palette);
    }

    /// Fails unless the file is taken for no palette: nothing changes and nothing is said, but the
    /// buttons are painted anew.
    void expectIgnored(const path& chosen) {
        PaletteBytes other = SomePalette;
        std::ranges::reverse(other);
        window().setPal(other.data());
        load(chosen);
        EXPECT_EQ(dialogs.seen(), 1);
        EXPECT_EQ(palette, SomePalette);
        EXPECT_EQ(paintedPalette(window()), SomePalette);
    }

    const path file = folder.path() / "lumadot.pal";
};

// Loading

TEST_F(PaletteFile, OfTheDocumentationIsLoaded) {
    const Bytes example =
        support::pageExample(path(LUMADOT_DOCS) / "file-formats.md", "palette-file");
    ASSERT_EQ(example, fileOf(Header, support::Vga));
    load(example);
    EXPECT_EQ(palette, support::Vga);
    EXPECT_EQ(paintedPalette(window()), support::Vga);
}

TEST_F(PaletteFile, LeavesEverythingButPaletteAndPaintWithoutAMessage) {
    const auto board = plug();
    bus.clearCalls();
    palette = support::Vga;
    window().setPal(palette.data());
    writeFile(file, fileOf(Header, Cyan));
    const std::string before = everything();
    load(file);
    EXPECT_NE(everything(), before);
    palette = support::Vga;
    window().setPal(palette.data());
    EXPECT_EQ(everything(), before);
    EXPECT_EQ(dialogs.seen(), 1);
    EXPECT_TRUE(bus.calls().empty());
    EXPECT_EQ(board->palette(), support::Vga);
}

TEST_F(PaletteFile, LeavesThePresetChoiceAndItsSetting) {
    load(fileOf(Header, Cyan));
    EXPECT_EQ(the(&Members::set_pal).GetSelection(), 3);
    EXPECT_EQ(config.paletteIndex, 3);
    EXPECT_EQ(configBytes(), SomeRecord);
}

TEST_F(PaletteFile, IsLoadedWhateverStandsInBytes1To7) {
    for (const Bytes& header : {Bytes{1, 0, 0, 0, 0, 0, 0, 0}, Bytes{1, 2, 3, 4, 5, 6, 7, 8},
                                Bytes{1, 255, 255, 255, 255, 255, 255, 255}}) {
        palette = SomePalette;
        load(fileOf(header, Cyan));
        EXPECT_EQ(palette, Cyan);
        EXPECT_EQ(paintedPalette(window()), Cyan);
    }
}

TEST_F(PaletteFile, LongerThan56BytesIsLoadedWithoutTheRest) {
    Bytes content = fileOf(Header, Cyan);
    content.insert(content.end(), 1000, 0xEE);
    load(content);
    EXPECT_EQ(palette, Cyan);
}

TEST_F(PaletteFile, OfAGibibyteIsLoadedAsAnyLongerFile) {
    writeFile(file, fileOf(Header, Cyan));
    std::filesystem::resize_file(file, 1 << 30);
    load(file);
    EXPECT_EQ(palette, Cyan);
}

TEST_F(PaletteFile, IsClosedAndUnchangedAfterLoading) {
    load(fileOf(Header, Cyan));
    EXPECT_EQ(support::timesOpen(file), 0);
    EXPECT_EQ(readFile(file), fileOf(Header, Cyan));
}

TEST_F(PaletteFile, IsNotLoadedWhenTheDialogIsCancelled) {
    expectNothingChanges([this] {
        dialogs.expectFile(LoadQuestion, std::nullopt);
        choose(&Members::load_palette);
    });
}

class PaletteFileStartingWith : public PaletteFile, public testing::WithParamInterface<int> {};

TEST_P(PaletteFileStartingWith, AnotherByteThan1IsIgnored) {
    Bytes content = fileOf(Header, Cyan);
    content[0] = static_cast<std::uint8_t>(GetParam());
    writeFile(file, content);
    expectIgnored(file);
    EXPECT_EQ(support::timesOpen(file), 0);
}

INSTANTIATE_TEST_SUITE_P(Byte, PaletteFileStartingWith, testing::Values(0, 2, 3, 0x81, 0xFF));

class PaletteFileOfLength : public PaletteFile, public testing::WithParamInterface<std::size_t> {};

TEST_P(PaletteFileOfLength, BelowFiftySixIsIgnored) {
    Bytes content = fileOf(Header, Cyan);
    content.resize(GetParam());
    writeFile(file, content);
    expectIgnored(file);
    EXPECT_EQ(support::timesOpen(file), 0);
}

INSTANTIATE_TEST_SUITE_P(Sample, PaletteFileOfLength, testing::Values(0, 1, 8, 55));

struct Place {
    std::string what;
    std::function<path(const path& folder)> make;
};

void PrintTo(const Place& each, std::ostream* out) { *out << each.what; }

path pipeIn(const path& folder) {
    support::makePipe(folder / "pipe");
    return folder / "pipe";
}

class UnreadablePaletteFile : public PaletteFile, public testing::WithParamInterface<Place> {};

TEST_P(UnreadablePaletteFile, IsReportedAndChangesNothing) {
    const path chosen = GetParam().make(folder.path());
    expectNothingChanges([&] {
        dialogs.expectFile(LoadQuestion, wxString::FromUTF8(chosen.string()));
        support::expectPlainMessage(dialogs, "File Error");
        choose(&Members::load_palette);
    });
}

INSTANTIATE_TEST_SUITE_P(
    ThatIs, UnreadablePaletteFile,
    testing::Values(Place{"Missing", [](const path& at) { return at / "missing.pal"; }},
                    Place{"InAMissingFolder", [](const path& at) { return at / "no" / "x.pal"; }},
                    Place{"BehindAFile",
                          [](const path& at) {
                              writeFile(at / "file", Bytes{1});
                              return at / "file" / "x.pal";
                          }},
                    Place{"APipe", pipeIn},
                    Place{"ADeviceWithoutEnd", [](const path&) { return "/dev/zero"; }}),
    [](const auto& test) { return test.param.what; });

TEST_F(PaletteFile, ThatIsAFolderHoldsNoPalette) { expectIgnored(folder.path()); }

// Saving

TEST_F(PaletteFile, OfTheDocumentationIsSaved) {
    palette = support::Vga;
    save(file);
    EXPECT_EQ(readFile(file),
              support::pageExample(path(LUMADOT_DOCS) / "file-formats.md", "palette-file"));
}

TEST_F(PaletteFile, IsSavedAsHeaderAnd48BytesWithoutAMessage) {
    expectNothingChanges([this] { save(file); });
    EXPECT_EQ(dialogs.seen(), 1);
    EXPECT_EQ(readFile(file), fileOf(Header, SomePalette));
    EXPECT_EQ(support::timesOpen(file), 0);
}

TEST_F(PaletteFile, ComesBackFromTheDiskAsItWasSaved) {
    save(file);
    palette = support::Vga;
    window().setPal(palette.data());
    load(file);
    EXPECT_EQ(palette, SomePalette);
    EXPECT_EQ(paintedPalette(window()), SomePalette);
}

TEST_F(PaletteFile, ReplacesALongerFileWhole) {
    writeFile(file, Bytes(5000, 0x03));
    save(file);
    EXPECT_EQ(readFile(file), fileOf(Header, SomePalette));
}

TEST_F(PaletteFile, IsNotSavedWhenTheDialogIsCancelled) {
    expectNothingChanges([this] {
        dialogs.expectFile(SaveQuestion, std::nullopt);
        choose(&Members::save_palette);
    });
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST_F(PaletteFile, IsNotSavedIntoAFolderThatIsReadOnly) {
    support::closeFolder(folder.path());
    const support::WithoutPrivileges user;
    expectNothingChanges([this] {
        dialogs.expectFile(SaveQuestion, wxString::FromUTF8(file.string()));
        support::expectPlainMessage(dialogs, "File Error");
        choose(&Members::save_palette);
    });
    EXPECT_FALSE(std::filesystem::exists(file));
}

class UnwritablePaletteFile : public PaletteFile, public testing::WithParamInterface<Place> {};

TEST_P(UnwritablePaletteFile, IsReportedAndChangesNothing) {
    const path chosen = GetParam().make(folder.path());
    expectNothingChanges([&] {
        dialogs.expectFile(SaveQuestion, wxString::FromUTF8(chosen.string()));
        support::expectPlainMessage(dialogs, "File Error");
        choose(&Members::save_palette);
    });
}

INSTANTIATE_TEST_SUITE_P(
    ThatIs, UnwritablePaletteFile,
    testing::Values(Place{"InAMissingFolder", [](const path& at) { return at / "no" / "x.pal"; }},
                    Place{"AFolder", [](const path& at) { return at; }},
                    Place{"OfTheKernel", [](const path&) { return "/proc/lumadot.pal"; }},
                    Place{"APipe", pipeIn}),
    [](const auto& test) { return test.param.what; });

TEST_F(PaletteFile, ThatOpensButCannotBeWrittenIsNotReported) {
    expectNothingChanges([this] { save("/dev/full"); });
    EXPECT_EQ(dialogs.seen(), 1);
}

TEST_F(PaletteFile, HasDialogsThatBelongToTheWindow) {
    support::showAndWait(window());
    for (const auto item : {&Members::load_palette, &Members::save_palette}) {
        dialogs.expect([this](wxDialog& dialog) -> int {
            EXPECT_EQ(dialog.GetParent(), &window());
            return wxID_CANCEL;
        });
        choose(item);
    }
}

}  // namespace
