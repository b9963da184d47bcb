#include <wx/sizer.h>
#include <wx/wrapsizer.h>

#include <algorithm>

#include "accessibility/accessibility.h"
#include "ui/palette.h"
#include "viewer/controls.h"

namespace viewer {

namespace {

constexpr int DefaultPreset = 8;

struct ShadeItem {
    const char* label;
    std::optional<ShadeSet> set;
};
const ShadeItem ShadeItems[] = {{"Automatic", std::nullopt},
                                {"4", ShadeSet::Four},
                                {"5", ShadeSet::Five},
                                {"16", ShadeSet::Sixteen}};

wxString textOf(std::string_view text) { return wxString::FromUTF8(text.data(), text.size()); }

}  // namespace

LookBar::LookBar(wxWindow* parent)
    : wxPanel(parent),
      palette(new wxChoice(this, wxID_ANY)),
      paletteFile(new wxButton(this, wxID_ANY, "Palette Fil&e...")),
      inputMode(new wxChoice(this, wxID_ANY)),
      shades(new wxChoice(this, wxID_ANY)),
      scale(new wxChoice(this, wxID_ANY)),
      dots(new wxChoice(this, wxID_ANY)) {
    for (const std::string_view name : presets::Names) {
        palette->Append(textOf(name));
    }
    palette->SetSelection(DefaultPreset);
    for (const ShadeItem& item : ShadeItems) {
        shades->Append(item.label);
    }
    shades->SetSelection(0);
    scale->Append("Fit");
    for (const std::size_t each : Scales) {
        scale->Append(std::to_string(each));
    }
    scale->SetSelection(0);
    dots->Append("Round");
    dots->Append("Square");
    dots->SetSelection(0);
    showModes(nullptr);
    inputMode->SetToolTip("What the recording was made in, if its frames do not tell");
    scale->SetToolTip("Pixels of the screen from dot to dot");

    auto* const row = new wxWrapSizer(wxHORIZONTAL, wxWRAPSIZER_DEFAULT_FLAGS);
    const auto add = [&](const wxString& caption, wxChoice* choice) {
        auto* const pair = new wxBoxSizer(wxHORIZONTAL);
        auto* const text = new wxStaticText(this, wxID_ANY, caption);
        accessibility::setCaptionOf(*text, choice);
        accessibility::setName(*choice, caption);
        pair->Add(text, wxSizerFlags().CentreVertical().Border(wxRIGHT, FromDIP(4)));
        pair->Add(choice, wxSizerFlags().CentreVertical());
        if (choice == palette) {
            pair->Add(paletteFile, wxSizerFlags().CentreVertical().Border(wxLEFT, FromDIP(4)));
        }
        row->Add(pair, wxSizerFlags().Border(wxRIGHT | wxTOP, FromDIP(6)).CentreVertical());
    };
    add("Palette", palette);
    add("Input mode", inputMode);
    add("Shades", shades);
    add("Scale", scale);
    add("Dots", dots);
    paletteFile->MoveAfterInTabOrder(palette);
    SetSizer(row);
}

void LookBar::showModes(Player* player) {
    modes_.clear();
    inputMode->Clear();
    inputMode->Append("As the frames tell");
    inputMode->SetSelection(0);
    inputMode->Enable(player != nullptr);
    shades->Enable(player != nullptr);
    shades->SetSelection(0);
    if (player == nullptr) {
        return;
    }
    player->followed().use([&](const recording::Recording& recording) {
        for (const InputModeInfo& mode : inputModes()) {
            if (fits(mode, recording)) {
                modes_.push_back(mode.number);
                inputMode->Append(std::to_string(mode.number) + " - " + textOf(mode.label));
            }
        }
    });
}

std::optional<std::uint8_t> LookBar::mode() const {
    const int chosen = inputMode->GetSelection();
    return chosen > 0 ? std::optional(modes_[static_cast<std::size_t>(chosen - 1)]) : std::nullopt;
}

std::optional<ShadeSet> LookBar::shadeSet() const {
    return ShadeItems[std::max(shades->GetSelection(), 0)].set;
}

std::optional<std::size_t> LookBar::scaleChosen() const {
    const int chosen = scale->GetSelection();
    return chosen > 0 ? std::optional(Scales[static_cast<std::size_t>(chosen - 1)]) : std::nullopt;
}

void LookBar::chooseScale(std::optional<std::size_t> wanted) const {
    const auto* const found = wanted ? std::ranges::find(Scales, *wanted) : Scales.end();
    scale->SetSelection(found == Scales.end() ? 0 : static_cast<int>(found - Scales.begin()) + 1);
}

void LookBar::showPaletteFile(const wxString& name) const {
    if (palette->GetCount() > presets::Count) {
        palette->Delete(presets::Count);
    }
    palette->Append(name);
    palette->SetSelection(presets::Count);
}

IndexBar::IndexBar(wxWindow* parent)
    : wxPanel(parent),
      gauge(new wxGauge(this, wxID_ANY, 1000)),
      stop(new wxButton(this, wxID_ANY, "&Stop Reading")),
      text(new wxStaticText(this, wxID_ANY, "")) {
    auto* const row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(text, wxSizerFlags().CentreVertical().Border(wxRIGHT, FromDIP(8)));
    row->Add(gauge, wxSizerFlags(1).CentreVertical().Border(wxRIGHT, FromDIP(8)));
    row->Add(stop, wxSizerFlags().CentreVertical());
    SetSizer(row);
    SetMinSize(row->GetMinSize());  // Nothing moves when it comes and goes.
    show(State());
}

void IndexBar::show(const State& state) {
    const bool indexing = !state.indexed;
    const std::uint64_t done = indexing ? state.bytesDone : state.surveyed;
    const std::uint64_t all = indexing ? state.bytes : state.frames;
    const bool wanted = state.error.empty() && done < all;
    bool moves = wanted && !text->IsShown();
    const wxString label = state.stopped ? "Stopped"
                           : indexing    ? "Reading the recording"
                                         : "Looking for gaps and shades";
    if (text->GetLabel() != label) {
        text->SetLabel(label);
        accessibility::setName(*gauge, label);
        stop->SetLabel(state.stopped ? "Go &On" : "&Stop Reading");
        moves = true;
    }
    if (all > 0) {
        gauge->SetValue(static_cast<int>(static_cast<double>(done) / static_cast<double>(all) *
                                         gauge->GetRange()));
    }
    for (wxWindow* const each : std::initializer_list<wxWindow*>{text, gauge, stop}) {
        each->Show(wanted);
    }
    if (moves) {
        Layout();
    }
}

}  // namespace viewer
