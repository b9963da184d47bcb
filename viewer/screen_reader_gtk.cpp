#include "viewer/screen_reader.h"

#include <gtk/gtk.h>

namespace viewer::screenReader {

namespace {

/// What has scroll bars is what is inside them; so is a window of our own drawing.
GtkWidget* widgetOf(const wxWindow& control) {
    GtkWidget* const widget = control.GetHandle();
    GtkWidget* const inside =
        GTK_IS_SCROLLED_WINDOW(widget) ? gtk_bin_get_child(GTK_BIN(widget)) : nullptr;
    return inside != nullptr ? inside : widget;
}

}  // namespace

void setName(wxWindow& control, const wxString& name) {
    atk_object_set_name(gtk_widget_get_accessible(widgetOf(control)), name.utf8_str());
}

void setDescription(wxWindow& control, const wxString& description) {
    atk_object_set_description(gtk_widget_get_accessible(widgetOf(control)),
                               description.utf8_str());
}

void setCaptionOf(wxStaticText& text, wxWindow* control) {
    gtk_label_set_mnemonic_widget(GTK_LABEL(text.GetHandle()),
                                  control != nullptr ? widgetOf(*control) : nullptr);
}

}  // namespace viewer::screenReader
