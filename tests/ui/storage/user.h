#ifndef LUMADOT_TESTS_UI_STORAGE_USER_H
#define LUMADOT_TESTS_UI_STORAGE_USER_H

#include <wx/timer.h>

#include <chrono>
#include <deque>
#include <functional>
#include <string>

/// The window that has the keyboard.
struct ActiveWindow {
    std::string type;     ///< GTK's name of its class, empty: none of ours is active
    std::string title;    ///< as in the title bar
    std::string message;  ///< of a message box
    std::string entry;    ///< the text in the entry that has the focus
};

ActiveWindow activeWindow();

/// Somebody at the keyboard, who looks at the screen before every key. Works from a timer, so that
/// modal dialogs can run meanwhile. Gives up after 30 seconds: fails the test and closes whatever
/// dialog is open.
class User : wxTimer {
public:
    using Condition = std::function<bool()>;

    User();
    ~User() override;
    User(const User&) = delete;
    User& operator=(const User&) = delete;

    /// As soon as `ready` holds, does `act`.
    void when(const std::string& what, Condition ready, std::function<void()> act);

    // What a user does in a dialog that is about to come.

    /// Types this path into the file dialog that opens a file, and presses Return.
    void opensFile(const std::string& title, const std::string& path);
    /// Types this path over the proposed name of the file dialog that saves one; presses Return.
    void savesFile(const std::string& title, const std::string& proposed, const std::string& path);
    /// Types this over the proposed text of a text dialog, and presses Return.
    void entersText(const std::string& title, const std::string& proposed, const std::string& text);
    /// Presses the key in a message box with this text, or one that starts with it.
    void answersBox(const std::string& text, int key);
    /// Presses the key in the file dialog with this title.
    void pressesInFileDialog(const std::string& title, int key);

    bool isDone() const { return steps_.empty(); }

private:
    struct Step {
        std::string what;
        Condition ready;
        std::function<void()> act;
    };

    void Notify() override;
    void replacesText(const std::string& dialog, const std::string& title,
                      const std::string& proposed, const std::string& text);
    void accepts(const std::string& title, const std::string& text);
    void giveUp();
    static void closeDialogs();

    std::deque<Step> steps_;
    std::chrono::steady_clock::time_point since_;  ///< when the first step came up
    bool gaveUp_ = false;
};

#endif
