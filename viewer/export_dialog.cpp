#include "viewer/export_dialog.h"

#include <wx/button.h>
#include <wx/filedlg.h>
#include <wx/msgdlg.h>

#include <algorithm>
#include <limits>

#include "accessibility/accessibility.h"
#include "display/painter.h"
#include "pictures/png.h"
#include "viewer/window.h"

namespace viewer {

namespace {

constexpr int DefaultScale = 8;
constexpr int DefaultColumns = 4;
constexpr int MostColumns = 1000;

int asInt(std::uint64_t number) {
    return static_cast<int>(std::min<std::uint64_t>(number, std::numeric_limits<int>::max()));
}

wxSpinCtrl* spin(wxWindow* parent, int least, int most, int value) {
    return new wxSpinCtrl(parent, wxID_ANY, "", wxDefaultPosition, wxDefaultSize, wxSP_ARROW_KEYS,
                          least, most, value);
}

}  // namespace

ExportDialog::ExportDialog(wxWindow* parent, const Offer& offer)
    : wxDialog(parent, wxID_ANY, "Export", wxDefaultPosition, wxDefaultSize,
               wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER),
      kind(new wxChoice(this, wxID_ANY)),
      from(spin(this, 0, asInt(offer.lastFrame), asInt(offer.part.first))),
      to(spin(this, 0, asInt(offer.lastFrame), asInt(offer.part.last))),
      scale(spin(this, 1, display::Painter::MaxScale, DefaultScale)),
      columns(spin(this, 1, MostColumns, DefaultColumns)),
      mode(new wxChoice(this, wxID_ANY)),
      file(new wxTextCtrl(this, wxID_ANY)),
      offer_(offer) {
    for (const ExportKindInfo& each : ExportKinds) {
        kind->Append(each.label);
    }
    kind->SetSelection(0);
    for (const InputModeInfo& each : inputModes()) {
        if (each.rawFile) {
            modes_.push_back(each.number);
            mode->Append(std::to_string(each.number) + " - " +
                         wxString::FromUTF8(each.label.data(), each.label.size()));
        }
    }
    const auto known = offer_.mode ? std::ranges::find(modes_, *offer_.mode) : modes_.end();
    mode->SetSelection(known == modes_.end() ? 0 : static_cast<int>(known - modes_.begin()));

    // The captions are made last: the toolkit takes each for that of what is made after it.
    auto* const fileControls = fileRow();
    auto* const buttons = CreateButtonSizer(wxOK | wxCANCEL);
    constexpr int Columns = 2;
    const int gap = FromDIP(8);
    auto* const grid = new wxFlexGridSizer(Columns, wxSize(gap, gap));
    grid->AddGrowableCol(1);
    addRow(*grid, "&What", kind);
    addRow(*grid, "F&rom frame", from);
    addRow(*grid, "&To frame", to);
    addRow(*grid, "&Pixels from dot to dot", scale);
    addRow(*grid, "Pictures side by &side", columns);
    addRow(*grid, "&Input mode", mode);
    auto* const caption = new wxStaticText(this, wxID_ANY, "&File");
    accessibility::setCaptionOf(*caption, file);
    accessibility::setName(*file, "File");
    grid->Add(caption, wxSizerFlags().CentreVertical());
    grid->Add(fileControls, wxSizerFlags().Expand());
    auto* const all = new wxBoxSizer(wxVERTICAL);
    all->Add(grid, wxSizerFlags(1).Expand().Border(wxALL, FromDIP(12)));
    all->Add(buttons, wxSizerFlags().Expand().Border(wxALL, gap));
    FindWindow(wxID_OK)->SetLabel("&Export");
    SetSizer(all);
    kind->Bind(wxEVT_CHOICE, [this](auto&) { onKind(); });
    Bind(
        wxEVT_BUTTON,
        [this](wxCommandEvent& event) {
            if (accepts()) {
                event.Skip();
            }
        },
        wxID_OK);
    onKind();
    Fit();
    SetMinSize(GetSize());
    kind->SetFocus();
}

void ExportDialog::addRow(wxFlexGridSizer& grid, const wxString& caption, wxWindow* control) {
    auto* const text = new wxStaticText(this, wxID_ANY, caption);
    accessibility::setCaptionOf(*text, control);
    accessibility::setName(*control, wxStaticText::RemoveMnemonics(caption));
    grid.Add(text, wxSizerFlags().CentreVertical());
    grid.Add(control, wxSizerFlags().Expand());
}

wxSizer* ExportDialog::fileRow() {
    constexpr int NameLength = 48;
    file->SetMinSize(wxSize(file->GetCharWidth() * NameLength, -1));
    auto* const browseButton = new wxButton(this, wxID_ANY, "&Browse...");
    browseButton->Bind(wxEVT_BUTTON, [this](auto&) { browse(); });
    auto* const row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(file, wxSizerFlags(1).CentreVertical());
    row->Add(browseButton, wxSizerFlags().CentreVertical().Border(wxLEFT, FromDIP(4)));
    return row;
}

const ExportKindInfo& ExportDialog::info() const {
    return ExportKinds[static_cast<std::size_t>(std::max(kind->GetSelection(), 0))];
}

bool ExportDialog::needsMode() const {
    return info().kind == ExportKind::Raw && offer_.kind == recording::Kind::Text;
}

/// What does not count cannot be changed; the file's name ends as its kind does.
void ExportDialog::onKind() {
    const bool single = info().kind == ExportKind::Picture;
    to->Enable(!single);
    from->SetValue(asInt(single ? offer_.shownFrame : offer_.part.first));
    scale->Enable(info().isPicture);
    columns->Enable(info().kind == ExportKind::Sheet);
    mode->Enable(needsMode());
    std::filesystem::path path = file->IsEmpty() ? offer_.recording : pathOf(file->GetValue());
    path.replace_extension(info().extension);
    if (path == offer_.recording) {
        std::filesystem::path name = path.stem();
        name += "-part";
        name += info().extension;
        path.replace_filename(name);
    }
    file->ChangeValue(textOf(path));
    file->SetInsertionPointEnd();  // A long path shows its name.
}

void ExportDialog::browse() {
    const std::filesystem::path path = pathOf(file->GetValue());
    const wxString pattern = wxString("*") + info().extension;
    wxFileDialog dialog(this, "Export to", textOf(path.parent_path()), textOf(path.filename()),
                        wxString(info().label) + "|" + pattern, wxFD_SAVE);
    if (dialog.ShowModal() == wxID_OK) {
        file->ChangeValue(dialog.GetPath());
    }
}

bool ExportDialog::accepts() {
    const std::filesystem::path path = job().path;
    std::error_code ignored;
    wxString problem;
    if (path.empty()) {
        problem = "There is no name for the file. Enter one.";
    } else if (std::filesystem::equivalent(path, offer_.recording, ignored)) {
        problem = "This is the recording itself. Enter another name.";
    } else if (to->IsEnabled() && from->GetValue() > to->GetValue()) {
        problem = "The first frame is behind the last one. Exchange them.";
    }
    if (!problem.empty()) {
        wxMessageBox(problem, "Export", wxOK | wxICON_ERROR, this);
        return false;
    }
    const auto first = info().kind == ExportKind::Pictures ? pictures::numbered(path, 0) : path;
    return !std::filesystem::exists(first, ignored) ||
           wxMessageBox(textOf(first) + " is there already. Replace it?", "Export",
                        wxYES_NO | wxNO_DEFAULT | wxICON_QUESTION, this) == wxYES;
}

ExportJob ExportDialog::job() const {
    ExportJob job;
    job.kind = info().kind;
    job.range.first = static_cast<std::uint64_t>(from->GetValue());
    job.range.last = to->IsEnabled() ? static_cast<std::uint64_t>(to->GetValue()) : job.range.first;
    job.path = pathOf(file->GetValue());
    job.look = offer_.look;
    job.look.scale = static_cast<std::size_t>(scale->GetValue());
    job.columns = static_cast<std::uint64_t>(columns->GetValue());
    if (needsMode()) {
        job.rawMode = modes_[static_cast<std::size_t>(std::max(mode->GetSelection(), 0))];
    }
    return job;
}

}  // namespace viewer
