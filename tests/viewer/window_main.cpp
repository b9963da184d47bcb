// The main program of the tests of the viewer's window.

#include <gmock/gmock.h>
#include <wx/app.h>
#include <wx/evtloop.h>
#include <wx/init.h>

#include <cstdlib>

#include "tests/support/toolkit.h"

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    wxApp::SetInstance(new wxApp);
    if (!wxEntryStart(argc, argv)) {
        return EXIT_FAILURE;
    }
    wxTheApp->SetExitOnFrameDelete(false);
    support::failOnToolkitAssertions();
    int result = EXIT_FAILURE;
    {
        wxEventLoop loop;
        const wxEventLoopActivator active(&loop);
        result = RUN_ALL_TESTS();
        support::deleteClosedWindows();
    }
    wxEntryCleanup();
    return result;
}
