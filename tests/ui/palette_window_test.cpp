// The palette in the window: presets, the sixteen colour buttons, and the sets of shades.

#include <gmock/gmock.h>

#include <array>
#include <string>
#include <vector>

#include "device/interfaceUSB.h"
#include "tests/support/bus_log.h"
#include "tests/support/byte_text.h"
#include "tests/support/presets.h"
#include "tests/support/toolkit.h"
#include "tests/support/window_test.h"
#include "ui/palette.h"

namespace {

using support::byteText;
using support::ColourButtons;
using support::Members;
using support::send;
using support::sentFrames;
using testing::ElementsAre;
using testing::IsEmpty;

using Bytes = std::array<std::uint8_t, 48>;

class PaletteWindow : public support::WindowTest {
protected:
    PaletteWindow() {
        board = plug();
        open();
    }

    void choose(int preset) {
        the(&Members::set_pal).SetSelection(preset);
        EXPECT_TRUE(send(the(&Members::set_pal), wxEVT_CHOICE, preset));
    }

    /// Clicks on the colour button and answers the dialog that comes up.
    void click(std::size_t entry, const wxColour& before, const std::optional<wxColour>& picked) {
        dialogs.expectColour(before, picked);
        EXPECT_TRUE(send(the(ColourButtons[entry]), wxEVT_BUTTON));
    }

    void unplug() { bus.unplug(0); }

