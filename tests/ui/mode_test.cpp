// What the controls that act at once do: input modes, signal enhancer, brightness.

#include <gmock/gmock.h>

#include <chrono>
#include <cstring>
#include <vector>

#include "device/interfaceUSB.h"
#include "tests/support/bus_log.h"
#include "tests/support/byte_text.h"
#include "tests/support/window_test.h"
#include "ui/palette.h"

namespace {

using support::Members;
using support::send;
using support::sentFrames;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

using Shades = std::vector<int>;

const Shades Four = {0, 1, 4, 15};
const Shades Five = {0, 3, 7, 11, 15};
const Shades Sixteen = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15};

struct ModeCase {
    const char* name;
    wxRadioButton* MainFrameBaseClass::*button;
    const Shades* shades;
    int number;
    const char* frame;
};

void PrintTo(const ModeCase& mode, std::ostream* out) { *out << mode.name; }

// clang-format off
const ModeCase Modes[] = {
    // name        button                   shades    byte 0  frame
    {"PinMame",   &Members::set_PinMame,   &Sixteen,  0, "81 C3 E7 FF 02 00*2047"},
    {"WPC",       &Members::set_WPC,       &Four,     1, "81 C3 E7 FF 02 01 00*2046"},
    {"Stern",     &Members::set_Stern,     &Sixteen,  2, "81 C3 E7 FF 02 02 00*2046"},
    {"WhiteStar", &Members::set_WhiteStar, &Four,     3, "81 C3 E7 FF 02 03 00*2046"},
    {"Spike",     &Members::set_Spike,     &Sixteen,  4, "81 C3 E7 FF 02 04 00*2046"},
    {"DataEast",  &Members::set_DataEast,  &Four,     5, "81 C3 E7 FF 02 05 00*2046"},
    {"Gottlieb1", &Members::set_Gottlieb1, &Five,     6, "81 C3 E7 FF 02 06 00*2046"},
    {"Gottlieb2", &Members::set_Gottlieb2, &Four,     7, "81 C3 E7 FF 02 07 00*2046"},
    {"Gottlieb3", &Members::set_Gottlieb3, &Four,     8, "81 C3 E7 FF 02 08 00*2046"},
    {"Capcom",    &Members::set_Capcom,    &Four,     9, "81 C3 E7 FF 02 09 00*2046"},
    {"AlvinG",    &Members::set_AlvinG,    &Five,    10, "81 C3 E7 FF 02 0A 00*2046"},
    {"Spooky",    &Members::set_Spooky,    &Sixteen, 11, "81 C3 E7 FF 02 0B 00*2046"},
    {"DE128x16",  &Members::set_DE128x16,  &Four,    12, "81 C3 E7 FF 02 0C 00*2046"},
    {"Inder",     &Members::set_Inder,     &Four,    13, "81 C3 E7 FF 02 0D 00*2046"},
    {"Sleic",     &Members::set_Sleic,     &Four,    14, "81 C3 E7 FF 02 0E 00*2046"},
    {"HomePin",   &Members::set_HomePin,   &Sixteen, 15, "81 C3 E7 FF 02 0F 00*2046"},
};
// clang-format on

/// The record in which only the bytes that a test names differ from the factory settings.
void expectFactorySettingsBut(std::size_t byte, int value) {
    auto expected = support::FactorySettings;
    expected.at(byte) = static_cast<std::uint8_t>(value);
    std::array<std::uint8_t, 23> actual;
    std::memcpy(actual.data(), &config, actual.size());
    EXPECT_EQ(support::byteText(actual), support::byteText(expected));
}

class EveryMode : public support::WindowTest, public testing::WithParamInterface<ModeCase> {
protected:
    EveryMode() {
        plug();
        open();
    }

    void select() {
        the(GetParam().button).SetValue(true);
        EXPECT_TRUE(send(the(GetParam().button), wxEVT_RADIOBUTTON, 1));
    }
};

