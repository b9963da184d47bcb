#include "simulator/window/window.h"

#include <wx/app.h>
#include <wx/dialog.h>
#include <wx/init.h>

#include <iostream>
#include <thread>

#include "simulator/window/frame.h"

namespace simulator {

namespace {

/// The window of the program, and the thread of its server.
class App : public wxApp {
public:
    explicit App(Server& server) : server_(server) {}

    bool OnInit() override {
        SetAppName("lumadot-simulator");
        wxUpdateUIEvent::SetUpdateInterval(-1);  // No item asks: the window rests between pictures.
        (new Frame(server_))->Show();
        server_.stopOnSignals();
        thread_ = std::thread([this] {
            server_.run();
            CallAfter([this] { closeWindows(); });
        });
        return true;
    }

    int OnExit() override {
        server_.stop();
        thread_.join();
        return wxApp::OnExit();
    }

private:
    /// The server has ended, on a signal; so does the window, whatever it asks just now.
    void closeWindows() {
        for (wxWindow* window : wxTopLevelWindows) {
            auto* const dialog = dynamic_cast<wxDialog*>(window);
            if (dialog != nullptr && dialog->IsModal()) {
                dialog->EndModal(wxID_CANCEL);
            }
        }
        if (wxWindow* const frame = GetTopWindow()) {
            frame->Close(true);
        }
    }

    Server& server_;
    std::thread thread_;
};

}  // namespace

int showWindow(Server& server) {
    char name[] = "lumadot-simulator";
    char* arguments[] = {name, nullptr};
    int count = 1;
    wxApp::SetInstance(new App(server));
    if (!wxEntryStart(count, arguments)) {
        std::cerr << "lumadot-simulator: there is no display for the window; start it with "
                     "--headless\n";
        return 1;
    }
    wxTheApp->CallOnInit();
    const int result = wxTheApp->OnRun();
    wxTheApp->OnExit();
    wxEntryCleanup();
    return result;
}

}  // namespace simulator
