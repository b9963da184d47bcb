// Settings files and palette files: their bytes, the frames they become, and what is no such file.

#include "tests/control/control_run.h"
#include "tests/control/pauses.h"
#include "tests/support/odd_files.h"

namespace {

using support::ControlTest;
using support::Lines;
using support::lumadotctl;
using support::Ran;
using support::readFile;
using support::wire;
using support::writeFile;
using Bytes = std::vector<std::uint8_t>;

const Bytes Settings = {5,  5,  32, 33, 34, 35, 36, 37, 38, 39, 40, 41,
                        42, 43, 44, 45, 46, 47, 48, 49, 50, 0,  200};
const std::string SettingsBytes =
    "05 05 20 21 22 23 24 25 26 27 28 29 2A 2B 2C 2D 2E 2F 30 31 32 00 C8";
const Bytes Vga = {0x01, 0x00, 0x01, 0x00, 0x00, 0x00, 0x10, 0x01, 0x00, 0x00, 0x00, 0x80,
                   0x00, 0x00, 0xFF, 0x00, 0x00, 0xFF, 0x00, 0xFF, 0x00, 0x80, 0x80, 0x00,
                   0x80, 0x00, 0x00, 0xFF, 0x00, 0x00, 0xFF, 0xFF, 0x00, 0x00, 0x80, 0x80,
                   0x00, 0x80, 0x00, 0x00, 0xFF, 0x40, 0x40, 0x40, 0x80, 0x80, 0x80, 0x80,
                   0x80, 0x00, 0xFF, 0xFF, 0x00, 0xFF, 0xFF, 0xFF};
const std::string VgaFrame =
    "81 C3 E7 FF 04 00 01 00 00 00 80 00 00 FF 00 00 FF 00 FF 00 80 80 00 80 00 00 FF 00 00 FF FF "
    "00 00 80 80 00 80 00 00 FF 40 40 40 80 80 80 80 80 00 FF FF 00 FF FF FF 00*1997";

struct Files : ControlTest {
    simulator::Record recordOf(const Bytes& bytes) const {
        simulator::Record record{};
        std::copy(bytes.begin(), bytes.end(), record.begin());
        return record;
    }
};

TEST_F(Files, SettingsAreSavedAsTheTwentyThreeBytesOfTheRecord) {
    bus.plugController({.settings = recordOf(Settings)});
    EXPECT_EQ(lumadotctl({"settings", "save", file("a.dat")}),
              (Ran{0, "", "Saved the controller's settings in \"" + file("a.dat") + "\".\n"}));
    EXPECT_EQ(readFile(file("a.dat")), Settings);
    EXPECT_EQ(wire(), support::SettingsRead);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 1);
}

TEST_F(Files, SettingsOfOlderFirmwareCannotBeSavedNorCompared) {
    bus.plugController({.layout = simulator::SettingsLayout::Older});
    writeFile(file("a.dat"), Settings);
    EXPECT_EQ(lumadotctl({"settings", "save", file("b.dat")}).code, 1);
    EXPECT_FALSE(std::filesystem::exists(file("b.dat")));
    const Ran ran = lumadotctl({"settings", "diff", file("a.dat")});
    EXPECT_EQ(ran.code, 1);
    EXPECT_THAT(ran.err, testing::HasSubstr("does not tell bytes 2 to 20"));
}

TEST_F(Files, SettingsAreLoadedIntoTheController) {
    bus.plugController();
    support::takePauses();
    writeFile(file("a.dat"), Settings);
    EXPECT_EQ(lumadotctl({"settings", "load", file("a.dat")}),
              (Ran{0, "", "Loaded the settings in \"" + file("a.dat") + "\".\n"}));
    EXPECT_EQ(wire(), (Lines{"81 C3 E7 FF 20 " + SettingsBytes + " 00*2024"}));
    EXPECT_EQ(support::takePauses(), std::vector<std::int64_t>{});
}

TEST_F(Files, SettingsAreStoredASecondAfterTheyWereLoaded) {
    const auto board = bus.plugController();
    writeFile(file("a.dat"), Settings);
    support::takePauses();
    EXPECT_EQ(lumadotctl({"settings", "load", "--store", file("a.dat")}),
              (Ran{0, "", "Loaded and stored the settings in \"" + file("a.dat") + "\".\n"}));
    EXPECT_EQ(wire(),
              (Lines{"81 C3 E7 FF 20 " + SettingsBytes + " 00*2024", "81 C3 E7 FF 01 00*2047"}));
    EXPECT_EQ(support::takePauses(), std::vector<std::int64_t>{1000});
    EXPECT_EQ(board->permanent()[22], 200);
}

