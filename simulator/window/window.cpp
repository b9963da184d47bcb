#include "simulator/window/window.h"

#include <wx/app.h>
#include <wx/init.h>
#include <wx/weakref.h>

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
        frame_ = new Frame(server_);
        frame_->Show();
        server_.stopOnSignals();
        thread_ = std::thread([this] {
            server_.run();
            CallAfter([this] {
                if (frame_ != nullptr) {
                    frame_->end();
                }
            });
        });
        return true;
    }

    int OnExit() override {
        server_.stop();
        thread_.join();
        return wxApp::OnExit();
    }

private:
    Server& server_;
    wxWeakRef<Frame> frame_;
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
