#include "tests/support/about_box.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/support/gtk.h"

namespace support {

namespace {

/// GLib's linked list.
struct List {
    void* data;
    List* next;
    List* previous;
};

using GetProperty = void(void* object, const char* name, void* value, void* end);

template <typename Value>
Value property(void* object, const char* name) {
    Value value = nullptr;
    gtk<GetProperty>("g_object_get")(object, name, &value, nullptr);
    return value;
}

}  // namespace

AboutBoxes::AboutBoxes() {
    const auto type = gtk<unsigned long()>("gtk_about_dialog_get_type")();
    const auto isA = gtk<int(void*, unsigned long)>("g_type_check_instance_is_a");
    const auto isVisible = gtk<int(void*)>("gtk_widget_get_visible");
    List* const windows = gtk<List*()>("gtk_window_list_toplevels")();
    for (const List* each = windows; each != nullptr; each = each->next) {
        if (isA(each->data, type) != 0 && isVisible(each->data) != 0) {
            boxes_.push_back(each->data);
        }
    }
    gtk<void(List*)>("g_list_free")(windows);
}

std::string AboutBoxes::text(const char* name) const {
    char* const value = property<char*>(boxes_.at(0), name);
    std::string text = value != nullptr ? value : "";
    gtk<void(void*)>("g_free")(value);
    return text;
}

bool AboutBoxes::hasNobody(const char* name) const {
    char** const names = property<char**>(boxes_.at(0), name);
    const bool nobody = names == nullptr || names[0] == nullptr;
    gtk<void(char**)>("g_strfreev")(names);
    return nobody;
}

bool AboutBoxes::hasLogo() const {
    void* const logo = property<void*>(boxes_.at(0), "logo");
    if (logo != nullptr) {
        gtk<void(void*)>("g_object_unref")(logo);
    }
    return logo != nullptr;
}

void AboutBoxes::close() {
    constexpr int Closed = -7;  // GTK_RESPONSE_CLOSE; the toolkit destroys the box on it.
    for (void* const box : boxes_) {
        gtk<void(void*, int)>("gtk_dialog_response")(box, Closed);
    }
    boxes_.clear();
}

}  // namespace support