INSTANTIATE_TEST_SUITE_P(Window, EveryMode, testing::ValuesIn(Modes),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_P(EveryMode, ShowsItsShadesWhateverWasShownBefore) {
    for (const auto before :
         {&MainFrame::set4Colour, &MainFrame::set5Colour, &MainFrame::set16Colour}) {
        (window().*before)();
        select();
        EXPECT_THAT(support::shownColours(window()), ElementsAreArray(*GetParam().shades));
    }
}

TEST_P(EveryMode, IsStoredInByteZeroAloneAndSentAtOnceInOneFrame) {
    config.inputMode = 99;
    select();
    expectFactorySettingsBut(0, GetParam().number);
    EXPECT_THAT(sentFrames(), ElementsAre(GetParam().frame));
    EXPECT_EQ(palette, support::Vga);
    EXPECT_EQ(support::paintedPalette(window()), support::Vga);
}

TEST_P(EveryMode, IsStoredAndShownWithoutAControllerToo) {
    bus.unplug(0);
    config.inputMode = 99;
    window().set4Colour();
    select();
    EXPECT_EQ(config.inputMode, GetParam().number);
    EXPECT_THAT(support::shownColours(window()), ElementsAreArray(*GetParam().shades));
    EXPECT_THAT(sentFrames(), IsEmpty());
    EXPECT_EQ(dialogs.seen(), 0);
}

// Signal enhancer

class Enhancer : public support::WindowTest {
protected:
    Enhancer() {
        plug();
        open();
    }
};

TEST_F(Enhancer, IsStoredAsOneOrZeroInByte21AloneAndSendsNothing) {
    config.enhancer = 7;
    for (const int checked : {1, 0, 1}) {
        EXPECT_TRUE(send(the(&Members::enhancer_CheckBox), wxEVT_CHECKBOX, checked));
        expectFactorySettingsBut(21, checked);
    }
    EXPECT_THAT(bus.calls(), IsEmpty());
}

// Brightness

class Brightness : public support::WindowTest,
                   public testing::WithParamInterface<const wxEventTypeTag<wxScrollEvent>*> {
protected:
    Brightness() {
        board = plug();
        open();
        slider().SetRange(0, 600);
    }

    wxSlider& slider() { return the(&Members::brightness_Slider); }

    void moveTo(int value) {
        slider().SetValue(value);
        EXPECT_TRUE(send(slider(), *GetParam()));
    }

    std::shared_ptr<simulator::Controller> board;
};

INSTANTIATE_TEST_SUITE_P(Events, Brightness,
                         testing::Values(&wxEVT_SCROLL_THUMBTRACK, &wxEVT_SCROLL_CHANGED),
                         [](const auto& row) {
                             return std::string(row.index == 0 ? "WhileDragged" : "WhenChanged");
                         });

struct Level {
    int slider;
    int stored;
    const char* frame;
};

TEST_P(Brightness, IsStoredAsItsLowByteAndSentFromTenTo255) {
    constexpr const char* Ten = "81 C3 E7 FF 08 00*12 0A 00*2034";
    constexpr Level Levels[] = {
        {10, 10, Ten},
        {11, 11, "81 C3 E7 FF 08 00*12 0B 00*2034"},
        {128, 128, "81 C3 E7 FF 08 00*12 80 00*2034"},
        {255, 255, "81 C3 E7 FF 08 00*12 FF 00*2034"},
        {256, 0, Ten},
        {260, 4, Ten},
        {300, 44, "81 C3 E7 FF 08 00*12 2C 00*2034"},
        {511, 255, "81 C3 E7 FF 08 00*12 FF 00*2034"},
        {9, 9, Ten},
        {0, 0, Ten},
    };
    for (const Level& level : Levels) {
        SCOPED_TRACE(level.slider);
        bus.clearCalls();
        moveTo(level.slider);
        expectFactorySettingsBut(22, level.stored);
        EXPECT_THAT(sentFrames(), ElementsAre(level.frame));
    }
}

TEST_P(Brightness, IsTakenFromTheSliderAndNotFromTheEvent) {
    slider().SetValue(100);
    wxScrollEvent event(*GetParam(), slider().GetId(), 55, wxHORIZONTAL);
    event.SetEventObject(&slider());
    slider().GetEventHandler()->ProcessEvent(event);
    EXPECT_EQ(config.brightness, 100);
}

TEST_P(Brightness, IsStoredWithoutAControllerTooWithThePauseAllTheSame) {
    bus.unplug(0);
    const auto start = std::chrono::steady_clock::now();
    moveTo(200);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(50));
    EXPECT_EQ(config.brightness, 200);
    EXPECT_THAT(sentFrames(), IsEmpty());
}

}  // namespace
