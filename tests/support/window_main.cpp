// The main program of every window test: starts the toolkit with the tool's own application object,
// then runs the tests.

#include <gmock/gmock.h>

#include <cstdlib>

#include "app/main.h"
#include "simulator/bus.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/toolkit.h"
#include "tests/support/variables.h"

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    if (GTEST_FLAG_GET(list_tests)) {
        return RUN_ALL_TESTS();  // Takes no display.
    }
    // The window's geometry is kept in the home folder; every run starts with an empty one.
    const support::TemporaryFolder home;
    support::setVariable("HOME", home.path().string());
    support::setVariable("XDG_CONFIG_HOME", (home.path() / "config").string());
    simulator::Bus::instance().reset();

    wxApp::SetInstance(new MainApp);
    return support::runTests(argc, argv);
}
