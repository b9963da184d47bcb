#ifndef LUMADOT_SIMULATOR_WINDOW_SCREEN_READER_H
#define LUMADOT_SIMULATOR_WINDOW_SCREEN_READER_H

#include <wx/window.h>

/// What a screen reader is told of a control.
namespace simulator::screenReader {

void setName(wxWindow& control, const wxString& name);
/// What is told beside the name.
void setDescription(wxWindow& control, const wxString& description);

}  // namespace simulator::screenReader

#endif
