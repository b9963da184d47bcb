// How the window shows a settings record.

#include <gmock/gmock.h>

#include <cstring>
#include <optional>
#include <vector>

#include "device/interfaceUSB.h"
#include "tests/support/toolkit.h"
#include "tests/support/window_test.h"
#include "ui/palette.h"

namespace {

using support::Members;
using support::ModeButtons;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr int DataEast = 5;

class Binding : public support::WindowTest {
protected:
    Binding() { open(); }

    void bind() { window().setConfig(config); }

    wxRadioButton& mode(int number) { return the(ModeButtons[static_cast<std::size_t>(number)]); }

    std::vector<int> shownModes() {
        std::vector<int> shown;
        for (int number = 0; number < 16; ++number) {
            if (mode(number).IsShown()) {
                shown.push_back(number);
            }
        }
        return shown;
    }
};

// Input mode

TEST_F(Binding, ChecksTheButtonOfTheMode) {
    for (int number = 1; number < 16; ++number) {
        config.inputMode = static_cast<std::uint8_t>(number);
        bind();
        EXPECT_THAT(support::checkedModes(window()), ElementsAre(number));
    }
}

TEST_F(Binding, LeavesTheButtonThatWasCheckedWhenTheModeIsZeroOrUnknown) {
    mode(DataEast).SetValue(true);
    for (int number = 0; number < 256; number = number == 0 ? 16 : number + 1) {
        config.inputMode = static_cast<std::uint8_t>(number);
        bind();
        EXPECT_THAT(support::checkedModes(window()), ElementsAre(DataEast)) << "mode " << number;
    }
}

// Brightness, enhancer, preset

TEST_F(Binding, MovesTheSliderToTheBrightnessWithinItsRange) {
    for (int brightness = 0; brightness < 256; ++brightness) {
        config.brightness = static_cast<std::uint8_t>(brightness);
        bind();
        EXPECT_EQ(the(&Members::brightness_Slider).GetValue(), brightness < 10 ? 10 : brightness);
        EXPECT_EQ(config.brightness, brightness);
    }
}

TEST_F(Binding, ChecksTheEnhancerForEveryValueButZero) {
    for (int enhancer = 0; enhancer < 256; ++enhancer) {
        config.enhancer = static_cast<std::uint8_t>(enhancer);
        bind();
        EXPECT_EQ(the(&Members::enhancer_CheckBox).GetValue(), enhancer != 0) << enhancer;
        EXPECT_EQ(config.enhancer, enhancer);
    }
}

TEST_F(Binding, SelectsThePresetAndLoadsIt) {
    config.paletteIndex = 7;
    bind();
    constexpr std::array<std::uint8_t, 48> White = {
        0x00, 0x00, 0x00, 0x11, 0x11, 0x11, 0x22, 0x22, 0x22, 0x33, 0x33, 0x33,
        0x44, 0x44, 0x44, 0x55, 0x55, 0x55, 0x66, 0x66, 0x66, 0x77, 0x77, 0x77,
        0x88, 0x88, 0x88, 0x99, 0x99, 0x99, 0xAA, 0xAA, 0xAA, 0xBB, 0xBB, 0xBB,
        0xCC, 0xCC, 0xCC, 0xDD, 0xDD, 0xDD, 0xEE, 0xEE, 0xEE, 0xFF, 0xFF, 0xFF};
    EXPECT_EQ(the(&Members::set_pal).GetSelection(), 7);
    EXPECT_EQ(palette, White);
    EXPECT_EQ(support::paintedPalette(window()), White);
}

TEST_F(Binding, TakesEveryPresetNumberAndKeepsThePaletteAboveEight) {
    for (int index = 0; index < 256; ++index) {
        palette.fill(0x5A);
        config.paletteIndex = static_cast<std::uint8_t>(index);
        bind();
        EXPECT_EQ(the(&Members::set_pal).GetSelection(), index <= 8 ? index : wxNOT_FOUND);
        EXPECT_EQ(palette[0] == 0x5A, index > 8) << index;
        EXPECT_EQ(support::paintedPalette(window()), palette) << index;
        EXPECT_EQ(config.paletteIndex, index);
    }
}

TEST_F(Binding, ResetsCustomColoursToThePresetThatIsSelectedAlready) {
    palette[3] = 1;
    window().setPal(palette.data());
    bind();
    EXPECT_EQ(palette, support::Vga);
    EXPECT_EQ(support::paintedPalette(window()), support::Vga);
}

// What it leaves alone

TEST_F(Binding, SendsNothingAndChangesNothingInTheRecord) {
    plug();
    for (int value = 0; value < 256; ++value) {
        std::array<std::uint8_t, 23> record;
        record.fill(static_cast<std::uint8_t>(value));
        std::memcpy(&config, record.data(), record.size());
        bind();
        EXPECT_EQ(std::memcmp(&config, record.data(), record.size()), 0) << value;
    }
    EXPECT_THAT(bus.calls(), IsEmpty());
    EXPECT_EQ(dialogs.seen(), 0);
}

TEST_F(Binding, KeepsTheNumberOfColourButtonsThatTheLastModeLeft) {
    window().set5Colour();
    config.inputMode = 2;  // A system of sixteen shades.
    bind();
    EXPECT_THAT(support::shownColours(window()), ElementsAre(0, 3, 7, 11, 15));
}

/// Counts the repaints of the whole window.
class Repainted : public MainFrame {
public:
    Repainted() : MainFrame(nullptr) { repaints = 0; }
    void Refresh(bool eraseBackground, const wxRect* rect) override {
        repaints += rect == nullptr ? 1 : 0;
        MainFrame::Refresh(eraseBackground, rect);
    }
    int repaints = 0;
};

TEST_F(Binding, RepaintsTheWholeWindow) {
    auto* const frame = new Repainted;
    frame->setConfig(config);
    EXPECT_EQ(frame->repaints, 1);
    frame->Destroy();
}

TEST_F(Binding, DoesNotTouchTheDumpCheckBox) {
    for (const bool checked : {true, false}) {
        the(&Members::dump_CheckBox).SetValue(checked);
        bind();
        EXPECT_EQ(the(&Members::dump_CheckBox).GetValue(), checked);
    }
}

// Board variant

class BoardVariant : public Binding {
protected:
    void showBoard(const char* uniqueId) {
        std::strncpy(UIDString, uniqueId, sizeof UIDString - 1);
        bind();
    }

