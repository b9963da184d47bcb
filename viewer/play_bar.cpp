#include <wx/sizer.h>

#include <algorithm>
#include <limits>

#include "accessibility/accessibility.h"
#include "viewer/controls.h"
#include "viewer/words.h"

namespace viewer {

namespace {

constexpr std::size_t NormalSpeed = 3;

void setLabel(wxControl& control, const wxString& label) {
    if (control.GetLabel() != label) {
        control.SetLabel(label);
    }
}

wxButton* button(wxWindow* parent, const wxString& label, const wxString& tip) {
    auto* const made = new wxButton(parent, wxID_ANY, label);
    made->SetToolTip(tip);
    return made;
}

int asInt(std::uint64_t number) {
    return static_cast<int>(std::min<std::uint64_t>(number, std::numeric_limits<int>::max()));
}

wxString speedLabel(double speed) { return wxString::FromCDouble(speed) + " x"; }

}  // namespace

PlayBar::PlayBar(wxWindow* parent)
    : wxPanel(parent), slider(new wxSlider(this, wxID_ANY, 0, 0, 1)) {
    accessibility::setName(*slider, "Position");
    auto* const column = new wxBoxSizer(wxVERTICAL);
    const int gap = FromDIP(4);
    column->Add(slider, wxSizerFlags().Expand());
    column->Add(moves(), wxSizerFlags().Expand().Border(wxTOP, gap));
    column->Add(settings(), wxSizerFlags().Expand().Border(wxTOP, gap));
    SetSizer(column);
}

wxSizer* PlayBar::moves() {
    first = button(this, "&First", "The first frame (Home)");
    back = button(this, "&Back", "The frame before (Left)");
    play = button(this, "&Pause", "Play or pause (Space)");
    play->SetMinSize(play->GetBestSize());  // The longer of its two labels.
    next = button(this, "&Next", "The frame behind (Right)");
    last = button(this, "&Last", "The last frame (End)");
    time =
        new wxStaticText(this, wxID_ANY, "", wxDefaultPosition, wxDefaultSize, wxST_NO_AUTORESIZE);
    time->SetMinSize(time->GetTextExtent("00:00:00.000 of 00:00:00.000") + wxSize(FromDIP(4), 0));
    auto* const caption = new wxStaticText(this, wxID_ANY, "Frame");
    frame = new wxSpinCtrl(this, wxID_ANY, "", wxDefaultPosition, wxDefaultSize,
                           wxSP_ARROW_KEYS | wxTE_PROCESS_ENTER, 0, 0);
    accessibility::setName(*frame, "Frame");
    frames = new wxStaticText(this, wxID_ANY, "");
    auto* const row = new wxBoxSizer(wxHORIZONTAL);
    const auto centre = wxSizerFlags().CentreVertical();
    for (wxButton* const each : {first, back, play, next, last}) {
        row->Add(each, wxSizerFlags(centre).Border(wxRIGHT, FromDIP(4)));
    }
    const int gap = FromDIP(12);
    row->Add(time, wxSizerFlags(centre).Border(wxLEFT, gap));
    row->AddStretchSpacer();
    row->Add(caption, wxSizerFlags(centre).Border(wxRIGHT, FromDIP(4)));
    row->Add(frame, centre);
    row->Add(frames, wxSizerFlags(centre).Border(wxLEFT, FromDIP(4)));
    return row;
}

wxSizer* PlayBar::settings() {
    auto* const caption = new wxStaticText(this, wxID_ANY, "Speed");
    wxArrayString speeds;
    for (const double each : Speeds) {
        speeds.push_back(speedLabel(each));
    }
    speed = new wxChoice(this, wxID_ANY, wxDefaultPosition, wxDefaultSize, speeds);
    speed->SetSelection(NormalSpeed);
    accessibility::setName(*speed, "Speed");
    loop = new wxCheckBox(this, wxID_ANY, "L&oop");
    markIn = button(this, "Mark &In", "The part starts here (I)");
    markOut = button(this, "Mark Ou&t", "The part ends here (O)");
    noMarks = button(this, "No &Marks", "The part is all of it (Backspace)");
    exportPart = button(this, "E&xport...", "Write pictures, a GIF or a dump (Ctrl+E)");
    marks = new wxStaticText(this, wxID_ANY, "");  // Behind it: no caption of the button.
    auto* const row = new wxBoxSizer(wxHORIZONTAL);
    const auto centre = wxSizerFlags().CentreVertical();
    const auto apart = wxSizerFlags(centre).Border(wxLEFT, FromDIP(12));
    row->Add(caption, wxSizerFlags(centre).Border(wxRIGHT, FromDIP(4)));
    row->Add(speed, centre);
    row->Add(loop, apart);
    row->Add(markIn, apart);
    row->Add(markOut, wxSizerFlags(centre).Border(wxLEFT, FromDIP(4)));
    row->Add(noMarks, wxSizerFlags(centre).Border(wxLEFT, FromDIP(4)));
    row->Add(marks, apart);
    row->AddStretchSpacer();
    row->Add(exportPart, centre);
    return row;
}

void PlayBar::show(Player* player) {
    const bool hasFrames = player != nullptr && player->state().frames > 0;
    for (wxWindow* const control : std::initializer_list<wxWindow*>{
             slider, first, back, play, next, last, frame, markIn, markOut, exportPart}) {
        control->Enable(hasFrames);
    }
    noMarks->Enable(hasFrames && (player->markIn() || player->markOut()));
    setLabel(*play, player != nullptr && player->isPlaying() ? "&Pause" : "&Play");
    if (hasFrames) {
        showPosition(*player);
        showMarks(*player);
    } else {
        for (wxStaticText* const text : {time, frames, marks}) {
            setLabel(*text, "");
        }
    }
}

void PlayBar::showPosition(const Player& player) {
    const int lastFrame = asInt(player.state().frames - 1);
    const int number = asInt(player.number());
    if (slider->GetMax() != std::max(lastFrame, 1)) {
        slider->SetRange(0, std::max(lastFrame, 1));
        slider->SetPageSize(std::max(lastFrame / 20, 1));
    }
    if (slider->GetValue() != number) {
        slider->SetValue(number);
    }
    if (frame->GetMax() != lastFrame) {
        frame->SetRange(0, lastFrame);
    }
    if (frame->GetValue() != number) {
        frame->SetValue(number);
    }
    const std::string now = words::time(player.elapsedMs());
    setLabel(*time, now + " of " + words::time(player.state().durationMs));
    const wxString count = "of " + std::to_string(player.state().frames);
    if (frames->GetLabel() != count) {
        frames->SetLabel(count);
        Layout();
    }
    accessibility::setDescription(*slider, now);
}

void PlayBar::showMarks(const Player& player) {
    const auto part = player.part();
    const wxString text =
        player.markIn() || player.markOut()
            ? "Frames " + std::to_string(part.first) + " to " + std::to_string(part.last)
            : "All frames";
    if (marks->GetLabel() != text) {
        marks->SetLabel(text);
        Layout();
    }
}

}  // namespace viewer
