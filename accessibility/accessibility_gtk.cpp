#include <gtk/gtk.h>

#include "accessibility/accessibility.h"

namespace accessibility {

namespace {

/// What has scroll bars is what is inside them; so is a window of our own drawing.
GtkWidget* widgetOf(const wxWindow& window) {
    GtkWidget* const widget = window.GetHandle();
    GtkWidget* const inside =
        GTK_IS_SCROLLED_WINDOW(widget) ? gtk_bin_get_child(GTK_BIN(widget)) : nullptr;
    return inside != nullptr ? inside : widget;
}

/// For the whole program.
bool addStyle(const char* rules) {
    GtkCssProvider* const style = gtk_css_provider_new();
    gtk_css_provider_load_from_data(style, rules, -1, nullptr);
    gtk_style_context_add_provider_for_screen(gdk_screen_get_default(), GTK_STYLE_PROVIDER(style),
                                              GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
    g_object_unref(style);
    return true;
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
    gtk_label_set_mnemonic_widget(GTK_LABEL(widgetOf(text)),
                                  control != nullptr ? widgetOf(*control) : nullptr);
}

void setDescriptionOf(wxStatusBar& bar) {
    wxString text;
    for (int field = 0; field < bar.GetFieldsCount(); ++field) {
        const wxString part = bar.GetStatusText(field);
        text += text.empty() || part.empty() ? part : "; " + part;
    }
    setName(bar, "Status");
    setDescription(bar, text);
}

void keepReadable(wxWindow& button) {
    static const bool styled = addStyle(
        ".palette-entry, .palette-entry * { text-shadow: none; }"
        ".palette-entry:focus { outline: 2px solid currentColor; outline-offset: -5px; }");
    static_cast<void>(styled);
    gtk_style_context_add_class(gtk_widget_get_style_context(widgetOf(button)), "palette-entry");
}

}  // namespace accessibility
