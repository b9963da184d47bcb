#ifndef LUMADOT_VIEWER_WINDOW_H
#define LUMADOT_VIEWER_WINDOW_H

#include <wx/frame.h>
#include <wx/infobar.h>
#include <wx/timer.h>

#include <filesystem>
#include <memory>
#include <string>

#include "viewer/canvas.h"
#include "viewer/commands.h"
#include "viewer/controls.h"
#include "viewer/export_job.h"
#include "viewer/places.h"
#include "viewer/player.h"

namespace viewer {

/// The window: one recording, its display, and what can be done with it.
class Window : public wxFrame {
public:
    Window();
    ~Window() override;

    /// Opens a recording in place of the one that is shown. When it cannot be opened that one
    /// stays, and a message says why.
    void open(const std::filesystem::path& path);
    /// Shows it in the colours of a palette file.
    void loadPalette(const std::filesystem::path& path);
    /// What a file that is dropped on the window is.
    void take(const std::filesystem::path& path);

    void perform(Command command);

    Player* player() { return player_.get(); }
    Canvas& canvas() { return *canvas_; }
    PlayBar& playBar() { return *playBar_; }
    LookBar& lookBar() { return *lookBar_; }
    IndexBar& indexBar() { return *indexBar_; }
    PlaceTable& places() { return *places_; }
    /// What the message bar says; empty: it is hidden.
    wxString message() const { return messageShown_; }

private:
    void layOut();
    void bindControls();
    void bindLook();
    void onKey(wxKeyEvent& event);
    void onFocus(wxFocusEvent& event);
    void onNews();
    void performPlay(Command command);
    void performGo(Command command);
    void performView(Command command);

    void refresh();
    void showFrame();
    void showStatus();
    void showMessages();
    void showPlaces();
    void say(const wxString& text, int icon);
    void schedule();
    void changeShades();
    void grow(int steps);
    void setFullScreen(bool full);
    void goToNextPlace();
    void changeSpeed(int steps);

    void askForRecording();
    void askForPalette();
    void exportPart();
    void carryOut(const ExportJob& job);

    wxInfoBar* messageBar_;
    wxPanel* frameOfCanvas_;  ///< shows where the focus is
    Canvas* canvas_;
    IndexBar* indexBar_;
    PlayBar* playBar_;
    LookBar* lookBar_;
    PlaceTable* places_;
    wxTimer timer_;
    std::unique_ptr<Player> player_;
    wxString messageShown_;
    std::string standing_;   ///< the message of the state, shown once
    bool hadPlaces_ = true;  ///< before the full screen
    bool busy_ = false;      ///< somebody else has the recording
    std::size_t nextPlace_ = 0;
    std::string missing_;  ///< what the recording lacks
    presets::Colours filePalette_{};
};

/// A path for people.
wxString textOf(const std::filesystem::path& path);
/// A path that the toolkit gives.
std::filesystem::path pathOf(const wxString& text);

}  // namespace viewer

#endif
