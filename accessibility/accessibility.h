#ifndef LUMADOT_ACCESSIBILITY_ACCESSIBILITY_H
#define LUMADOT_ACCESSIBILITY_ACCESSIBILITY_H

#include <wx/stattext.h>
#include <wx/statusbr.h>
#include <wx/string.h>
#include <wx/window.h>

/// What a screen reader is told where the toolkit cannot know it, and a focus that can be seen.
/// Each desktop has a source file of its own; where a desktop has no way, nothing happens.
namespace accessibility {

/// What the control is called.
void setName(wxWindow& control, const wxString& name);

/// What is told about it beside its name.
void setDescription(wxWindow& control, const wxString& description);

/// `text` is the caption of this control, or of none (null). The toolkit takes a text for the
/// caption of whatever is made after it.
void setCaptionOf(wxStaticText& text, wxWindow* control);

/// What the fields of the bar say: the toolkit draws them, and tells nobody.
void setDescriptionOf(wxStatusBar& bar);

/// The button's text has no shadow, and its focus is drawn in the text's colour: what the theme
/// draws there suits its own colours only.
void keepReadable(wxWindow& button);

}  // namespace accessibility

#endif
