#include "tests/support/toolkit.h"

#include <gtest/gtest.h>
#include <wx/app.h>
#include <wx/debug.h>
#include <wx/evtloop.h>
#include <wx/init.h>
#include <wx/utils.h>

#include <chrono>
#include <cstdlib>

namespace support {

int runTests(int& argc, char** argv) {
    if (!wxEntryStart(argc, argv)) {
        return EXIT_FAILURE;
    }
    wxTheApp->SetExitOnFrameDelete(false);
    failOnToolkitAssertions();
    int result = EXIT_FAILURE;
    {
        wxEventLoop loop;
        const wxEventLoopActivator active(&loop);
        result = RUN_ALL_TESTS();
        deleteClosedWindows();
    }
    wxEntryCleanup();
    return result;
}

namespace {

void assertionFails(const wxString& file, int line, const wxString& function,
                    const wxString& condition, const wxString& message) {
    ADD_FAILURE_AT(file.utf8_str(), line)
        << "toolkit assertion in " << function << ": " << condition << " " << message;
}

}  // namespace

void failOnToolkitAssertions() { wxSetAssertHandler(assertionFails); }

void deleteClosedWindows() {
    while (wxTheApp->ProcessIdle()) {
    }
}

bool runUntil(const std::function<bool()>& condition) {
    using Clock = std::chrono::steady_clock;
    const auto limit = Clock::now() + std::chrono::seconds(10);
    while (!condition()) {
        if (Clock::now() > limit) {
            return false;
        }
        wxYield();
        wxMilliSleep(1);
    }
    return true;
}

void showAndWait(wxWindow& window) {
    window.Show();
    EXPECT_TRUE(runUntil([&] { return window.IsShownOnScreen(); }));
}

}  // namespace support
