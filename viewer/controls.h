#ifndef LUMADOT_VIEWER_CONTROLS_H
#define LUMADOT_VIEWER_CONTROLS_H

#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/choice.h>
#include <wx/gauge.h>
#include <wx/panel.h>
#include <wx/slider.h>
#include <wx/spinctrl.h>
#include <wx/stattext.h>

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "viewer/player.h"

namespace viewer {

/// What plays and moves:
///
///   |--------------o-----------------------------|
///   [First][Back][Play][Next][Last]  0:00:01.200 of 0:02:00.000  Frame [72] of 7200
///   Speed [1x] [ ] Loop   [Mark In][Mark Out][No Marks]  Frames 10 to 99     [Export...]
class PlayBar : public wxPanel {
public:
    static constexpr std::array Speeds = {0.1, 0.25, 0.5, 1.0, 2.0, 4.0, 8.0, 16.0};

    explicit PlayBar(wxWindow* parent);

    /// Null: nothing is open.
    void show(Player* player);

    wxSlider* slider;
    wxButton* first;
    wxButton* back;
    wxButton* play;
    wxButton* next;
    wxButton* last;
    wxStaticText* time;
    wxSpinCtrl* frame;
    wxStaticText* frames;
    wxChoice* speed;
    wxCheckBox* loop;
    wxButton* markIn;
    wxButton* markOut;
    wxButton* noMarks;
    wxStaticText* marks;
    wxButton* exportPart;

private:
    wxSizer* moves();
    wxSizer* settings();
    void showPosition(const Player& player);
    void showMarks(const Player& player);
};

/// How it is shown: palette, input mode, shades, scale, dots.
class LookBar : public wxPanel {
public:
    static constexpr std::array<std::size_t, 11> Scales = {1, 2, 3, 4, 5, 6, 8, 10, 12, 16, 24};

    explicit LookBar(wxWindow* parent);

    /// The modes that a recording can be of; null: none is open.
    void showModes(Player* player);
    std::optional<std::uint8_t> mode() const;
    std::optional<ShadeSet> shadeSet() const;
    std::optional<std::size_t> scaleChosen() const;
    void chooseScale(std::optional<std::size_t> scale) const;
    /// A palette that is none of the presets; the last item.
    void showPaletteFile(const wxString& name) const;

    wxChoice* palette;
    wxButton* paletteFile;
    wxChoice* inputMode;
    wxChoice* shades;
    wxChoice* scale;
    wxChoice* dots;

private:
    std::vector<std::uint8_t> modes_;  ///< of the items behind the first
};

/// How far the index is.
class IndexBar : public wxPanel {
public:
    explicit IndexBar(wxWindow* parent);

    /// Its controls are there while there is something to tell.
    void show(const State& state);

    wxGauge* gauge;
    wxButton* stop;
    wxStaticText* text;  ///< Made last: the toolkit takes it for the caption of what follows.
};

}  // namespace viewer

#endif
