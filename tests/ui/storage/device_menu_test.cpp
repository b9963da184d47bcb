// The menu "Device", except for "Load Config" and "Upload File".

#include "tests/ui/storage/device_menu.h"
#include "device/interfaceUSB.h"
#include "tests/support/bus_log.h"
#include "tests/support/toolkit.h"
#include "ui/palette.h"

namespace {

using support::callLines;
using support::connection;
using support::joined;
using support::Members;
using testing::ElementsAre;
using testing::IsEmpty;
using namespace std::chrono_literals;

// "Save Config"

class SaveToDevice : public DeviceMenu {
protected:
    SaveToDevice() { openWithSomeSettings(); }
};

TEST_F(SaveToDevice, SendsTheRecordWaitsASecondAndLetsItBeStored) {
    plug();
    choose(&Members::save_Device);
    EXPECT_EQ(callLines(),
              joined({connection({"out 0x01 2052 1000ms #0: 81 C3 E7 FF 20 05 03 20 21 22 23 24 25 "
                                  "26 27 28 29 2A 2B 2C 2D 2E 2F 30 31 32 00 4D 00*2024"}),
                      connection({"out 0x01 2052 1000ms #0: 81 C3 E7 FF 01 00*2047"})}));
    EXPECT_GE(sentAt(1) - sentAt(0), 1000ms);
    EXPECT_EQ(dialogs.seen(), 0);
}

TEST_F(SaveToDevice, HandlesNoEventsWhileItWaitsAndChangesNothing) {
    plug();
    bool ran = false;
    window().CallAfter([&] { ran = true; });
    const std::string before = everything();
    choose(&Members::save_Device);
    EXPECT_FALSE(ran);
    EXPECT_EQ(everything(), before);
    EXPECT_TRUE(support::runUntil([&] { return ran; }));
}

TEST_F(SaveToDevice, KeepsTheSettingsOverARestartOfTheController) {
    const simulator::ControllerOptions options = {.store = folder.path()};
    const auto board = plug(options);
    choose(&Members::save_Device);
    EXPECT_EQ(board->permanent(), SomeRecord);

    bus.unplug(0);
    setConfig(support::FactorySettings);
    plug(options);
    expectLoaded("Firmware Version: V4.02b\nUnique ID: 3A7F00C21D5E9B64");
    choose(&Members::load_Device);
    EXPECT_EQ(configBytes(), SomeRecord);
}

TEST_F(SaveToDevice, WithoutControllerWaitsAndSaysNothing) {
    const auto start = std::chrono::steady_clock::now();
    choose(&Members::save_Device);
    EXPECT_GE(std::chrono::steady_clock::now() - start, 1000ms);
    EXPECT_EQ(callLines(), joined({support::emptyBusLines(), support::emptyBusLines()}));
    EXPECT_EQ(dialogs.seen(), 0);
}

TEST_F(SaveToDevice, SaysNothingWhenNoTransferSucceeds) {
    bus.plug({});
    choose(&Members::save_Device);
    const auto unanswered = connection({"out 0x01 2052 1000ms #0"});
    EXPECT_EQ(callLines(), joined({unanswered, unanswered}));
    EXPECT_EQ(dialogs.seen(), 0);
}

// "Save Palette"

class SavePaletteToDevice : public DeviceMenu {
protected:
    SavePaletteToDevice() { openWithSomeSettings(); }
};

TEST_F(SavePaletteToDevice, SendsPresetZeroPaletteAndStoreWithoutAPause) {
    plug();
    choose(&Members::palette_Device);
    EXPECT_EQ(callLines(),
              joined({connection({"out 0x01 2052 1000ms #0: 81 C3 E7 FF 03 00*2047"}),
                      connection({"out 0x01 2052 1000ms #0: 81 C3 E7 FF 04 00 01 "
                                  "10 11 12 13 14 15 16 17 18 19 1A 1B 1C 1D 1E 1F "
                                  "20 21 22 23 24 25 26 27 28 29 2A 2B 2C 2D 2E 2F "
                                  "30 31 32 33 34 35 36 37 38 39 3A 3B 3C 3D 3E 3F 00*1997"}),
                      connection({"out 0x01 2052 1000ms #0: 81 C3 E7 FF 12 00*2047"})}));
    EXPECT_LT(sentAt(2) - sentAt(0), 500ms);
    EXPECT_EQ(dialogs.seen(), 0);
}

TEST_F(SavePaletteToDevice, ChangesNothingInTheTool) {
    plug();
    const std::string before = everything();
    choose(&Members::palette_Device);
    EXPECT_EQ(everything(), before);
}

TEST_F(SavePaletteToDevice, KeepsThePaletteOverARestartOfTheController) {
    const simulator::ControllerOptions options = {.store = folder.path()};
    plug(options);
    choose(&Members::palette_Device);
    EXPECT_EQ(simulator::Controller(options).permanentPalette(), SomePalette);
}

TEST_F(SavePaletteToDevice, WithoutControllerSaysNothing) {
    choose(&Members::palette_Device);
    EXPECT_THAT(support::sentFrames(), IsEmpty());
    EXPECT_EQ(dialogs.seen(), 0);
}

// "Reset"

class ResetOfDevice : public DeviceMenu {
protected:
    ResetOfDevice() {
        board = plug({.uniqueId = "A1", .settings = {2,  5,  1,  2,  3,  4,  5,  6,  7,  8, 9, 10,
                                                     11, 12, 13, 14, 15, 16, 17, 18, 19, 1, 50}});
        open();
    }
    std::shared_ptr<simulator::Controller> board;
};

TEST_F(ResetOfDevice, RestartsWaitsThreeSecondsAndShowsTheStoredSettings) {
    support::send(the(&Members::set_Spooky), wxEVT_RADIOBUTTON, 1);
    the(&Members::set_Spooky).SetValue(true);
    ASSERT_EQ(board->working()[0], 11);
    ASSERT_EQ(config.inputMode, 11);
    palette = SomePalette;
    bus.clearCalls();

    choose(&Members::reset_Device);
    EXPECT_EQ(callLines(), joined({connection({"out 0x01 2052 1000ms #0: 81 C3 E7 FF 00*2048"}),
                                   connection({"out 0x01 2052 1000ms #0: 81 C3 E7 FF 10 00*2047",
                                               "in 0x81 63 1000ms #0"})}));
    EXPECT_GE(sentAt(1) - sentAt(0), 3000ms);
    EXPECT_EQ(dialogs.seen(), 0);
    EXPECT_THAT(configBytes(), ElementsAre(2, 5, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15,
                                           16, 17, 18, 19, 1, 50));
    EXPECT_THAT(support::checkedModes(window()), ElementsAre(2));
    EXPECT_EQ(the(&Members::brightness_Slider).GetValue(), 50);
    EXPECT_EQ(palette, Cyan);
    EXPECT_EQ(support::paintedPalette(window()), Cyan);
}

TEST_F(ResetOfDevice, DoesNotReadTheUniqueId) {
    ASSERT_STREQ(UIDString, "A1");
    bus.unplug(0);
    plug({.firmware = "V9.99z", .uniqueId = "X2"});
    choose(&Members::reset_Device);
    EXPECT_STREQ(UIDString, "A1");
    EXPECT_STREQ(versionString, "V9.99z");
    EXPECT_EQ(the(&Members::wpc_Label).GetLabel(), "Bally/Williams");
}

TEST_F(ResetOfDevice, WithoutControllerWaitsSaysNothingAndShowsTheSettings) {
    bus.unplug(0);
    setConfig(SomeRecord);
    const auto start = std::chrono::steady_clock::now();
    choose(&Members::reset_Device);
    EXPECT_GE(std::chrono::steady_clock::now() - start, 3000ms);
    EXPECT_EQ(dialogs.seen(), 0);
    EXPECT_EQ(callLines(), joined({support::emptyBusLines(), support::emptyBusLines()}));
    EXPECT_THAT(support::checkedModes(window()), ElementsAre(5));
    EXPECT_EQ(configBytes(), SomeRecord);
}

TEST_F(ResetOfDevice, ReportsAControllerThatTakesLonger) {
    bus.unplug(0);
    plug({.restartTime = 3600000});
    setConfig(SomeRecord);
    dialogs.expectMessage(Unsupported, "Error");
    choose(&Members::reset_Device);
    EXPECT_EQ(configBytes(), SomeRecord);
    MyLibusbDeviceHandle = nullptr;
}

}  // namespace
