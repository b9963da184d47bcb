// "Load Config" and "Save Config" of the menu "File".

#include <sys/resource.h>
#include <wx/filedlg.h>

#include <chrono>

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
using support::readFile;
using support::writeFile;
using testing::ElementsAre;
using testing::ElementsAreArray;

const support::Dialogs::FileQuestion LoadQuestion = {"Open Config file",
                                                     "Config files (lumadot.dat)|lumadot.dat",
                                                     wxFD_OPEN | wxFD_FILE_MUST_EXIST, ""};
const support::Dialogs::FileQuestion SaveQuestion = {
    "Save Config file", "Config files (lumadot.dat)|lumadot.dat", wxFD_SAVE | wxFD_OVERWRITE_PROMPT,
    "lumadot.dat"};

constexpr RecordBytes ExampleRecord = {0x05, 0x05, 0x0F, 0x0A, 0x0F, 0x0C, 0x0F, 0x00,
                                       0x0F, 0x0F, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,
                                       0x00, 0x00, 0x00, 0x00, 0x01, 0x00, 0xC8};

long largestMemoryInKib() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

class SettingsFile : public Storage {
protected:
    SettingsFile() { openWithSomeSettings(); }

    void load(const path& chosen) {
        dialogs.expectFile(LoadQuestion, wxString::FromUTF8(chosen.string()));
        choose(&Members::load_config);
    }
    void load(const RecordBytes& content) {
        writeFile(file, content);
        load(file);
    }
    void save(const path& chosen) {
        dialogs.expectFile(SaveQuestion, wxString::FromUTF8(chosen.string()));
        choose(&Members::save_config);
    }

    const path file = folder.path() / "lumadot.dat";
};

// Loading

TEST_F(SettingsFile, OfTheDocumentationIsLoaded) {
    const Bytes example =
        support::pageExample(path(LUMADOT_DOCS) / "file-formats.md", "settings-file");
    ASSERT_THAT(example, ElementsAreArray(ExampleRecord));
    writeFile(file, example);
    load(file);
    EXPECT_EQ(configBytes(), ExampleRecord);
    EXPECT_THAT(support::checkedModes(window()), ElementsAre(5));
    EXPECT_EQ(the(&Members::set_pal).GetStringSelection(), "Palette 5 (Cyan)");
    EXPECT_EQ(palette, Cyan);
    EXPECT_EQ(support::paintedPalette(window()), Cyan);
    EXPECT_FALSE(the(&Members::enhancer_CheckBox).GetValue());
    EXPECT_EQ(the(&Members::brightness_Slider).GetValue(), 200);
}

TEST_F(SettingsFile, IsLoadedWithoutAMessageAndWithoutSendingAnything) {
    const auto board = plug();
    bus.clearCalls();
    load(ExampleRecord);
    EXPECT_EQ(dialogs.seen(), 1);
    EXPECT_TRUE(bus.calls().empty());
    EXPECT_EQ(board->working(), support::FactorySettings);
}

TEST_F(SettingsFile, IsClosedAfterLoading) {
    load(ExampleRecord);
    EXPECT_EQ(support::timesOpen(file), 0);
    EXPECT_THAT(readFile(file), ElementsAreArray(ExampleRecord));
}

struct OddRecord {
    std::string what;
    RecordBytes bytes;
};

void PrintTo(const OddRecord& each, std::ostream* out) { *out << each.what; }

RecordBytes with(std::size_t at, std::uint8_t value) {
    RecordBytes record = SomeRecord;
    record[at] = value;
    return record;
}

class SettingsFileWith : public SettingsFile, public testing::WithParamInterface<OddRecord> {};

TEST_P(SettingsFileWith, ComesBackFromTheDiskAsItWasSaved) {
    setConfig(GetParam().bytes);
    save(file);
    EXPECT_THAT(readFile(file), ElementsAreArray(GetParam().bytes));
    setConfig(SomeRecord);
    load(file);
    EXPECT_EQ(configBytes(), GetParam().bytes);
}

