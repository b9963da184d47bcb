#include "tests/ui/storage/user.h"

#include <gtest/gtest.h>
#include <wx/dialog.h>
#include <wx/uiaction.h>

#include <algorithm>

#include "tests/support/gtk.h"

namespace {

constexpr const char* FileDialog = "GtkFileChooserDialog";
constexpr const char* MessageBox = "GtkMessageDialog";
constexpr const char* PlainDialog = "GtkWindow";  // One that the toolkit makes itself.

using Clock = std::chrono::steady_clock;

struct List {
    void* data;
    List* next;
};

std::string textOf(const char* text) { return text == nullptr ? "" : text; }

std::string typeOf(void* object) {
    return support::gtk<const char*(void*)>("g_type_name_from_instance")(object);
}

bool isA(void* object, const char* type) {
    using support::gtk;
    const auto id = gtk<std::size_t(const char*)>("g_type_from_name")(type);
    return gtk<int(void*, std::size_t)>("g_type_check_instance_is_a")(object, id) != 0;
}

std::string messageOf(void* box) {
    char* text = nullptr;
    support::gtk<void(void*, const char*, ...)>("g_object_get")(box, "text", &text,
                                                                static_cast<void*>(nullptr));
    std::string message = textOf(text);
    support::gtk<void(void*)>("g_free")(text);
    return message;
}

std::string focusedText(void* window) {
    void* const focus = support::gtk<void*(void*)>("gtk_window_get_focus")(window);
    if (focus == nullptr || !isA(focus, "GtkEntry")) {
        return "";
    }
    return textOf(support::gtk<const char*(void*)>("gtk_entry_get_text")(focus));
}

ActiveWindow lookAt(void* window) {
    ActiveWindow active;
    active.type = typeOf(window);
    active.title = textOf(support::gtk<const char*(void*)>("gtk_window_get_title")(window));
    active.message = active.type == MessageBox ? messageOf(window) : "";
    active.entry = focusedText(window);
    return active;
}

bool isActive(const std::string& type, const std::string& title) {
    const ActiveWindow active = activeWindow();
    return active.type == type && active.title == title;
}

void press(int key, int modifiers = 0) { wxUIActionSimulator().Char(key, modifiers); }

void type(const std::string& text) { wxUIActionSimulator().Text(text.c_str()); }

}  // namespace

ActiveWindow activeWindow() {
    using support::gtk;
    ActiveWindow active;
    List* const windows = gtk<List*()>("gtk_window_list_toplevels")();
    for (List* each = windows; each != nullptr; each = each->next) {
        if (gtk<int(void*)>("gtk_window_is_active")(each->data) != 0) {
            active = lookAt(each->data);
        }
    }
    gtk<void(List*)>("g_list_free")(windows);
    return active;
}

User::User() {
    constexpr int Interval = 10;  // ms
    Start(Interval);
}

User::~User() {
    for (const Step& step : steps_) {
        ADD_FAILURE() << "never came to this: " << step.what;
    }
}

void User::when(const std::string& what, Condition ready, std::function<void()> act) {
    if (steps_.empty()) {
        since_ = Clock::now();
    }
    steps_.push_back({what, std::move(ready), std::move(act)});
}

void User::opensFile(const std::string& title, const std::string& path) {
    // A slash opens the entry for a path, and is its first letter.
    when(
        "file dialog " + title, [=] { return isActive(FileDialog, title); },
        [=] { press(path[0]); });
    when(
        "entry for the path", [=] { return activeWindow().entry == path.substr(0, 1); },
        [=] { type(path.substr(1)); });
    accepts(title, path);
}

void User::savesFile(const std::string& title, const std::string& proposed,
                     const std::string& path) {
    replacesText(FileDialog, title, proposed, path);
}

void User::entersText(const std::string& title, const std::string& proposed,
                      const std::string& text) {
    replacesText(PlainDialog, title, proposed, text);
}

void User::replacesText(const std::string& dialog, const std::string& title,
                        const std::string& proposed, const std::string& text) {
    when(
        title + " proposing " + proposed,
        [=] { return isActive(dialog, title) && activeWindow().entry == proposed; },
        [=] {
            press('A', wxMOD_CONTROL);
            type(text);
        });
    accepts(title, text);
}

void User::accepts(const std::string& title, const std::string& text) {
    const auto isTyped = [=] {
        const ActiveWindow active = activeWindow();
        return active.title == title && active.entry == text;
    };
    when(text + " is typed", isTyped, [] { press(WXK_RETURN); });
    // A file dialog that is still reading the folder does not listen.
    auto pressed = Clock::now();
    when(
        "Return is heard",
        [=, this]() mutable {
            constexpr auto Pause = std::chrono::seconds(2);
            const bool heard = !isTyped();
            if (!heard && Clock::now() - std::max(pressed, since_) > Pause) {
                press(WXK_RETURN);
                pressed = Clock::now();
            }
            return heard;
        },
        [] {});
}

void User::answersBox(const std::string& text, int key) {
    when(
        "message box " + text,
        [=] {
            const ActiveWindow active = activeWindow();
            return active.type == MessageBox && active.message.starts_with(text);
        },
        [=] { press(key); });
}

void User::pressesInFileDialog(const std::string& title, int key) {
    when(
        "file dialog " + title, [=] { return isActive(FileDialog, title); }, [=] { press(key); });
}

void User::Notify() {
    constexpr auto Patience = std::chrono::seconds(30);
    if (gaveUp_) {
        closeDialogs();
    } else if (steps_.empty()) {
        return;
    } else if (steps_.front().ready()) {
        const auto act = steps_.front().act;
        steps_.pop_front();
        since_ = Clock::now();
        act();
    } else if (Clock::now() - since_ > Patience) {
        giveUp();
    }
}

void User::giveUp() {
    const ActiveWindow active = activeWindow();
    ADD_FAILURE() << "waited in vain for: " << steps_.front().what << "\nactive: " << active.type
                  << " \"" << active.title << "\" " << active.message << " entry \"" << active.entry
                  << "\"";
    steps_.clear();
    gaveUp_ = true;
    constexpr int Interval = 500;  // ms
    Start(Interval);
}

void User::closeDialogs() {
    for (wxWindow* window : wxTopLevelWindows) {
        auto* const dialog = dynamic_cast<wxDialog*>(window);
        if (dialog != nullptr && dialog->IsModal()) {
            dialog->EndModal(wxID_CANCEL);
        }
    }
    press(WXK_ESCAPE);  // A box of GTK's own.
}