TEST_F(Files, SettingsInAFileAreShownWithoutController) {
    writeFile(file("a.dat"), Settings);
    EXPECT_EQ(lumadotctl({"settings", "show", file("a.dat")}),
              (Ran{0,
                   "Mode         5 Data East / Sega\n"
                   "Preset       5 Palette 5 (Cyan)\n"
                   "Enhancer     off\n"
                   "Brightness   200\n"
                   "Bytes 2-20   20 21 22 23 24 25 26 27 28 29 2A 2B 2C 2D 2E 2F 30 31 32\n",
                   ""}));
    EXPECT_TRUE(bus.calls().empty());
}

TEST_F(Files, EqualSettingsAreNoDifference) {
    bus.plugController({.settings = recordOf(Settings)});
    writeFile(file("a.dat"), Settings);
    EXPECT_EQ(lumadotctl({"settings", "diff", file("a.dat")}),
              (Ran{0, "", "The controller's settings are those in \"" + file("a.dat") + "\".\n"}));
    EXPECT_THAT(lumadotctl({"settings", "diff", file("a.dat"), "--json"}).out,
                testing::HasSubstr("\"differences\": [],\n    \"equal\": true"));
}

TEST_F(Files, DifferencesAreNamedOneByOne) {
    Bytes other = Settings;
    other[0] = 2;
    other[1] = 1;
    other[7] = 255;
    other[21] = 1;
    other[22] = 10;
    bus.plugController({.settings = recordOf(other)});
    writeFile(file("a.dat"), Settings);
    EXPECT_EQ(lumadotctl({"settings", "diff", file("a.dat")}),
              (Ran{1,
                   "mode: 5 Data East / Sega in the file, 2 Stern S.A.M. on the controller\n"
                   "preset: 5 Palette 5 (Cyan) in the file, 1 Palette 1 (Red) on the controller\n"
                   "byte 7: 37 in the file, 255 on the controller\n"
                   "enhancer: 0 in the file, 1 on the controller\n"
                   "brightness: 200 in the file, 10 on the controller\n",
                   ""}));
    const Ran ran = lumadotctl({"settings", "diff", file("a.dat"), "--json"});
    EXPECT_EQ(ran.code, 1);
    EXPECT_THAT(ran.out, testing::HasSubstr(R"(      {
        "byte": 7,
        "name": "byte 7",
        "file": 37,
        "controller": 255
      },)"));
    EXPECT_THAT(ran.out, testing::Not(testing::HasSubstr("error")));
}

TEST_F(Files, PaletteIsSent) {
    bus.plugController();
    writeFile(file("a.pal"), Vga);
    EXPECT_EQ(lumadotctl({"palette", file("a.pal")}),
              (Ran{0, "", "Sent the palette in \"" + file("a.pal") + "\".\n"}));
    EXPECT_EQ(wire(), Lines{VgaFrame});
}

TEST_F(Files, PaletteIsStoredWithTheWindowsThreeFrames) {
    bus.plugController();
    Bytes longer = Vga;
    longer.insert(longer.end(), {1, 2, 3});
    longer[3] = 99;  // Not looked at.
    writeFile(file("a.pal"), longer);
    EXPECT_EQ(lumadotctl({"palette", file("a.pal"), "--store"}),
              (Ran{0, "", "Sent and stored the palette in \"" + file("a.pal") + "\".\n"}));
    EXPECT_EQ(wire(), (Lines{"81 C3 E7 FF 03 00*2047", VgaFrame, "81 C3 E7 FF 12 00*2047"}));
}

TEST_F(Files, PaletteIsWrittenWithoutController) {
    EXPECT_EQ(lumadotctl({"palette", "--write", file("a.pal"), "--preset", "vga"}),
              (Ran{0, "", "Wrote Palette 0 (VGA) to \"" + file("a.pal") + "\".\n"}));
    EXPECT_EQ(readFile(file("a.pal")), Vga);
    EXPECT_TRUE(bus.calls().empty());
}

TEST_F(Files, AFileThatCannotBeReplacedIsLeftAsItWas) {
    const auto closed = folder.path() / "closed";
    std::filesystem::create_directory(closed);
    writeFile(closed / "a.pal", Bytes{1, 2, 3});
    support::closeFolder(closed);
    support::closeFolder(folder.path());  // Which is nobody's else: let them look into it.
    const std::string path = (closed / "a.pal").string();
    const Ran ran = [&] {
        const support::WithoutPrivileges nobody;
        return lumadotctl({"palette", "--write", path, "--preset", "vga"});
    }();
    EXPECT_EQ(ran, (Ran{7, "",
                        "lumadotctl: \"" + path +
                            "\" cannot be written: Permission denied.\n"
                            "Check the folder, its permissions and the room on the disk.\n"}));
    EXPECT_EQ(readFile(closed / "a.pal"), (Bytes{1, 2, 3}));
}

