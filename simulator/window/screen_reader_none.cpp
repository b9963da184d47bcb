#include "simulator/window/screen_reader.h"

namespace simulator::screenReader {

void setName(wxWindow& /*control*/, const wxString& /*name*/) {}
void setDescription(wxWindow& /*control*/, const wxString& /*description*/) {}

}  // namespace simulator::screenReader
