#ifndef LUMADOT_DEVICE_NARROW_TEXT_H
#define LUMADOT_DEVICE_NARROW_TEXT_H

#include <wx/strconv.h>
#include <wx/string.h>

#include <string>

/// What file names and the controller's texts are encoded in: as the user's locale says. Few file
/// names can be written in a locale of Windows; there it is UTF-8, as native_file.h takes it.
inline const wxMBConv& narrowEncoding() {
#ifdef _WIN32
    return wxConvUTF8;
#else
    return wxConvLibc;
#endif
}

/// Empty when the encoding has no bytes for it.
inline std::string narrowText(const wxString& text) {
    return {text.mb_str(narrowEncoding()).data()};
}

#endif
