#ifndef LUMADOT_VIEWER_SCREEN_READER_H
#define LUMADOT_VIEWER_SCREEN_READER_H

#include <wx/stattext.h>
#include <wx/window.h>

/// What a screen reader is told of a control. Each desktop has a source file of its own; where a
/// desktop has no way, nothing happens.
namespace viewer::screenReader {

void setName(wxWindow& control, const wxString& name);
/// What is told beside the name.
void setDescription(wxWindow& control, const wxString& description);
/// `text` is the caption of this control, or of none (null). The toolkit takes a text for the
/// caption of whatever is made after it.
void setCaptionOf(wxStaticText& text, wxWindow* control);

}  // namespace viewer::screenReader

#endif
