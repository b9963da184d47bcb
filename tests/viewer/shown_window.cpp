#include "tests/viewer/shown_window.h"

#include <random>

// Last: its macros are called like other people's functions.
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#undef None

using support::runUntil;

ShownWindow::ShownWindow() {
    support::showAndWait(window);
    window.Raise();
    EXPECT_TRUE(runUntil([this] { return window.IsActive(); }));
    EXPECT_TRUE(runUntil([this] { return window.canvas().HasFocus(); }));
}

ShownWindow::~ShownWindow() {
    window.Destroy();
    support::deleteClosedWindows();
}

viewer::Player& ShownWindow::open(const dumps::Bytes& bytes, const char* name) {
    support::writeFile(path(name), bytes);
    window.open(path(name));
    EXPECT_NE(window.player(), nullptr);
    waitUntilRead();
    return *window.player();
}

void ShownWindow::waitUntilRead() {
    EXPECT_TRUE(runUntil([this] {
        const viewer::State& state = window.player()->state();
        return state.indexed && state.surveyed == state.frames;
    }));
}

void ShownWindow::press(int key, const std::function<bool()>& happened, int modifiers) {
    input.Char(key, modifiers);
    EXPECT_TRUE(runUntil(happened)) << "key " << key;
}

void ShownWindow::click(const wxWindow& control, const std::function<bool()>& happened) {
    const wxRect rect = control.GetScreenRect();
    const wxPoint centre = rect.GetPosition() + rect.GetSize() / 2;
    input.MouseMove(centre);
    EXPECT_TRUE(runUntil([&] { return wxGetMousePosition() == centre; }));
    input.MouseClick();
    EXPECT_TRUE(runUntil(happened)) << control.GetLabel().utf8_string();
}

std::string chanceText(std::uint32_t stampMs, unsigned seed, int highest,
                       std::vector<std::uint8_t>& digits) {
    std::mt19937 random(seed);
    std::uniform_int_distribution<int> chance(0, highest);
    std::string text = dumps::plainText(stampMs).substr(0, 12);
    digits.clear();
    for (int row = 0; row < 32; ++row) {
        for (int column = 0; column < 128; ++column) {
            digits.push_back(static_cast<std::uint8_t>(chance(random)));
            text += "0123456789abcdef"[digits.back()];
        }
        text += "\r\n";
    }
    return text + "\r\n";
}

ScreenPixels screenOf(const wxWindow& window) {
    const wxRect rect = window.GetScreenRect();
    const double factor = window.GetContentScaleFactor();
    const auto pixels = [&](int length) { return static_cast<int>(length * factor); };
    ScreenPixels screen{pixels(rect.width), pixels(rect.height), {}};
    Display* const display = XOpenDisplay(nullptr);
    XImage* const image = XGetImage(display, DefaultRootWindow(display), pixels(rect.x),
                                    pixels(rect.y), static_cast<unsigned>(screen.width),
                                    static_cast<unsigned>(screen.height), AllPlanes, ZPixmap);
    for (int y = 0; y < screen.height; ++y) {
        for (int x = 0; x < screen.width; ++x) {
            const unsigned long pixel = XGetPixel(image, x, y);
            for (const int shift : {16, 8, 0}) {
                screen.rgb.push_back(static_cast<std::uint8_t>(pixel >> shift));
            }
        }
    }
    XDestroyImage(image);
    XCloseDisplay(display);
    return screen;
}

std::vector<std::uint8_t> ScreenPixels::middle(int columns, int rows) const {
    std::vector<std::uint8_t> part;
    const int left = (width - columns) / 2;
    const int top = (height - rows) / 2;
    for (int y = top; y < top + rows; ++y) {
        const auto start = rgb.begin() + 3 * (y * width + left);
        part.insert(part.end(), start, start + 3 * columns);
    }
    return part;
}
