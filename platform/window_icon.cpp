#include "platform/window_icon.h"

#ifdef __WXMSW__

#include <wx/iconbndl.h>

/// "lumadot" is the name of the icon in every program, in all its sizes.
void setProgramIcon(wxTopLevelWindow& window) { window.SetIcons(wxIconBundle("lumadot", nullptr)); }

#else

void setProgramIcon(wxTopLevelWindow& /*window*/) {}

#endif
