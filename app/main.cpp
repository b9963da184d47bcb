#include "app/main.h"

#include <wx/image.h>
#include <wx/imagjpeg.h>
#include <wx/imagpng.h>

#include <clocale>

#include "ui/MainFrame.h"

wxIMPLEMENT_APP_NO_MAIN(MainApp);

bool MainApp::OnInit() {
    // File names are converted by the C library, which needs to know the user's encoding.
    std::setlocale(LC_CTYPE, "");
    wxDISABLE_ASSERTS_IN_RELEASE_BUILD();

    wxImage::AddHandler(new wxPNGHandler);
    wxImage::AddHandler(new wxJPEGHandler);
    auto* window = new MainFrame(nullptr);
    SetTopWindow(window);
    return GetTopWindow()->Show();
}

int main(int argc, char** argv) { return wxEntry(argc, argv); }
