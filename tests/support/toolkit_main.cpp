// The main program of the window tests that bring no application of their own.

#include <gmock/gmock.h>
#include <wx/app.h>

#include "tests/support/toolkit.h"

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    wxApp::SetInstance(new wxApp);
    return support::runTests(argc, argv);
}
