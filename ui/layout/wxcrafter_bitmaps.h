#ifndef LUMADOT_UI_LAYOUT_WXCRAFTER_BITMAPS_H
#define LUMADOT_UI_LAYOUT_WXCRAFTER_BITMAPS_H

#include <cstdint>

/// The embedded resource document: an empty XRC resource of four lines, 136 characters and a
/// terminating zero.
extern const unsigned char xml_res_file_0[];

/// Size of the embedded document in bytes, its terminating zero included.
extern const std::uint64_t xml_res_size_0;

/// Puts the embedded document into the toolkit's memory file system and loads it; installs the
/// memory file system's handler if there is none. Every failure is ignored.
void wxC9ED9InitBitmapResources();

#endif
