// Starts the toolkit for the message boxes, with an application object that does nothing, and runs
// the tests. Exit code 77: the tests were skipped.

#include <gmock/gmock.h>
#include <wx/app.h>
#include <wx/init.h>

#include <cstdlib>
#include <iostream>

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    if (GTEST_FLAG_GET(list_tests)) {
        return RUN_ALL_TESTS();  // Takes no display.
    }
    wxApp::SetInstance(new wxApp);  // The toolkit deletes it.
    if (!wxEntryStart(argc, argv)) {
        std::cerr << "error: the toolkit cannot start; is there a display?\n";
        return EXIT_FAILURE;
    }
    const int result = RUN_ALL_TESTS();
    wxEntryCleanup();
    constexpr int Skipped = 77;
    const bool skipped = testing::UnitTest::GetInstance()->skipped_test_count() > 0;
    return result == 0 && skipped ? Skipped : result;
}