INSTANTIATE_TEST_SUITE_P(
    Values, SettingsFileWith,
    testing::Values(OddRecord{"AllZero", {}}, OddRecord{"Factory", support::FactorySettings},
                    OddRecord{"All255", {255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255,
                                         255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255}},
                    OddRecord{"All26", {26, 26, 26, 26, 26, 26, 26, 26, 26, 26, 26, 26,
                                        26, 26, 26, 26, 26, 26, 26, 26, 26, 26, 26}},
                    OddRecord{"LineEnds", {13, 10, 13, 10, 13, 10, 13, 10, 13, 10, 13, 10,
                                           13, 10, 13, 10, 13, 10, 13, 10, 13, 10, 13}},
                    OddRecord{"Mode16", with(0, 16)}, OddRecord{"Mode239", with(0, 239)},
                    OddRecord{"Preset9", with(1, 9)}, OddRecord{"Preset200", with(1, 200)},
                    OddRecord{"Enhancer2", with(21, 2)}, OddRecord{"Brightness0", with(22, 0)},
                    OddRecord{"Brightness255", with(22, 255)}),
    [](const auto& test) { return test.param.what; });

TEST_F(SettingsFile, IsNotLoadedWhenTheDialogIsCancelled) {
    expectNothingChanges([this] {
        dialogs.expectFile(LoadQuestion, std::nullopt);
        choose(&Members::load_config);
    });
}

// What is refused

struct Refused {
    std::string what;
    std::function<path(const path& folder)> make;
    int leftOpen = 0;
};

void PrintTo(const Refused& each, std::ostream* out) { *out << each.what; }

path sized(const path& folder, std::size_t size) {
    path file = folder / "lumadot.dat";
    Bytes bytes(size, 0x03);
    writeFile(file, bytes);
    return file;
}

path sparse(const path& folder, std::uintmax_t size) {
    path file = folder / "lumadot.dat";
    support::makeSparseFile(file, size);
    return file;
}

class RefusedSettingsFile : public SettingsFile, public testing::WithParamInterface<Refused> {};

TEST_P(RefusedSettingsFile, IsReportedAtOnceAndChangesNothing) {
    const path chosen = GetParam().make(folder.path());
    const long before = largestMemoryInKib();
    const auto start = std::chrono::steady_clock::now();
    expectNothingChanges([&] {
        dialogs.expectFile(LoadQuestion, wxString::FromUTF8(chosen.string()));
        support::expectPlainMessage(dialogs, "File Error");
        choose(&Members::load_config);
    });
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(30));
    EXPECT_LT(largestMemoryInKib() - before, 100 << 10);
    EXPECT_EQ(support::timesOpen(chosen), GetParam().leftOpen);
}

INSTANTIATE_TEST_SUITE_P(
    ThatIs, RefusedSettingsFile,
    testing::Values(
        Refused{"Missing", [](const path& folder) { return folder / "missing"; }},
        Refused{"InAMissingFolder", [](const path& folder) { return folder / "no" / "x"; }},
        Refused{"AFolder", [](const path& folder) { return folder; }, 1},
        Refused{"AFolderOfTheKernel", [](const path&) { return "/proc/self/task"; }},
        Refused{"Empty", [](const path& folder) { return sized(folder, 0); }, 1},
        Refused{"OneByte", [](const path& folder) { return sized(folder, 1); }, 1},
        Refused{"OneByteShort", [](const path& folder) { return sized(folder, 22); }, 1},
        Refused{"OneByteLong", [](const path& folder) { return sized(folder, 24); }, 1},
        Refused{"TwoRecords", [](const path& folder) { return sized(folder, 46); }, 1},
        Refused{"OneGibibyte", [](const path& folder) { return sparse(folder, 1 << 30); }, 1},
        Refused{"FourGibibytesAndARecord",
                [](const path& folder) { return sparse(folder, 0x100000017); }, 1},
        Refused{"APipe",
                [](const path& folder) {
                    support::makePipe(folder / "pipe");
                    return folder / "pipe";
                }},
        Refused{"ADeviceWithoutEnd", [](const path&) { return "/dev/zero"; }},
        Refused{"ShorterThanItsLength",
                [](const path&) { return "/sys/devices/system/cpu/online"; }, 1}),
    [](const auto& test) { return test.param.what; });