    void expectLarge() {
        EXPECT_EQ(the(&Members::wpc_Label).GetLabel(), "Sega192x64");
        EXPECT_THAT(shownModes(), ElementsAre(0, 1));
    }

    void expectStandard() {
        EXPECT_EQ(the(&Members::wpc_Label).GetLabel(), "Bally/Williams");
        EXPECT_THAT(shownModes(),
                    ElementsAre(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15));
    }
};

TEST_F(BoardVariant, IsLargeForTheFirstLettersXSAndG) {
    for (const char* id : {"X", "S12", "G9999"}) {
        SCOPED_TRACE(id);
        showBoard(id);
        expectLarge();
        showBoard("");
    }
}

TEST_F(BoardVariant, IsStandardForEveryOtherFirstCharacter) {
    for (int first = 0; first < 256; ++first) {
        if (first == 'X' || first == 'S' || first == 'G') {
            continue;
        }
        SCOPED_TRACE(first);
        const char id[] = {static_cast<char>(first), 'X', '\0'};
        showBoard(id);
        expectStandard();
    }
}

TEST_F(BoardVariant, IsTakenAfreshEachTime) {
    showBoard("X1");
    expectLarge();
    showBoard("31");
    expectStandard();
    showBoard("G1");
    expectLarge();
}

TEST_F(BoardVariant, KeepsTheHeadingsOfBothModes) {
    showBoard("S1");
    EXPECT_TRUE(the(&Members::pinmame_Label).IsShown());
    EXPECT_TRUE(the(&Members::pinball_Label).IsShown());
    EXPECT_TRUE(the(&Members::wpc_Label).IsShown());
}

TEST_F(BoardVariant, ChecksTheFirstPlatformOnTheLargeBoard) {
    config.inputMode = 1;
    showBoard("S1");
    EXPECT_THAT(support::checkedModes(window()), ElementsAre(1));
}

TEST_F(BoardVariant, ChecksAHiddenButtonAllTheSame) {
    config.inputMode = 7;
    showBoard("G1");
    EXPECT_FALSE(mode(7).IsShown());
    EXPECT_THAT(support::checkedModes(window()), ElementsAre(7));
}

// What is hidden must close its gap at once, not with the next resize.

std::vector<wxRect> places(MainFrameBaseClass& frame) {
    std::vector<wxRect> rects;
    for (const wxWindow* child : frame.GetChildren()) {
        if (child->IsShown()) {
            rects.push_back(child->GetRect());
        }
    }
    return rects;
}

class LayoutAfterHiding : public support::WindowTest {
protected:
    /// The window looks the same before and after it was one pixel larger.
    void expectSettled() {
        const auto before = places(window());
        const wxSize size = window().GetSize();
        for (const wxSize& next : {size + wxSize(1, 1), size}) {
            window().SetSize(next);
            ASSERT_TRUE(support::runUntil([&] { return window().GetSize() == next; }));
        }
        window().Layout();
        EXPECT_EQ(places(window()), before);
    }
};

TEST_F(LayoutAfterHiding, IsSettledAfterEachSetOfShades) {
    show();
    window().set4Colour();
    expectSettled();
    window().set5Colour();
    expectSettled();
    window().set16Colour();
    expectSettled();
}

TEST_F(LayoutAfterHiding, IsSettledAfterTheBoardChanged) {
    show();
    for (const char first : {'X', '3', 'S'}) {
        UIDString[0] = first;
        window().setConfig(config);
        expectSettled();
    }
}

TEST_F(LayoutAfterHiding, KeepsTheColourButtonsInsideTheWindow) {
    show();
    window().set4Colour();
    window().set16Colour();
    for (const auto button : support::ColourButtons) {
        EXPECT_TRUE(window().GetClientRect().Contains(the(button).GetRect()));
    }
}

}  // namespace
