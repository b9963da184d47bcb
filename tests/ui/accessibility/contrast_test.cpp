// Numbers and focus on the colour buttons stand out from every colour, by the pixels on the screen.
// Run once for each of the desktop's themes, at 200 %: at 100 % the strokes of a number are thinner
// than a pixel, and none of its pixels has the text's full colour.

#include <gmock/gmock.h>
#include <wx/image.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <random>

#include "tests/support/toolkit.h"
#include "tests/support/window_test.h"
#include "ui/palette.h"

// Xlib's macros would spoil what comes after them.
#include <gdk/gdkx.h>
#include <gtk/gtk.h>

namespace {

using support::Members;
using support::runUntil;

/// The contrast that text must have.
constexpr double Readable = 4.5;

double light(unsigned char channel) {
    const double value = channel / 255.0;
    return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

double luminance(const wxColour& colour) {
    return 0.2126 * light(colour.Red()) + 0.7152 * light(colour.Green()) +
           0.0722 * light(colour.Blue());
}

/// 1 (none) to 21 (black and white).
double contrast(const wxColour& one, const wxColour& other) {
    const auto [dark, bright] = std::minmax({luminance(one), luminance(other)});
    return (bright + 0.05) / (dark + 0.05);
}

wxColour at(const wxImage& image, int x, int y) {
    return {image.GetRed(x, y), image.GetGreen(x, y), image.GetBlue(x, y)};
}

class Contrast : public support::WindowTest {
protected:
    Contrast() {
        show();
        window().Raise();
        EXPECT_TRUE(runUntil([this] { return window().IsActive(); }));
        // As after the first key.
        gtk_window_set_focus_visible(GTK_WINDOW(window().GetHandle()), TRUE);
    }

    /// The button as it is on the screen, without its border. Not with the toolkit's own means,
    /// which show the screen as it was when they were used first.
    static wxImage pictureOf(const wxButton& button) {
        constexpr int Border = 3;
        const int scale = static_cast<int>(button.GetContentScaleFactor());
        const wxRect inside = button.GetScreenRect().Deflate(Border);
        const wxRect place(inside.GetPosition() * scale, inside.GetSize() * scale);
        Display* const display = GDK_DISPLAY_XDISPLAY(gdk_display_get_default());
        XImage* const screen = XGetImage(display, DefaultRootWindow(display), place.x, place.y,
                                         static_cast<unsigned>(place.width),
                                         static_cast<unsigned>(place.height), AllPlanes, ZPixmap);
        wxImage picture(place.GetSize());
        for (int y = 0; y < place.height; ++y) {
            for (int x = 0; x < place.width; ++x) {
                const unsigned long pixel = XGetPixel(screen, x, y);
                picture.SetRGB(x, y, static_cast<unsigned char>(pixel >> 16U),
                               static_cast<unsigned char>(pixel >> 8U),
                               static_cast<unsigned char>(pixel));
            }
        }
        XDestroyImage(screen);
        return picture;
    }

    /// The best contrast that a pixel of the picture has with the colour, among those that differ
    /// from `before`, if there is one.
    static double bestContrast(const wxImage& picture, const wxColour& colour,
                               const wxImage* before = nullptr) {
        double best = 1;
        for (int y = 0; y < picture.GetHeight(); ++y) {
            for (int x = 0; x < picture.GetWidth(); ++x) {
                if (before == nullptr || at(picture, x, y) != at(*before, x, y)) {
                    best = std::max(best, contrast(at(picture, x, y), colour));
                }
            }
        }
        return best;
    }

    /// Paints the palette, and waits until it is on the screen.
    void paint(const std::array<std::uint8_t, 48>& colours) {
        the(&Members::set_PinMame).SetFocus();
        palette = colours;
        window().setPal(palette.data());
        for (std::size_t i = 0; i < 16; ++i) {
            ASSERT_TRUE(runUntil([&] { return background(i) == colourOf(i); })) << i;
        }
    }

    static wxColour colourOf(std::size_t entry) {
        return {palette[3 * entry], palette[3 * entry + 1], palette[3 * entry + 2]};
    }

    wxButton& button(std::size_t entry) { return the(support::ColourButtons[entry]); }

    /// Beside the number.
    wxColour background(std::size_t entry) {
        const wxImage picture = pictureOf(button(entry));
        return at(picture, picture.GetWidth() / 2, picture.GetHeight() - 2);
    }

    /// The theme lets colours change within a fraction of a second.
    void expectReadableNumbers() {
        for (std::size_t i = 0; i < 16; ++i) {
            ASSERT_TRUE(runUntil([&] {
                return bestContrast(pictureOf(button(i)), colourOf(i)) >= Readable;
            })) << "button "
                << i << " on " << colourOf(i).GetAsString(wxC2S_HTML_SYNTAX);
        }
    }

    void expectVisibleFocus() {
        for (std::size_t i = 0; i < 16; ++i) {
            const wxImage before = pictureOf(button(i));
            button(i).SetFocus();
            ASSERT_TRUE(runUntil([&] {
                const wxImage now = pictureOf(button(i));
                return bestContrast(now, colourOf(i), &before) >= Readable;
            })) << "button "
                << i << " on " << colourOf(i).GetAsString(wxC2S_HTML_SYNTAX);
        }
    }
};

TEST_F(Contrast, OfTheNumbersIsEnoughOnEveryPreset) {
    for (std::size_t preset = 0; preset < presets::Count; ++preset) {
        paint(presets::colours(preset));
        expectReadableNumbers();
    }
}

TEST_F(Contrast, OfTheNumbersIsEnoughOnRandomColours) {
    std::mt19937 random(20210118);
    for (int round = 0; round < 20; ++round) {
        std::array<std::uint8_t, 48> colours;
        std::ranges::generate(colours, [&] { return static_cast<std::uint8_t>(random()); });
        paint(colours);
        expectReadableNumbers();
    }
}

TEST_F(Contrast, OfTheFocusIsEnoughOnVgaAndOnRandomColours) {
    paint(presets::colours(0));
    expectVisibleFocus();
    std::mt19937 random(20210119);
    std::array<std::uint8_t, 48> colours;
    std::ranges::generate(colours, [&] { return static_cast<std::uint8_t>(random()); });
    paint(colours);
    expectVisibleFocus();
}

TEST_F(Contrast, IsKeptWhenAColourIsPicked) {
    dialogs.expectColour(*wxBLACK, *wxWHITE);
    EXPECT_TRUE(support::send(button(0), wxEVT_BUTTON));
    EXPECT_TRUE(runUntil([&] { return background(0) == *wxWHITE; }));
    expectReadableNumbers();
}

}  // namespace
