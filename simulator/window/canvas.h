#ifndef LUMADOT_SIMULATOR_WINDOW_CANVAS_H
#define LUMADOT_SIMULATOR_WINDOW_CANVAS_H

#include <wx/image.h>
#include <wx/window.h>

#include <optional>

#include "display/look.h"
#include "display/painter.h"
#include "simulator/screen.h"

namespace simulator {

/// The display, in the middle of the window that is given to it, each dot as many pixels of the
/// screen wide as there is room for.
class Canvas : public wxWindow {
public:
    explicit Canvas(wxWindow* parent);

    /// Paints it when it differs from what was shown before.
    void show(Shown shown);
    void setDots(display::Dots dots);

    /// Pixels of the screen from one dot to the next, at least 1.
    std::size_t scale() const;
    /// The client size in which the dots are `scale` pixels of the screen apart.
    wxSize sizeFor(std::size_t scale) const;

    /// The display as it is painted now, without the margins.
    wxImage picture();

    /// The share of a colour's light, 0..255, that a screen shows for a brightness of the board.
    /// Light emitting diodes shine in proportion to the brightness, screens to the power of 2.2.
    static std::uint8_t screenBrightness(std::uint8_t brightness);

private:
    void onPaint(wxPaintEvent& event);
    void paintPixels();

    Shown shown_;
    display::Look look_;
    std::optional<display::Painter> painter_;  // Of the look.
    std::vector<std::uint8_t> pixels_;         // Red, green, blue, as the image wants it.
};

}  // namespace simulator

#endif
