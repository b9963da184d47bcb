#include <gtk/gtk.h>

#include "simulator/window/screen_reader.h"

namespace simulator::screenReader {

namespace {

/// A list is what is inside its scroll bars.
AtkObject* accessible(const wxWindow& control) {
    GtkWidget* const widget = control.GetHandle();
    GtkWidget* const inside =
        GTK_IS_SCROLLED_WINDOW(widget) ? gtk_bin_get_child(GTK_BIN(widget)) : nullptr;
    return gtk_widget_get_accessible(inside != nullptr ? inside : widget);
}

}  // namespace

void setName(wxWindow& control, const wxString& name) {
    atk_object_set_name(accessible(control), name.utf8_str());
}

void setDescription(wxWindow& control, const wxString& description) {
    atk_object_set_description(accessible(control), description.utf8_str());
}

}  // namespace simulator::screenReader
