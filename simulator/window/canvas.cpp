#include "simulator/window/canvas.h"

#include <wx/bitmap.h>
#include <wx/dcclient.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace simulator {

Canvas::Canvas(wxWindow* parent) {
    SetBackgroundStyle(wxBG_STYLE_PAINT);  // Everything is painted: nothing flickers.
    Create(parent, wxID_ANY);
    Bind(wxEVT_PAINT, &Canvas::onPaint, this);
    Bind(wxEVT_SIZE, [this](wxSizeEvent& event) {
        Refresh();
        event.Skip();
    });
}

void Canvas::show(Shown shown) {
    if (shown != shown_) {
        shown_ = std::move(shown);
        Refresh(false);
    }
}

void Canvas::setDots(display::Dots dots) {
    look_.dots = dots;
    painter_.reset();
    Refresh(false);
}

std::size_t Canvas::scale() const {
    if (shown_.size == DotCount()) {
        return 1;
    }
    const auto pixels = [this](int size) {
        return static_cast<std::size_t>(std::lround(size * GetContentScaleFactor()));
    };
    const wxSize room = GetClientSize();
    const std::size_t fitting = std::min(pixels(room.GetWidth()) / shown_.size.columns,
                                         pixels(room.GetHeight()) / shown_.size.rows);
    return std::clamp(fitting, std::size_t{1}, display::Painter::MaxScale);
}

wxSize Canvas::sizeFor(std::size_t scale) const {
    const auto length = [&](std::size_t dots) {
        return static_cast<int>(
            std::ceil(static_cast<double>(dots * scale) / GetContentScaleFactor()));
    };
    return {length(shown_.size.columns), length(shown_.size.rows)};
}

std::uint8_t Canvas::screenBrightness(std::uint8_t brightness) {
    constexpr double Gamma = 2.2;
    return static_cast<std::uint8_t>(std::lround(255 * std::pow(brightness / 255.0, 1 / Gamma)));
}

void Canvas::paintPixels() {
    const display::Look look = {.palette = shown_.palette,
                                .brightness = screenBrightness(shown_.brightness),
                                .scale = scale(),
                                .dots = look_.dots};
    if (!painter_ || look != look_) {
        look_ = look;
        painter_.emplace(look);
    }
    pixels_.resize(painter_->pictureBytes(shown_.size.columns, shown_.size.rows));
    painter_->paint(shown_.entries, shown_.size.columns, pixels_);
}

wxImage Canvas::picture() {
    paintPixels();
    return {static_cast<int>(shown_.size.columns * look_.scale),
            static_cast<int>(shown_.size.rows * look_.scale), pixels_.data(), true};
}

void Canvas::onPaint(wxPaintEvent& /*event*/) {
    wxPaintDC dc(this);
    dc.SetBackground(*wxBLACK_BRUSH);
    dc.Clear();
    if (shown_.entries.empty()) {
        return;
    }
    constexpr int NoAlpha = 24;
    const wxBitmap bitmap(picture(), NoAlpha, GetContentScaleFactor());
    const wxSize margin = GetClientSize() - sizeFor(look_.scale);
    dc.DrawBitmap(bitmap, margin.GetWidth() / 2, margin.GetHeight() / 2);
}

}  // namespace simulator
