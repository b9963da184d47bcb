#include "viewer/screen_reader.h"

namespace viewer::screenReader {

void setName(wxWindow& /*control*/, const wxString& /*name*/) {}
void setDescription(wxWindow& /*control*/, const wxString& /*description*/) {}
void setCaptionOf(wxStaticText& /*text*/, wxWindow* /*control*/) {}

}  // namespace viewer::screenReader
