#ifndef LUMADOT_TESTS_SUPPORT_PRINT_H
#define LUMADOT_TESTS_SUPPORT_PRINT_H

// Lets GoogleTest print the toolkit's values as a reader would write them.

#include <wx/colour.h>
#include <wx/gdicmn.h>
#include <wx/string.h>

#include <ostream>

inline void PrintTo(const wxString& text, std::ostream* out) {
    *out << '"' << text.utf8_string() << '"';
}
inline void PrintTo(const wxPoint& point, std::ostream* out) { *out << point.x << "," << point.y; }
inline void PrintTo(const wxSize& size, std::ostream* out) { *out << size.x << " x " << size.y; }
inline void PrintTo(const wxRect& rect, std::ostream* out) {
    *out << rect.width << " x " << rect.height << " at " << rect.x << "," << rect.y;
}
inline void PrintTo(const wxColour& colour, std::ostream* out) {
    *out << colour.GetAsString(wxC2S_CSS_SYNTAX).utf8_string();
}

#endif
