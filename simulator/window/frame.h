#ifndef LUMADOT_SIMULATOR_WINDOW_FRAME_H
#define LUMADOT_SIMULATOR_WINDOW_FRAME_H

#include <wx/dialog.h>
#include <wx/frame.h>
#include <wx/infobar.h>
#include <wx/timer.h>

#include <cstdint>
#include <memory>

#include "simulator/server/server.h"
#include "simulator/window/canvas.h"
#include "simulator/window/menus.h"
#include "simulator/window/state_panel.h"

namespace simulator {

/// The simulator's window: the display, what the controller holds, and the menus to play with it.
/// While it cannot be seen it does nothing. The server must outlive it.
class Frame : public wxFrame {
public:
    explicit Frame(Server& server);

    Canvas& canvas() { return *canvas_; }
    StatePanel& state() { return *state_; }

    /// Another board or firmware in place of this one.
    void replace(Board board, SettingsLayout layout);
    /// ms between two frames that the board captures, 0: as fast as asked; and, if these are not
    /// too fast to be seen, between two pictures.
    void setFrameInterval(std::uint32_t ms);
    /// Makes the dots larger or smaller by so many pixels of the screen.
    void grow(int pixels);
    void savePicture();
    /// Closes the window, whatever it asks just now.
    void end();

private:
    void watch();
    void showNextPicture();
    void showPicture();
    void showState();
    void onIconize(wxIconizeEvent& event);

    Server& server_;
    wxInfoBar* message_;
    Canvas* canvas_;
    StatePanel* state_;
    Menus menus_;
    wxDialog* dialog_ = nullptr;  // While it asks for a name.
    bool ending_ = false;
    wxTimer pictureTimer_;
    wxTimer stateTimer_;
    std::uint32_t frameInterval_;
    std::uint32_t step_ = 0;      // Of the imaginary machine.
    std::uint32_t captured_ = 0;  // So many frames, when it was last looked.
    /// Written by the server's thread, with the device held; it outlives the window.
    std::shared_ptr<CommandList> commands_ = std::make_shared<CommandList>();
};

}  // namespace simulator

#endif
