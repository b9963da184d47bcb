#ifndef LUMADOT_APP_MAIN_H
#define LUMADOT_APP_MAIN_H

#include <wx/app.h>

/// The application object: makes the one window and shows it.
class MainApp : public wxApp {
public:
    /// False, which ends the program, when the window cannot be shown. The base class's own start,
    /// which reads the command line, is left out: arguments are accepted and ignored.
    bool OnInit() override;
};

wxDECLARE_APP(MainApp);

#endif
