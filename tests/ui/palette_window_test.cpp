// The palette in the window: presets, the sixteen colour buttons, and the sets of shades.

#include <gmock/gmock.h>

#include <array>
#include <string>
#include <vector>

#include "device/interfaceUSB.h"
#include "tests/support/bus_log.h"
#include "tests/support/toolkit.h"
#include "tests/support/window_test.h"
#include "ui/palette.h"

namespace {

using support::ColourButtons;
using support::frame;
using support::hex;
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

struct Preset {
    int index;
    const char* name;
    const char* bytes;
};

void PrintTo(const Preset& preset, std::ostream* out) { *out << preset.name; }

// clang-format off
constexpr Preset Presets[] = {
    {0, "Vga",
     "00 00 00 80 00 00 FF 00 00 FF 00 FF 00 80 80 00 80 00 00 FF 00 00 FF FF "
     "00 00 80 80 00 80 00 00 FF 40 40 40 80 80 80 80 80 00 FF FF 00 FF FF FF"},
    {1, "Red",
     "00 00 00 11 00 00 22 00 00 33 00 00 44 00 00 55 00 00 66 00 00 77 00 00 "
     "88 00 00 99 00 00 AA 00 00 BB 00 00 CC 00 00 DD 00 00 EE 00 00 FF 00 00"},
    {2, "Green",
     "00 00 00 00 11 00 00 22 00 00 33 00 00 44 00 00 55 00 00 66 00 00 77 00 "
     "00 88 00 00 99 00 00 AA 00 00 BB 00 00 CC 00 00 DD 00 00 EE 00 00 FF 00"},
    {3, "Blue",
     "00 00 00 00 00 11 00 00 22 00 00 33 00 00 44 00 00 55 00 00 66 00 00 77 "
     "00 00 88 00 00 99 00 00 AA 00 00 BB 00 00 CC 00 00 DD 00 00 EE 00 00 FF"},
    {4, "Violet",
     "00 00 00 11 00 11 22 00 22 33 00 33 44 00 44 55 00 55 66 00 66 77 00 77 "
     "88 00 88 99 00 99 AA 00 AA BB 00 BB CC 00 CC DD 00 DD EE 00 EE FF 00 FF"},
    {5, "Cyan",
     "00 00 00 00 11 11 00 22 22 00 33 33 00 44 44 00 55 55 00 66 66 00 77 77 "
     "00 88 88 00 99 99 00 AA AA 00 BB BB 00 CC CC 00 DD DD 00 EE EE 00 FF FF"},
    {6, "Yellow",
     "00 00 00 11 11 00 22 22 00 33 33 00 44 44 00 55 55 00 66 66 00 77 77 00 "
     "88 88 00 99 99 00 AA AA 00 BB BB 00 CC CC 00 DD DD 00 EE EE 00 FF FF 00"},
    {7, "White",
     "00 00 00 11 11 11 22 22 22 33 33 33 44 44 44 55 55 55 66 66 66 77 77 77 "
     "88 88 88 99 99 99 AA AA AA BB BB BB CC CC CC DD DD DD EE EE EE FF FF FF"},
    {8, "Orange",
     "00 00 00 11 09 00 22 12 00 33 1B 00 44 24 00 55 2D 00 66 36 00 77 3F 00 "
     "88 48 00 99 51 00 AA 5A 00 BB 63 00 CC 6C 00 DD 75 00 EE 7E 00 FF 87 00"},
};
// clang-format on

class EveryPreset : public PaletteWindow, public testing::WithParamInterface<Preset> {};

INSTANTIATE_TEST_SUITE_P(Window, EveryPreset, testing::ValuesIn(Presets),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_P(EveryPreset, IsLoadedAndPaintedWhenItIsChosen) {
    palette.fill(0x5A);
    choose(GetParam().index);
    EXPECT_EQ(hex(palette), GetParam().bytes);
    EXPECT_EQ(hex(support::paintedPalette(window())), GetParam().bytes);
}

TEST_P(EveryPreset, IsPutIntoTheRecordAndToldToTheControllerByItsNumberAlone) {
    choose(GetParam().index);
    EXPECT_EQ(config.paletteIndex, GetParam().index);
    EXPECT_THAT(sentFrames(),
                ElementsAre(frame("81 C3 E7 FF 03 0" + std::to_string(GetParam().index))));
}

TEST_P(EveryPreset, IsChosenWithoutAControllerToo) {
    unplug();
    choose(GetParam().index);
    EXPECT_EQ(config.paletteIndex, GetParam().index);
    EXPECT_EQ(hex(palette), GetParam().bytes);
    EXPECT_EQ(hex(support::paintedPalette(window())), GetParam().bytes);
    EXPECT_THAT(sentFrames(), IsEmpty());
    EXPECT_EQ(dialogs.seen(), 0);
}

TEST_P(EveryPreset, IsLoadedBySwitchingThePaletteWhichSendsAndRecordsNothing) {
    config.paletteIndex = 99;
    palette.fill(0x5A);
    window().switchPalette(static_cast<unsigned char>(GetParam().index));
    EXPECT_EQ(hex(palette), GetParam().bytes);
    EXPECT_EQ(hex(support::paintedPalette(window())), GetParam().bytes);
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

/// The VGA palette, entry by entry, as a test writes it: text that can be cut and joined.
constexpr std::array<const char*, 16> VgaEntries = {
    "00 00 00", "80 00 00", "FF 00 00", "FF 00 FF", "00 80 80", "00 80 00", "00 FF 00", "00 FF FF",
    "00 00 80", "80 00 80", "00 00 FF", "40 40 40", "80 80 80", "80 80 00", "FF FF 00", "FF FF FF"};

constexpr std::array<const char*, 16> VgaColours = {
    "#000000", "#800000", "#FF0000", "#FF00FF", "#008080", "#008000", "#00FF00", "#00FFFF",
    "#000080", "#800080", "#0000FF", "#404040", "#808080", "#808000", "#FFFF00", "#FFFFFF"};

/// The VGA palette with one entry replaced.
std::string vgaBut(std::size_t entry, const char* bytes) {
    std::string text;
    for (std::size_t i = 0; i < VgaEntries.size(); ++i) {
        text += (i == 0 ? "" : " ") + std::string(i == entry ? bytes : VgaEntries[i]);
    }
    return text;
}

class EveryColourButton : public PaletteWindow, public testing::WithParamInterface<std::size_t> {};

INSTANTIATE_TEST_SUITE_P(Window, EveryColourButton, testing::Range<std::size_t>(0, 16));

TEST_P(EveryColourButton, PicksItsOwnEntryAndSendsTheWholePalette) {
    const std::size_t entry = GetParam();
    click(entry, wxColour(VgaColours[entry]), wxColour(0x12, 0x34, 0x56));
    const std::string expected = vgaBut(entry, "12 34 56");
    EXPECT_EQ(hex(palette), expected);
    EXPECT_EQ(hex(support::paintedPalette(window())), expected);
    EXPECT_THAT(sentFrames(), ElementsAre(frame("81 C3 E7 FF 04 00 01 " + expected)));
    EXPECT_EQ(hex(board->palette()), expected);
}

TEST_P(EveryColourButton, SendsThePaletteAsItIsWhenTheDialogIsCancelled) {
    const std::size_t entry = GetParam();
    click(entry, wxColour(VgaColours[entry]), std::nullopt);
    EXPECT_EQ(palette, support::Vga);
    EXPECT_EQ(support::paintedPalette(window()), support::Vga);
    EXPECT_THAT(sentFrames(),
                ElementsAre(frame("81 C3 E7 FF 04 00 01 " + vgaBut(entry, VgaEntries[entry]))));
}

TEST_P(EveryColourButton, ChangesItsEntryWithoutAControllerToo) {
    unplug();
    const std::size_t entry = GetParam();
    click(entry, wxColour(VgaColours[entry]), wxColour(1, 2, 3));
    EXPECT_EQ(hex(palette), vgaBut(entry, "01 02 03"));
    EXPECT_EQ(support::paintedPalette(window()), palette);
    EXPECT_THAT(sentFrames(), IsEmpty());
}

TEST_F(PaletteWindow, RewritesTheEntryWithTheButtonsColourWhenTheDialogIsCancelled) {
    palette[3 * 5] = 99;  // Not what the button shows.
    click(5, wxColour(VgaColours[5]), std::nullopt);
    EXPECT_EQ(palette, support::Vga);
}

TEST_F(PaletteWindow, StartsTheNextDialogWithTheColourPickedBefore) {
    click(2, wxColour(VgaColours[2]), wxColour(0x12, 0x34, 0x56));
    click(2, wxColour(0x12, 0x34, 0x56), wxColour(0xFE, 0xDC, 0xBA));
    EXPECT_EQ(hex(palette), vgaBut(2, "FE DC BA"));
}

TEST_F(PaletteWindow, KeepsTheHiddenEntriesWhenAColourIsPicked) {
    window().set4Colour();
    click(4, wxColour(VgaColours[4]), wxColour(0x12, 0x34, 0x56));
    EXPECT_THAT(sentFrames(), ElementsAre(frame("81 C3 E7 FF 04 00 01 " + vgaBut(4, "12 34 56"))));
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
    dialogs.expectColour(wxColour(VgaColours[1]), wxColour(1, 2, 3));
    setColour(&window(), &the(&Members::set_col1), 9);
    EXPECT_EQ(hex(palette), vgaBut(9, "01 02 03"));
    EXPECT_EQ(the(&Members::set_col1).GetBackgroundColour(), wxColour(1, 2, 3));
}

}  // namespace