    std::shared_ptr<simulator::Controller> board;
};

// Presets

class EveryPreset : public PaletteWindow, public testing::WithParamInterface<support::Preset> {
protected:
    void expectLoadedAndPainted() {
        EXPECT_EQ(byteText(palette), GetParam().bytes);
        EXPECT_EQ(byteText(support::paintedPalette(window())), GetParam().bytes);
    }
};

INSTANTIATE_TEST_SUITE_P(Window, EveryPreset, testing::ValuesIn(support::Presets),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_P(EveryPreset, IsLoadedPaintedRecordedAndToldToTheControllerByItsNumberAlone) {
    palette.fill(0x5A);
    choose(GetParam().index);
    expectLoadedAndPainted();
    EXPECT_EQ(config.paletteIndex, GetParam().index);
    EXPECT_THAT(sentFrames(), ElementsAre(GetParam().selected));
}

TEST_P(EveryPreset, IsChosenWithoutAControllerToo) {
    unplug();
    palette.fill(0x5A);
    choose(GetParam().index);
    expectLoadedAndPainted();
    EXPECT_EQ(config.paletteIndex, GetParam().index);
    EXPECT_THAT(sentFrames(), IsEmpty());
    EXPECT_EQ(dialogs.seen(), 0);
}

TEST_P(EveryPreset, IsLoadedBySwitchingThePaletteWhichSendsAndRecordsNothing) {
    config.paletteIndex = 99;
    palette.fill(0x5A);
    window().switchPalette(static_cast<unsigned char>(GetParam().index));
    expectLoadedAndPainted();
    EXPECT_EQ(config.paletteIndex, 99);
    EXPECT_THAT(bus.calls(), IsEmpty());
}

TEST_F(PaletteWindow, KeepsThePaletteAndRepaintsItForPresetsThatDoNotExist) {
    Bytes custom;
    custom.fill(0x5A);
    Bytes other;
    other.fill(0x11);
    for (int index = 9; index < 256; ++index) {
        palette = custom;
        window().setPal(other.data());
        window().switchPalette(static_cast<unsigned char>(index));
        EXPECT_EQ(palette, custom) << index;
        EXPECT_EQ(support::paintedPalette(window()), custom) << index;
    }
    EXPECT_THAT(bus.calls(), IsEmpty());
}

// Painting and shades

TEST_F(PaletteWindow, PaintsAllSixteenButtonsOpaqueHiddenOnesToo) {
    window().set4Colour();
    Bytes colours;
    for (std::size_t i = 0; i < colours.size(); ++i) {
        colours[i] = static_cast<std::uint8_t>(200 - i);
    }
    window().setPal(colours.data());
    EXPECT_EQ(support::paintedPalette(window()), colours);
    for (const auto button : ColourButtons) {
        EXPECT_EQ(the(button).GetBackgroundColour().Alpha(), 255);
    }
    EXPECT_EQ(palette, support::Vga);
    EXPECT_THAT(bus.calls(), IsEmpty());
}

TEST_F(PaletteWindow, ShowsTheButtonsOfEachSetOfShades) {
    window().set4Colour();
    EXPECT_THAT(support::shownColours(window()), ElementsAre(0, 1, 4, 15));
    window().set5Colour();
    EXPECT_THAT(support::shownColours(window()), ElementsAre(0, 3, 7, 11, 15));
    window().set4Colour();
    EXPECT_THAT(support::shownColours(window()), ElementsAre(0, 1, 4, 15));
    window().set16Colour();
    EXPECT_THAT(support::shownColours(window()),
                ElementsAre(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15));
}

TEST_F(PaletteWindow, KeepsColoursAndPaletteWhateverIsShown) {
    for (const auto show :
         {&MainFrame::set4Colour, &MainFrame::set5Colour, &MainFrame::set16Colour}) {
        (window().*show)();
        EXPECT_EQ(palette, support::Vga);
        EXPECT_EQ(support::paintedPalette(window()), support::Vga);
    }
    EXPECT_THAT(bus.calls(), IsEmpty());
}

// One colour

/// A colour of the VGA palette.
wxColour vga(std::size_t entry) {
    return {support::Vga[3 * entry], support::Vga[3 * entry + 1], support::Vga[3 * entry + 2]};
}

/// The VGA palette as text, with one entry replaced.
std::string vgaBut(std::size_t entry, const char* bytes) {
    return byteText(support::Vga).replace(9 * entry, 8, bytes);
}

std::string paletteFrame(const std::string& colours) {
    return "81 C3 E7 FF 04 00 01 " + colours + " 00*1997";
}

class EveryColourButton : public PaletteWindow, public testing::WithParamInterface<std::size_t> {};

INSTANTIATE_TEST_SUITE_P(Window, EveryColourButton, testing::Range<std::size_t>(0, 16));

TEST_P(EveryColourButton, PicksItsOwnEntryAndSendsTheWholePalette) {
    const std::size_t entry = GetParam();
    click(entry, vga(entry), wxColour(0x12, 0x34, 0x56));
    const std::string expected = vgaBut(entry, "12 34 56");
    EXPECT_EQ(byteText(palette), expected);
    EXPECT_EQ(byteText(support::paintedPalette(window())), expected);
    EXPECT_THAT(sentFrames(), ElementsAre(paletteFrame(expected)));
    EXPECT_EQ(byteText(board->palette()), expected);
}

TEST_P(EveryColourButton, SendsThePaletteAsItIsWhenTheDialogIsCancelled) {
    const std::size_t entry = GetParam();
    click(entry, vga(entry), std::nullopt);
    EXPECT_EQ(palette, support::Vga);
    EXPECT_EQ(support::paintedPalette(window()), support::Vga);
    EXPECT_THAT(sentFrames(), ElementsAre(paletteFrame(byteText(support::Vga))));
}

TEST_P(EveryColourButton, ChangesItsEntryWithoutAControllerToo) {
    unplug();
    const std::size_t entry = GetParam();
    click(entry, vga(entry), wxColour(1, 2, 3));
    EXPECT_EQ(byteText(palette), vgaBut(entry, "01 02 03"));
    EXPECT_EQ(support::paintedPalette(window()), palette);
    EXPECT_THAT(sentFrames(), IsEmpty());
}

TEST_F(PaletteWindow, RewritesTheEntryWithTheButtonsColourWhenTheDialogIsCancelled) {
    palette[3 * 5] = 99;  // Not what the button shows.
    click(5, vga(5), std::nullopt);
    EXPECT_EQ(palette, support::Vga);
}

TEST_F(PaletteWindow, StartsTheNextDialogWithTheColourPickedBefore) {
    click(2, vga(2), wxColour(0x12, 0x34, 0x56));
    click(2, wxColour(0x12, 0x34, 0x56), wxColour(0xFE, 0xDC, 0xBA));
    EXPECT_EQ(byteText(palette), vgaBut(2, "FE DC BA"));
}

TEST_F(PaletteWindow, KeepsTheHiddenEntriesWhenAColourIsPicked) {
    window().set4Colour();
    click(4, vga(4), wxColour(0x12, 0x34, 0x56));
    EXPECT_THAT(sentFrames(), ElementsAre(paletteFrame(vgaBut(4, "12 34 56"))));
}

TEST_F(PaletteWindow, KeepsThePresetNumberWhenAColourIsPicked) {
    choose(7);
    click(1, wxColour(0x11, 0x11, 0x11), wxColour(0x12, 0x34, 0x56));
    EXPECT_EQ(config.paletteIndex, 7);
    EXPECT_EQ(the(&Members::set_pal).GetSelection(), 7);
}

TEST_F(PaletteWindow, OwnsTheColourDialog) {
    support::showAndWait(window());  // A hidden window owns no dialogs.
    const wxWindow* owner = nullptr;
    dialogs.expect([&](wxDialog& dialog) {
        owner = dialog.GetParent();
        return wxID_CANCEL;
    });
    send(the(&Members::set_col0), wxEVT_BUTTON);
    EXPECT_EQ(owner, &window());
}

TEST_F(PaletteWindow, PicksAColourForAnyButtonAndEntryThatTheCallerNames) {
    dialogs.expectColour(vga(1), wxColour(1, 2, 3));
    setColour(&window(), &the(&Members::set_col1), 9);
    EXPECT_EQ(byteText(palette), vgaBut(9, "01 02 03"));
    EXPECT_EQ(the(&Members::set_col1).GetBackgroundColour(), wxColour(1, 2, 3));
}

}  // namespace
