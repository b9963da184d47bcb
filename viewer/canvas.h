#ifndef LUMADOT_VIEWER_CANVAS_H
#define LUMADOT_VIEWER_CANVAS_H

#include <wx/image.h>
#include <wx/scrolwin.h>

#include <cstdint>
#include <optional>
#include <vector>

#include "device/dump_format.h"
#include "display/look.h"
#include "display/painter.h"

namespace viewer {

/// The display. With a scale of its own it is scrolled where there is too little room; otherwise
/// its dots are as large as fit in.
class Canvas : public wxScrolledCanvas {
public:
    static constexpr std::size_t LargestScale = 64;  ///< that can be chosen

    explicit Canvas(wxWindow* parent);

    /// Palette entries of its dots; none: it is dark.
    void show(std::vector<std::uint8_t> entries, const dump::Geometry& display);

    /// What stands there as long as it is dark.
    void setHint(const wxString& hint);

    void setPalette(const std::array<std::uint8_t, 3 * display::Entries>& palette);
    void setDots(display::Dots dots);
    /// Pixels of the screen from dot to dot, 1 to `LargestScale`; nothing: as many as fit in.
    void setScale(std::optional<std::size_t> scale);

    /// Where it is scrolled: by so many steps.
    void scrollBy(int columns, int rows);

    /// How it is painted now.
    const display::Look& look();
    /// The client size in which the dots are `scale` pixels of the screen apart.
    wxSize sizeFor(std::size_t scale) const;
    /// The display as it is painted now; invalid when it is dark.
    wxImage picture();

private:
    std::size_t scaleNow() const;
    void arrange();
    void onPaint();
    void paintHint(wxDC& dc);

    wxString hint_;
    std::vector<std::uint8_t> entries_;
    dump::Geometry display_ = dump::StandardDisplay;
    std::optional<std::size_t> scale_;
    display::Look look_;
    std::optional<display::Painter> painter_;  // Of the look.
    std::vector<std::uint8_t> pixels_;         // Red, green, blue, as the image wants it.
};

}  // namespace viewer

#endif
