#ifndef LUMADOT_VIEWER_EXPORT_DIALOG_H
#define LUMADOT_VIEWER_EXPORT_DIALOG_H

#include <wx/choice.h>
#include <wx/dialog.h>
#include <wx/sizer.h>
#include <wx/spinctrl.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

#include "viewer/export_job.h"

namespace viewer {

/// Asks what is to be written, and where.
class ExportDialog : public wxDialog {
public:
    struct Offer {
        std::filesystem::path recording;
        recording::Kind kind = recording::Kind::Text;  ///< of the recording
        recording::Range part;                         ///< what is proposed
        std::uint64_t lastFrame = 0;
        std::uint64_t shownFrame = 0;
        std::optional<std::uint8_t> mode;
        display::Look look;
    };

    ExportDialog(wxWindow* parent, const Offer& offer);

    /// What was asked for; after the dialog has been answered with OK.
    ExportJob job() const;

    wxChoice* kind;
    wxSpinCtrl* from;
    wxSpinCtrl* to;
    wxSpinCtrl* scale;
    wxSpinCtrl* columns;
    wxChoice* mode;
    wxTextCtrl* file;

private:
    void addRow(wxFlexGridSizer& grid, const wxString& caption, wxWindow* control);
    wxSizer* fileRow();
    void onKind();
    void browse();
    bool accepts();
    const ExportKindInfo& info() const;
    bool needsMode() const;

    Offer offer_;
    std::vector<std::uint8_t> modes_;
};

}  // namespace viewer

#endif
