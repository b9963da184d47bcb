// What is on the screen, dot by dot, and what a screen reader is told.

#include "display/painter.h"
#include "tests/support/gtk.h"
#include "tests/viewer/shown_window.h"
#include "ui/palette_file.h"

namespace {

using support::runUntil;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

using Palette = std::array<std::uint8_t, 48>;

/// Preset 8, as it is written down: 17 and 9 a step.
Palette orange() {
    Palette palette{};
    for (std::size_t i = 0; i < 16; ++i) {
        palette[3 * i] = static_cast<std::uint8_t>(17 * i);
        palette[3 * i + 1] = static_cast<std::uint8_t>(9 * i);
    }
    return palette;
}

class Looks : public ShownWindow {
protected:
    /// Whether the display's painter makes what the screen shows of these entries.
    testing::AssertionResult screenShows(const std::vector<std::uint8_t>& entries,
                                         const display::Look& look, std::size_t columns = 128) {
        const display::Painter painter(look);
        const std::size_t rows = entries.size() / columns;
        std::vector<std::uint8_t> expected(painter.pictureBytes(columns, rows));
        painter.paint(entries, columns, expected);
        const auto isShown = [&] {
            return screenOf(window.canvas())
                       .middle(static_cast<int>(columns * look.scale),
                               static_cast<int>(rows * look.scale)) == expected;
        };
        return runUntil(isShown) ? testing::AssertionSuccess()
                                 : testing::AssertionFailure() << "the screen differs";
    }

    static std::vector<std::uint8_t> mapped(std::vector<std::uint8_t> digits,
                                            const std::vector<std::uint8_t>& entries) {
        for (std::uint8_t& digit : digits) {
            digit = entries[digit];
        }
        return digits;
    }

    /// Whether the top left part of the canvas shows the picture from this pixel on.
    testing::AssertionResult screenShowsFrom(wxPoint start,
                                             const std::vector<std::uint8_t>& entries,
                                             const display::Look& look) {
        const display::Painter painter(look);
        const std::size_t line = painter.lineBytes(128);
        std::vector<std::uint8_t> picture(painter.pictureBytes(128, 32));
        painter.paint(entries, 128, picture);
        const auto isShown = [&] {
            const ScreenPixels screen = screenOf(window.canvas());
            constexpr int Columns = 300;
            constexpr int Rows = 100;
            bool same = true;
            for (int y = 0; y < Rows; ++y) {
                const auto* const shown =
                    &screen.rgb[static_cast<std::size_t>(3 * y * screen.width)];
                const auto row = static_cast<std::size_t>(start.y + y);
                same = same &&
                       std::equal(shown, shown + 3 * Columns,
                                  &picture[row * line + 3 * static_cast<std::size_t>(start.x)]);
            }
            return same;
        };
        return runUntil(isShown) ? testing::AssertionSuccess()
                                 : testing::AssertionFailure() << "the screen differs";
    }
    int pixels(int length) const {
        return static_cast<int>(length * window.GetContentScaleFactor());
    }

