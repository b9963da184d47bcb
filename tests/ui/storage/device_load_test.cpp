// "Load Config" of the menu "Device".

#include <wx/msgdlg.h>

#include <clocale>
#include <cstring>

#include "device/interfaceUSB.h"
#include "tests/support/bus_log.h"
#include "tests/ui/storage/device_menu.h"
#include "ui/palette.h"

namespace {

using support::connection;
using support::Members;
using testing::ElementsAre;
using testing::IsEmpty;

class LoadFromDevice : public DeviceMenu {
protected:
    LoadFromDevice() {
        openWithSomeSettings();
        board = plug({.firmware = "V3.17b",
                      .uniqueId = "3A7F00C2",
                      .settings = {9,  7,  15, 10, 15, 12, 15, 0, 15, 15, 17, 18,
                                   19, 20, 21, 22, 23, 24, 25, 0, 1,  1,  99}});
    }
    std::shared_ptr<simulator::Controller> board;
};

TEST_F(LoadFromDevice, ReadsTheSettingsThenTheUniqueId) {
    expectLoaded("Firmware Version: V3.17b\nUnique ID: 3A7F00C2");
    choose(&Members::load_Device);
    EXPECT_EQ(support::callLines(),
              support::joined({connection({"out 0x01 2052 1000ms #0: 81 C3 E7 FF 10 00*2047",
                                           "in 0x81 63 1000ms #0"}),
                               connection({"out 0x01 2052 1000ms #0: 81 C3 E7 FF 11 00*2047",
                                           "in 0x81 63 1000ms counted #0"})}));
    EXPECT_EQ(dialogs.seen(), 1);
}

TEST_F(LoadFromDevice, TakesTheWholeRecordAndBothTexts) {
    expectLoaded("Firmware Version: V3.17b\nUnique ID: 3A7F00C2");
    choose(&Members::load_Device);
    EXPECT_THAT(configBytes(), ElementsAre(9, 7, 15, 10, 15, 12, 15, 0, 15, 15, 17, 18, 19, 20, 21,
                                           22, 23, 24, 25, 0, 1, 1, 99));
    EXPECT_STREQ(versionString, "V3.17b");
    EXPECT_STREQ(UIDString, "3A7F00C2");
}

TEST_F(LoadFromDevice, ShowsThemOnlyAfterItsMessageBoxHasBeenClosed) {
    const std::string before = controls();
    dialogs.expect([&](wxDialog&) -> int {
        EXPECT_EQ(controls(), before);
        EXPECT_EQ(palette, SomePalette);
        EXPECT_EQ(config.inputMode, 9);
        EXPECT_EQ(bus.openHandles(), 0);
        return wxID_OK;
    });
    choose(&Members::load_Device);
    EXPECT_THAT(support::checkedModes(window()), ElementsAre(9));
    EXPECT_EQ(the(&Members::set_pal).GetSelection(), 7);
    EXPECT_EQ(the(&Members::brightness_Slider).GetValue(), 99);
    EXPECT_TRUE(the(&Members::enhancer_CheckBox).GetValue());
    EXPECT_NE(palette, SomePalette);
    EXPECT_EQ(support::paintedPalette(window()), palette);
}

TEST_F(LoadFromDevice, ShowsTheLargeBoardsModesByTheIdThatItHasRead) {
    bus.unplug(0);
    plug({.uniqueId = "S1"});
    expectLoaded("Firmware Version: V4.02b\nUnique ID: S1");
    choose(&Members::load_Device);
    EXPECT_EQ(the(&Members::wpc_Label).GetLabel(), "Sega192x64");
    EXPECT_FALSE(the(&Members::set_Stern).IsShown());
}

TEST_F(LoadFromDevice, OfOlderFirmwareKeepsTheVersionText) {
    std::strcpy(versionString, "V1.00a");
    bus.unplug(0);
    plug({.layout = simulator::SettingsLayout::Older, .uniqueId = ""});
    expectLoaded("Firmware Version: V1.00a\nUnique ID: ");
    choose(&Members::load_Device);
    EXPECT_THAT(configBytes(), ElementsAre(0, 0, 32, 33, 34, 35, 36, 37, 38, 39, 40, 41, 42, 43, 44,
                                           45, 46, 47, 48, 49, 50, 1, 30));
}

TEST_F(LoadFromDevice, WithoutControllerShowsTheTextsAndSettingsOfBefore) {
    bus.unplug(0);
    std::strcpy(versionString, "V2.22c");
    std::strcpy(UIDString, "0123");
    expectLoaded("Firmware Version: V2.22c\nUnique ID: 0123");
    choose(&Members::load_Device);
    EXPECT_EQ(configBytes(), SomeRecord);
    EXPECT_THAT(support::checkedModes(window()), ElementsAre(5));
    EXPECT_THAT(support::sentFrames(), IsEmpty());
}

TEST_F(LoadFromDevice, WithoutAnyControllerSoFarShowsEmptyTexts) {
    bus.unplug(0);
    expectLoaded("Firmware Version: \nUnique ID: ");
    choose(&Members::load_Device);
}

TEST_F(LoadFromDevice, BringsThePresetBackEvenWithoutController) {
    bus.unplug(0);
    expectLoaded("Firmware Version: \nUnique ID: ");
    choose(&Members::load_Device);
    EXPECT_NE(palette, SomePalette) << "custom colours give way to the record's preset";
    EXPECT_EQ(support::paintedPalette(window()), palette);
}

TEST_F(LoadFromDevice, FromASilentControllerReportsBothAndKeepsTheSettings) {
    bus.unplug(0);
    bus.plug({});
    dialogs.expectMessage(Unsupported, "Error");
    expectLoaded("Firmware Version: \nUnique ID: ");
    choose(&Members::load_Device);
    EXPECT_EQ(configBytes(), SomeRecord);
    MyLibusbDeviceHandle = nullptr;
}

/// Bytes as a controller may send them, and how they are shown.
struct Hostile {
    std::string what, firmware, id;
    std::string inUtf8, inC;  ///< the message in a UTF-8 locale, and in the locale C
};

void PrintTo(const Hostile& each, std::ostream* out) { *out << each.what; }

class LoadOfHostileTexts : public DeviceMenu, public testing::WithParamInterface<Hostile> {
protected:
    LoadOfHostileTexts() {
        open();
        plug({.firmware = GetParam().firmware, .uniqueId = GetParam().id});
    }
};

TEST_P(LoadOfHostileTexts, ShowsEveryByteInAUtf8Locale) {
    expectLoaded(wxString::FromUTF8(GetParam().inUtf8));
    choose(&Members::load_Device);
}

TEST_P(LoadOfHostileTexts, ShowsEveryByteInTheLocaleC) {
    std::setlocale(LC_CTYPE, "C");
    expectLoaded(wxString::FromUTF8(GetParam().inC));
    choose(&Members::load_Device);
}

/// For texts that both locales show alike.
Hostile alike(std::string what, std::string firmware, std::string id, const std::string& message) {
    return {std::move(what), std::move(firmware), std::move(id), message, message};
}

std::string repeated(const std::string& text, int times) {
    std::string all;
    for (int i = 0; i < times; ++i) {
        all += text;
    }
    return all;
}

INSTANTIATE_TEST_SUITE_P(
    Sample, LoadOfHostileTexts,
    testing::Values(alike("Latin1", "V\xFC\xE4\xF6\xDF\xFF", "\xE9t\xE9",
                          R"(Firmware Version: V\xFC\xE4\xF6\xDF\xFF)"
                          "\n"
                          R"(Unique ID: \xE9t\xE9)"),
                    alike("CutUtf8", "V12\xE2\x82", "\xF0\x9F",
                          R"(Firmware Version: V12\xE2\x82)"
                          "\n"
                          R"(Unique ID: \xF0\x9F)"),
                    Hostile{"Utf8", "V\xE2\x82\xAC", "\xC3\xBC",
                            "Firmware Version: V\xE2\x82\xAC\nUnique ID: \xC3\xBC",
                            R"(Firmware Version: V\xE2\x82\xAC)"
                            "\n"
                            R"(Unique ID: \xC3\xBC)"},
                    alike("HighBytes", "V\x80\x81\x82\xFE\xFF", std::string(62, '\xFF'),
                          R"(Firmware Version: V\x80\x81\x82\xFE\xFF)"
                          "\nUnique ID: " +
                              repeated(R"(\xFF)", 62)),
                    alike("ControlCharacters", "V\x01\x07\x1B\x7F\n", "\r\n\t\x01",
                          "Firmware Version: V\x01\x07\x1B\x7F\n\nUnique ID: \r\n\t\x01"),
                    alike("FormatSigns", "V%s%n%", "%s%s%n%d%*c",
                          "Firmware Version: V%s%n%\nUnique ID: %s%s%n%d%*c"),
                    alike("Markup", "V<b>&<", "</span>&amp;\\",
                          "Firmware Version: V<b>&<\nUnique ID: </span>&amp;\\"),
                    alike("LongId", "V4.02b", std::string(200, 'A'),
                          "Firmware Version: V4.02b\nUnique ID: " + std::string(62, 'A'))),
    [](const auto& test) { return test.param.what; });

}  // namespace
