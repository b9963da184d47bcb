#include "viewer/canvas.h"

#include <wx/bitmap.h>
#include <wx/dcclient.h>
#include <wx/settings.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace viewer {

Canvas::Canvas(wxWindow* parent) {
    SetBackgroundStyle(wxBG_STYLE_PAINT);  // Everything is painted: nothing flickers.
    Create(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize,
           wxBORDER_NONE | wxWANTS_CHARS | wxFULL_REPAINT_ON_RESIZE);
    DisableKeyboardScrolling();  // It would take keys of the menus.
    Bind(wxEVT_PAINT, [this](wxPaintEvent&) { onPaint(); });
    Bind(wxEVT_SIZE, [this](wxSizeEvent& event) {
        Refresh();
        event.Skip();
    });
    Bind(wxEVT_LEFT_DOWN, [this](wxMouseEvent& event) {
        SetFocus();
        event.Skip();
    });
}

void Canvas::show(std::vector<std::uint8_t> entries, const dump::Geometry& display) {
    if (entries == entries_) {
        return;
    }
    entries_ = std::move(entries);
    const bool otherSize = display.rows != display_.rows || display.rowBytes != display_.rowBytes;
    display_ = display;
    if (otherSize) {
        arrange();
    }
    Refresh(false);
}

void Canvas::setHint(const wxString& hint) {
    if (hint != hint_) {
        hint_ = hint;
        Refresh(false);
    }
}

void Canvas::setPalette(const std::array<std::uint8_t, 3 * display::Entries>& palette) {
    look_.palette = palette;
    painter_.reset();
    Refresh(false);
}

void Canvas::setDots(display::Dots dots) {
    look_.dots = dots;
    painter_.reset();
    Refresh(false);
}

void Canvas::setScale(std::optional<std::size_t> scale) {
    scale_ = scale;
    arrange();
    Refresh(false);
}

/// Scroll bars where they are needed.
void Canvas::arrange() {
    if (!scale_) {
        SetScrollbars(0, 0, 0, 0);
        SetVirtualSize(wxDefaultSize);
        return;
    }
    SetVirtualSize(sizeFor(*scale_));
    const int step = FromDIP(16);
    SetScrollRate(step, step);
}

void Canvas::scrollBy(int columns, int rows) {
    int x = 0;
    int y = 0;
    GetViewStart(&x, &y);
    Scroll(std::max(x + columns, 0), std::max(y + rows, 0));
}

std::size_t Canvas::scaleNow() const {
    if (scale_) {
        return *scale_;
    }
    const auto pixels = [this](int size) {
        return static_cast<std::size_t>(std::lround(size * GetContentScaleFactor()));
    };
    const wxSize room = GetClientSize();
    const std::size_t fitting = std::min(pixels(room.GetWidth()) / display_.columns(),
                                         pixels(room.GetHeight()) / display_.rows);
    return std::clamp(fitting, std::size_t{1}, display::Painter::MaxScale);
}

wxSize Canvas::sizeFor(std::size_t scale) const {
    const auto length = [&](std::size_t dots) {
        return static_cast<int>(
            std::ceil(static_cast<double>(dots * scale) / GetContentScaleFactor()));
    };
    return {length(display_.columns()), length(display_.rows)};
}

const display::Look& Canvas::look() {
    const std::size_t scale = scaleNow();
    if (!painter_ || look_.scale != scale) {
        look_.scale = scale;
        painter_.emplace(look_);
    }
    return look_;
}

wxImage Canvas::picture() {
    if (entries_.empty()) {
        return {};
    }
    look();
    pixels_.resize(painter_->pictureBytes(display_.columns(), display_.rows));
    painter_->paint(entries_, display_.columns(), pixels_);
    return {static_cast<int>(display_.columns() * look_.scale),
            static_cast<int>(display_.rows * look_.scale), pixels_.data(), true};
}

void Canvas::onPaint() {
    wxPaintDC dc(this);
    dc.SetBackground(*wxBLACK_BRUSH);
    dc.Clear();
    const wxImage image = picture();
    if (!image.IsOk()) {
        paintHint(dc);
        return;
    }
    constexpr int NoAlpha = 24;
    const wxBitmap bitmap(image, NoAlpha, GetContentScaleFactor());
    const wxSize margin = GetClientSize() - sizeFor(look_.scale);
    const wxPoint start = CalcScrolledPosition(wxPoint(0, 0));
    dc.DrawBitmap(bitmap, start.x + std::max(margin.GetWidth() / 2, 0),
                  start.y + std::max(margin.GetHeight() / 2, 0));
}

void Canvas::paintHint(wxDC& dc) {
    const wxColour lightGrey(210, 210, 210);  // On black, in every theme.
    dc.SetFont(GetFont());
    dc.SetTextForeground(lightGrey);
    dc.DrawLabel(hint_, GetClientRect(), wxALIGN_CENTRE);
}

}  // namespace viewer
