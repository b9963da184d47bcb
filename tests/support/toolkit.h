#ifndef LUMADOT_TESTS_SUPPORT_TOOLKIT_H
#define LUMADOT_TESTS_SUPPORT_TOOLKIT_H

#include <wx/log.h>
#include <wx/window.h>

#include <functional>
#include <string>
#include <vector>

#include "tests/support/print.h"

namespace support {

/// Starts the toolkit and runs all tests inside an active event loop; returns the exit code.
int runTests(int& argc, char** argv);

/// From now on a failed assertion of the toolkit fails the running test. The application's start
/// switches assertions off in release builds: call this again after it.
void failOnToolkitAssertions();

/// Deletes the windows that were closed or destroyed, as the event loop does when it is idle.
void deleteClosedWindows();

/// Runs the event loop until the condition holds, 10 seconds at most. Returns whether it holds.
bool runUntil(const std::function<bool()>& condition);

/// Shows the window and waits until it is on the screen in its final size.
void showAndWait(wxWindow& window);

/// Collects what is logged while it lives, instead of the toolkit's message boxes.
class LogCollector : public wxLog {
public:
    LogCollector() : previous_(SetActiveTarget(this)) {}
    ~LogCollector() override { SetActiveTarget(previous_); }
    LogCollector(const LogCollector&) = delete;
    LogCollector& operator=(const LogCollector&) = delete;

    const std::vector<std::string>& messages() const { return messages_; }

protected:
    void DoLogTextAtLevel(wxLogLevel, const wxString& text) override {
        messages_.push_back(text.utf8_string());
    }

private:
    wxLog* previous_;
    std::vector<std::string> messages_;
};

}  // namespace support

#endif