TEST_F(SettingsFile, WithoutReadPermissionIsRefused) {
    writeFile(file, ExampleRecord);
    std::filesystem::permissions(file, std::filesystem::perms::none);
    support::closeFolder(folder.path());
    const support::WithoutPrivileges user;
    expectNothingChanges([&] {
        dialogs.expectFile(LoadQuestion, wxString::FromUTF8(file.string()));
        support::expectPlainMessage(dialogs, "File Error");
        choose(&Members::load_config);
    });
}

TEST_F(SettingsFile, IsLoadedAfterOneThatWasRefused) {
    sized(folder.path(), 22);
    dialogs.expectFile(LoadQuestion, wxString::FromUTF8(file.string()));
    support::expectPlainMessage(dialogs, "File Error");
    choose(&Members::load_config);
    load(ExampleRecord);
    EXPECT_EQ(configBytes(), ExampleRecord);
}

// Saving

TEST_F(SettingsFile, OfTheDocumentationIsSaved) {
    setConfig(ExampleRecord);
    save(file);
    EXPECT_EQ(readFile(file),
              support::pageExample(path(LUMADOT_DOCS) / "file-formats.md", "settings-file"));
}

TEST_F(SettingsFile, IsSavedWithoutAMessageAndChangesNothingElse) {
    expectNothingChanges([this] { save(file); });
    EXPECT_EQ(dialogs.seen(), 1);
    EXPECT_THAT(readFile(file), ElementsAreArray(SomeRecord));
    EXPECT_EQ(support::timesOpen(file), 0);
}

TEST_F(SettingsFile, HoldsWhatTheControlsHaveChangedSince) {
    support::send(the(&Members::set_Spooky), wxEVT_RADIOBUTTON, 1);
    support::send(the(&Members::enhancer_CheckBox), wxEVT_CHECKBOX, 1);
    save(file);
    EXPECT_THAT(readFile(file), ElementsAre(11, 3, 32, 33, 34, 35, 36, 37, 38, 39, 40, 41, 42, 43,
                                            44, 45, 46, 47, 48, 49, 50, 1, 77));
}

TEST_F(SettingsFile, ReplacesALongerFileWhole) {
    sized(folder.path(), 5000);
    save(file);
    EXPECT_THAT(readFile(file), ElementsAreArray(SomeRecord));
}

TEST_F(SettingsFile, IsNotSavedWhenTheDialogIsCancelled) {
    expectNothingChanges([this] {
        dialogs.expectFile(SaveQuestion, std::nullopt);
        choose(&Members::save_config);
    });
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

class UnwritableSettingsFile : public SettingsFile, public testing::WithParamInterface<Refused> {};

TEST_P(UnwritableSettingsFile, IsNotReported) {
    const path chosen = GetParam().make(folder.path());
    expectNothingChanges([&] { save(chosen); });
    EXPECT_EQ(dialogs.seen(), 1);
}

INSTANTIATE_TEST_SUITE_P(
    ThatIs, UnwritableSettingsFile,
    testing::Values(Refused{"InAMissingFolder", [](const path& at) { return at / "no" / "x"; }},
                    Refused{"AFolder", [](const path& at) { return at; }},
                    Refused{"OfTheKernel", [](const path&) { return "/proc/lumadot.dat"; }},
                    Refused{"OnAFullDisk", [](const path&) { return "/dev/full"; }},
                    Refused{"APipe",
                            [](const path& at) {
                                support::makePipe(at / "pipe");
                                return at / "pipe";
                            }}),
    [](const auto& test) { return test.param.what; });

TEST_F(SettingsFile, IsNotSavedIntoAFolderThatIsReadOnly) {
    support::closeFolder(folder.path());
    const support::WithoutPrivileges user;
    expectNothingChanges([this] { save(file); });
    EXPECT_EQ(dialogs.seen(), 1);
    EXPECT_FALSE(std::filesystem::exists(file));
}

TEST_F(SettingsFile, HasDialogsThatBelongToTheWindow) {
    support::showAndWait(window());
    for (const auto item : {&Members::load_config, &Members::save_config}) {
        dialogs.expect([this](wxDialog& dialog) -> int {
            EXPECT_EQ(dialog.GetParent(), &window());
            return wxID_CANCEL;
        });
        choose(item);
    }
}

}  // namespace
