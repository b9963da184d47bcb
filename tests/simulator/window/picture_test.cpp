// What is on the screen: read back from the X server, pixel by pixel.

#include <gtk/gtk.h>

#include <array>
#include <string>

#include "tests/simulator/window/shown_window.h"

namespace {

using packets::command;
using packets::image;
using support::runUntil;

using Colour = std::array<int, 3>;

constexpr Colour Black = {0, 0, 0};

Colour screenPixel(const wxPoint& place) {
    GdkPixbuf* const pixel =
        gdk_pixbuf_get_from_window(gdk_get_default_root_window(), place.x, place.y, 1, 1);
    const guchar* const bytes = gdk_pixbuf_read_pixels(pixel);
    const Colour colour = {bytes[0], bytes[1], bytes[2]};
    g_object_unref(pixel);
    return colour;
}

class Picture : public ShownWindow {
protected:
    /// Pixel (x, y) of a dot's cell of `scale` x `scale` pixels.
    Colour pixelOfDot(int column, int row, int x, int y) {
        const simulator::Canvas& canvas = frame.canvas();
        const auto scale = static_cast<int>(canvas.scale());
        const wxSize margin = canvas.GetClientSize() - canvas.sizeFor(canvas.scale());
        const wxPoint corner(margin.GetWidth() / 2, margin.GetHeight() / 2);
        return screenPixel(
            canvas.ClientToScreen(corner + wxPoint(column * scale + x, row * scale + y)));
    }
    Colour middleOfDot(int column, int row) {
        const auto middle = static_cast<int>(frame.canvas().scale()) / 2;
        return pixelOfDot(column, row, middle, middle);
    }
    testing::AssertionResult dotBecomes(int column, int row, const Colour& colour) {
        if (runUntil([&] { return middleOfDot(column, row) == colour; })) {
            return testing::AssertionSuccess();
        }
        const Colour is = middleOfDot(column, row);
        return testing::AssertionFailure() << "the dot is " << testing::PrintToString(is);
    }

    /// An image in a palette of its own.
    void showImage(std::uint8_t brightness) {
        receive(image());
        simulator::Packet palette = command({0x04, 0, 1, 0, 0, 40});
        const auto setEntry = [&palette](std::size_t entry, const Colour& colour) {
            for (std::size_t i = 0; i < 3; ++i) {
                palette[7 + 3 * entry + i] = static_cast<std::uint8_t>(colour[i]);
            }
        };
        setEntry(2, {255, 255, 255});
        setEntry(4, {0, 255, 128});
        setEntry(9, {200, 100, 50});
        receive(palette);
        receive(command({0x08, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, brightness}));
    }
};

TEST_F(Picture, DotsAreOfTheirPaletteEntriesAtFullBrightness) {
    showImage(255);
    EXPECT_EQ(frame.canvas().scale(), 6U);
    EXPECT_TRUE(dotBecomes(0, 0, {200, 100, 50}));
    EXPECT_TRUE(dotBecomes(10, 7, {0, 255, 128}));
    EXPECT_TRUE(dotBecomes(127, 31, {255, 255, 255}));
    EXPECT_TRUE(dotBecomes(1, 0, {0, 0, 40}));
    EXPECT_TRUE(dotBecomes(10, 8, {0, 0, 40}));
    EXPECT_EQ(pixelOfDot(127, 31, 0, 0), Black);  // The corner that a round dot leaves.
    EXPECT_EQ(pixelOfDot(127, 31, 6, 3), Black);  // Beyond the last dot.
}

// 56 of 255 is half of a screen's range.
TEST_F(Picture, DotsAreDarkerWithLessBrightness) {
    showImage(56);
    EXPECT_TRUE(dotBecomes(0, 0, {100, 50, 25}));
    EXPECT_TRUE(dotBecomes(10, 7, {0, 128, 64}));
    EXPECT_TRUE(dotBecomes(1, 0, {0, 0, 20}));
}

TEST_F(Picture, IsDarkWhileTheBoardRestarts) {
    showImage(255);
    EXPECT_TRUE(dotBecomes(1, 0, {0, 0, 40}));
    receive(command({0x12}));
    receive(command({0x00}));
    EXPECT_TRUE(dotBecomes(1, 0, Black));
    EXPECT_TRUE(becomes([](auto& device) { return !device.controller().restarting(); }));
    EXPECT_TRUE(runUntil([this] { return middleOfDot(1, 0) != Black; }));
}

// The ramp under the machine's picture scrolls: its shades pass any dot of the last row.
TEST_F(Picture, MachinePlaysInTheShadesOfTheMode) {
    receive(command({0x02, 1}));
    receive(command({0x03, 7}));
    receive(command({0x08, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 255}));
    for (const int light : {17, 68, 255, 0}) {
        EXPECT_TRUE(dotBecomes(64, 31, {light, light, light}));
    }
}

TEST_F(Picture, SquareDotsFillTheirCells) {
    showImage(255);
    EXPECT_TRUE(dotBecomes(127, 31, {255, 255, 255}));
    frame.canvas().setDots(display::Dots::Square);
    EXPECT_TRUE(runUntil([this] { return pixelOfDot(127, 31, 0, 0) == Colour{255, 255, 255}; }));
}

TEST_F(Picture, LargerBoardHasItsDotsOnTheScreenToo) {
    frame.replace(simulator::Board::Xl, simulator::SettingsLayout::Newer);
    showImage(255);
    EXPECT_TRUE(dotBecomes(32, 16, {200, 100, 50}));
    EXPECT_TRUE(dotBecomes(159, 47, {255, 255, 255}));
    EXPECT_TRUE(dotBecomes(191, 63, {0, 0, 40}));
}

std::string accessibleName(GtkWidget* widget) {
    const char* const name = atk_object_get_name(gtk_widget_get_accessible(widget));
    return name != nullptr ? name : "";
}

TEST_F(Picture, ScreenReadersAreToldWhatEverythingIs) {
    const auto inside = [](wxWindow& list) { return gtk_bin_get_child(GTK_BIN(list.GetHandle())); };
    EXPECT_EQ(accessibleName(frame.canvas().GetHandle()), "Display");
    EXPECT_EQ(accessibleName(inside(*frame.state().settings)), "Settings");
    EXPECT_EQ(accessibleName(inside(*frame.state().files)), "Files received");
    EXPECT_EQ(accessibleName(inside(*frame.state().commands)), "Last commands");
}

TEST_F(Picture, TablesFollowTheController) {
    const auto cell = [](simulator::WordTable& table, unsigned row, unsigned column) {
        return table.GetTextValue(row, column).utf8_string();
    };
    receive(command({0x02, 9}));
    receive(packets::openUpload("tune"));
    receive(command({0x0A, 0xFF}));
    EXPECT_TRUE(runUntil([&] { return cell(*frame.state().settings, 0, 1) == "Capcom"; }));
    EXPECT_EQ(cell(*frame.state().settings, 0, 2), "USB port");
    EXPECT_TRUE(runUntil([&] { return frame.state().files->GetItemCount() == 1; }));
    EXPECT_EQ(cell(*frame.state().files, 0, 0), "tune");
}

}  // namespace
