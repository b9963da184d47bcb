#ifndef LUMADOT_PLATFORM_WINDOW_ICON_H
#define LUMADOT_PLATFORM_WINDOW_ICON_H

#include <wx/toplevel.h>

/// Gives the window the icon of its program. On Windows the toolkit gives it none; other systems
/// find it by themselves.
void setProgramIcon(wxTopLevelWindow& window);

#endif