    std::vector<std::uint8_t> digits;
};

TEST_F(Looks, TheDisplayIsPaintedDotByDot) {
    open(chanceText(1, 42, 3, digits));
    const auto entries = mapped(digits, {0, 1, 4, 15});
    const std::size_t scale = window.canvas().look().scale;
    EXPECT_GE(scale, 4U);
    EXPECT_TRUE(screenShows(entries, {.palette = orange(), .scale = scale}));
}

TEST_F(Looks, PalettePresetsAndDotsAreSeenAtOnce) {
    open(chanceText(1, 7, 4, digits));
    const auto entries = mapped(digits, {0, 3, 7, 11, 15});
    const std::size_t scale = window.canvas().look().scale;
    window.lookBar().palette->SetFocus();
    input.Char(WXK_UP);  // White: 17 a step.
    Palette white{};
    for (std::size_t i = 0; i < 48; ++i) {
        white[i] = static_cast<std::uint8_t>(17 * (i / 3));
    }
    EXPECT_TRUE(screenShows(entries, {.palette = white, .scale = scale}));
    input.Char('R', wxMOD_CONTROL | wxMOD_SHIFT);
    EXPECT_TRUE(
        screenShows(entries, {.palette = white, .scale = scale, .dots = display::Dots::Square}));
    EXPECT_EQ(window.lookBar().dots->GetSelection(), 1);
}

TEST_F(Looks, APaletteFileIsSeenAtOnce) {
    open(chanceText(1, 8, 15, digits));
    dumps::Bytes file = {1, 0, 1, 0, 0, 0, 0x10, 1};
    Palette colours{};
    for (std::size_t i = 0; i < 48; ++i) {
        colours[i] = static_cast<std::uint8_t>(255 - 5 * i);
        file.push_back(colours[i]);
    }
    support::writeFile(path("mine.pal"), file);
    window.take(path("mine.pal"));
    const std::size_t scale = window.canvas().look().scale;
    EXPECT_TRUE(screenShows(digits, {.palette = colours, .scale = scale}));
    EXPECT_EQ(window.lookBar().palette->GetStringSelection(), "mine.pal");

    support::writeFile(path("bad.pal"), dumps::Bytes(56, 0));
    window.take(path("bad.pal"));
    EXPECT_THAT(window.message().utf8_string(), HasSubstr("is no palette file that can be read"));
    EXPECT_EQ(window.lookBar().palette->GetStringSelection(), "mine.pal");
    EXPECT_EQ(window.canvas().look().palette, colours);
}

TEST_F(Looks, ShadesThatAreChosenAreSeenAtOnce) {
    open(chanceText(1, 9, 3, digits));
    const std::size_t scale = window.canvas().look().scale;
    window.lookBar().shades->SetFocus();
    input.Char(WXK_END);
    EXPECT_TRUE(screenShows(digits, {.palette = orange(), .scale = scale}));
}

TEST_F(Looks, AScaleThatIsChosenIsKeptAndScrolled) {
    open(chanceText(1, 10, 3, digits));
    const auto entries = mapped(digits, {0, 1, 4, 15});
    window.lookBar().scale->SetSelection(3);
    window.canvas().setScale(window.lookBar().scaleChosen());
    EXPECT_TRUE(screenShows(entries, {.palette = orange(), .scale = 3}));
    window.canvas().SetFocus();
    press('+', [this] { return window.canvas().look().scale == 4; });
    EXPECT_TRUE(screenShows(entries, {.palette = orange(), .scale = 4}));
    press('-', [this] { return window.canvas().look().scale == 3; });
    press('0', [this] { return window.lookBar().scale->GetSelection() == 0; });
}

TEST_F(Looks, EveryScaleThatFitsIsPaintedDotByDot) {
    open(chanceText(1, 13, 15, digits));
    window.lookBar().scale->SetFocus();
    const wxSize room = window.canvas().GetClientSize();
    for (const std::size_t scale : viewer::LookBar::Scales) {
        const wxSize size = window.canvas().sizeFor(scale);
        if (size.x > room.x || size.y > room.y) {
            EXPECT_GT(scale, 6U);
            break;
        }
        input.Char(WXK_DOWN);
        EXPECT_TRUE(runUntil([&] { return window.canvas().look().scale == scale; })) << scale;
        EXPECT_TRUE(screenShows(digits, {.palette = orange(), .scale = scale})) << scale;
    }
}

TEST_F(Looks, WhatDoesNotFitIsScrolledByKeys) {
    open(chanceText(1, 14, 15, digits));
    const auto scale = static_cast<std::size_t>(pixels(24));
    window.canvas().setScale(scale);
    EXPECT_TRUE(runUntil([this] { return window.canvas().HasScrollbar(wxHORIZONTAL); }));
    const display::Look look{.palette = orange(), .scale = scale};
    EXPECT_TRUE(screenShowsFrom({0, 0}, digits, look));
    const int step = pixels(window.FromDIP(16));
    press(
        WXK_RIGHT, [this] { return window.canvas().GetViewStart() == wxPoint(1, 0); }, wxMOD_SHIFT);
    press(
        WXK_DOWN, [this] { return window.canvas().GetViewStart() == wxPoint(1, 1); }, wxMOD_SHIFT);
    EXPECT_TRUE(screenShowsFrom({step, step}, digits, look));
    EXPECT_EQ(number(), 0U);
    press('0', [this] { return !window.canvas().HasScrollbar(wxHORIZONTAL); });
}

TEST_F(Looks, TheDisplayOfTheXlBoardIsPainted) {
    std::string text = dumps::plainText(1, '3', true);
    open(text);
    const std::vector<std::uint8_t> entries(std::size_t{192} * 64, 15);
    const std::size_t scale = window.canvas().look().scale;
    EXPECT_TRUE(screenShows(entries, {.palette = orange(), .scale = scale}, 192));
}

TEST_F(Looks, FullScreenShowsTheDisplayAlone) {
    open(chanceText(1, 11, 3, digits));
    const auto entries = mapped(digits, {0, 1, 4, 15});
    press(WXK_F11, [this] { return window.IsFullScreen(); });
    const auto scale = static_cast<std::size_t>(pixels(1280 - 4) / 128);  // Of the screen's width.
    EXPECT_TRUE(runUntil([&] { return window.canvas().look().scale == scale; }));
    EXPECT_TRUE(screenShows(entries, {.palette = orange(), .scale = scale}));
    EXPECT_FALSE(window.playBar().IsShownOnScreen());
    press(WXK_RIGHT, [] { return true; });
    press(WXK_ESCAPE, [this] { return !window.IsFullScreen(); });
    EXPECT_TRUE(window.playBar().IsShown());
}

/// Every control that a key can get to.
void collect(wxWindow& parent, std::vector<wxWindow*>& found) {
    for (wxWindow* const child : parent.GetChildren()) {
        if (child->AcceptsFocusFromKeyboard() && child->GetChildren().empty()) {
            found.push_back(child);
        }
        collect(*child, found);
    }
}

TEST_F(Looks, EveryControlHasANameForScreenReaders) {
    open(chanceText(1, 12, 3, digits));
    auto* const accessible = support::gtk<void*(void*)>("gtk_widget_get_accessible");
    auto* const name = support::gtk<const char*(void*)>("atk_object_get_name");
    auto* const childOf = support::gtk<void*(void*)>("gtk_bin_get_child");
    std::vector<wxWindow*> controls;
    collect(window, controls);
    EXPECT_GT(controls.size(), 18U);
    for (wxWindow* const control : controls) {
        const bool scrolls = control == &window.canvas() || control == &window.places();
        void* const widget = scrolls ? childOf(control->GetHandle()) : control->GetHandle();
        const char* const text = name(accessible(widget));
        EXPECT_THAT(std::string(text != nullptr ? text : ""), Not(IsEmpty()))
            << control->GetClassInfo()->GetClassName();
    }
}

}  // namespace