TEST_F(Files, ALinkStaysALinkAndPermissionsStay) {
    writeFile(file("real.pal"), Bytes{1});
    std::filesystem::permissions(file("real.pal"), std::filesystem::perms{0640});
    std::filesystem::create_symlink(file("real.pal"), file("link.pal"));
    EXPECT_EQ(lumadotctl({"palette", "--write", file("link.pal"), "--preset", "vga"}).code, 0);
    EXPECT_TRUE(std::filesystem::is_symlink(file("link.pal")));
    EXPECT_EQ(readFile(file("real.pal")), Vga);
    EXPECT_EQ(std::filesystem::status(file("real.pal")).permissions(),
              std::filesystem::perms{0640});
}

TEST_F(Files, AFileThatIsReadOnlyIsReplacedAndStaysSo) {
    using std::filesystem::perms;
    writeFile(file("a.pal"), Bytes{1});
    std::filesystem::permissions(file("a.pal"), perms{0444});
    EXPECT_EQ(lumadotctl({"palette", "--write", file("a.pal"), "--preset", "vga"}).code, 0);
    EXPECT_EQ(readFile(file("a.pal")), Vga);
    EXPECT_EQ(std::filesystem::status(file("a.pal")).permissions(), perms{0444});
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 1);
    std::filesystem::permissions(file("a.pal"), perms{0666});  // Windows removes no other.
}

TEST_F(Files, WhatIsNoFileIsWrittenToAsItIs) {
    EXPECT_EQ(lumadotctl({"palette", "--write", "/dev/null", "--preset", "vga"}).code, 0);
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
    EXPECT_EQ(lumadotctl({"palette", "--write", "/dev/full", "--preset", "vga"}).code, 7);
    EXPECT_EQ(lumadotctl({"palette", "--write", folder.path().string(), "--preset", "1"}).code, 7);
}

class NoSettingsFile : public Files, public testing::WithParamInterface<int> {};

TEST_P(NoSettingsFile, IsRefusedBeforeAnythingIsOpened) {
    bus.plugController();
    writeFile(file("a.dat"), Bytes(static_cast<std::size_t>(GetParam()), 1));
    for (const char* const command : {"load", "show", "diff"}) {
        EXPECT_EQ(lumadotctl({"settings", command, file("a.dat")}),
                  (Ran{7, "",
                       "lumadotctl: \"" + file("a.dat") +
                           "\" is no settings file (exactly 23 bytes).\n"
                           "Save the settings again with lumadotctl settings save.\n"}));
    }
    EXPECT_TRUE(bus.calls().empty());
}

INSTANTIATE_TEST_SUITE_P(OfThisLength, NoSettingsFile, testing::Values(0, 22, 24, 4096));

TEST_F(Files, WhatIsNoPaletteIsRefused) {
    Bytes otherStart = Vga;
    otherStart[0] = 2;
    for (const Bytes& content : {Bytes{}, Bytes(Vga.begin(), Vga.end() - 1), otherStart}) {
        writeFile(file("a.pal"), content);
        EXPECT_EQ(lumadotctl({"palette", file("a.pal")}).code, 7);
    }
}

TEST_F(Files, WhatCannotBeReadIsRefused) {
    support::makePipe(file("pipe"));
    for (const std::string& path :
         {file("missing"), folder.path().string(), file("pipe"), std::string("/dev/tty")}) {
        SCOPED_TRACE(path);
        EXPECT_EQ(lumadotctl({"settings", "load", path}).code, 7);
        EXPECT_EQ(lumadotctl({"palette", path}).code, 7);
        EXPECT_EQ(lumadotctl({"upload", path}).code, 7);
    }
    EXPECT_EQ(lumadotctl({"settings", "load", file("missing")}).err,
              "lumadotctl: \"" + file("missing") +
                  "\" cannot be read: No such file or directory.\n"
                  "Check the name and the permissions, and try again.\n");
    EXPECT_EQ(
        lumadotctl({"record", file("missing")}).err,
        "lumadotctl: \"" + file("missing") + "\" is no folder.\nMake it first, or name another.\n");
    EXPECT_TRUE(bus.calls().empty());
}

}  // namespace
