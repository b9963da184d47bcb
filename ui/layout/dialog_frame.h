#ifndef LUMADOT_UI_LAYOUT_DIALOG_FRAME_H
#define LUMADOT_UI_LAYOUT_DIALOG_FRAME_H

#include <wx/frame.h>

/// Lets a frame whose controls have all been made look and answer keys as a dialog does. Windows
/// expects one child that fills a frame: it paints the frame dark, and Tab and the arrows do
/// nothing. On other systems nothing is to be done.
void behaveAsDialog(wxFrame& frame);

/// Makes room for what is in a frame whose saved geometry has been restored. Windows keeps it in
/// pixels, and they may be of another scale now. On other systems nothing is to be done.
void growToContents(wxFrame& frame);

#endif
