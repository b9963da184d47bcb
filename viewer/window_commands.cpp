// What the window does on request.

#include <wx/aboutdlg.h>
#include <wx/filedlg.h>
#include <wx/msgdlg.h>

#include <algorithm>
#include <fstream>

#include "recording/error.h"
#include "recording/source.h"
#include "ui/palette_file.h"
#include "viewer/window.h"
#include "viewer/words.h"

namespace viewer {

namespace {

bool isPaletteName(const std::filesystem::path& path) {
    std::string extension = recording::nameOf(path.extension());
    std::ranges::transform(extension, extension.begin(),
                           [](unsigned char letter) { return std::tolower(letter); });
    return extension == ".pal";
}

void showAbout(wxWindow* parent) {
    wxAboutDialogInfo info;
    info.SetName("LUMADOT Viewer");
    info.SetVersion(LUMADOT_VERSION);
    info.SetDescription("Plays the recorded frames of a pinball machine's display.");
    wxAboutBox(info, parent);
}

/// Steps to the right and down.
wxPoint arrowOf(int key) {
    switch (key) {
        case WXK_LEFT:
            return {-1, 0};
        case WXK_RIGHT:
            return {1, 0};
        case WXK_UP:
            return {0, -1};
        case WXK_DOWN:
            return {0, 1};
        default:
            return {0, 0};
    }
}

}  // namespace

void Window::onKey(wxKeyEvent& event) {
    if (event.GetKeyCode() == WXK_ESCAPE && IsFullScreen()) {
        setFullScreen(false);
        return;
    }
    const bool onCanvas = FindFocus() == canvas_ && !event.AltDown() && !event.CmdDown();
    const wxPoint arrow = arrowOf(event.GetKeyCode());
    if (onCanvas && event.ShiftDown() && arrow != wxPoint(0, 0)) {
        canvas_->scrollBy(arrow.x, arrow.y);
        return;
    }
    const auto command = onCanvas ? commandOfKey(event.GetKeyCode()) : std::nullopt;
    if (command) {
        perform(*command);
    } else {
        event.Skip();
    }
}

void Window::perform(Command command) {
    if (busy_) {
        return;
    }
    switch (command) {
        case Command::Open:
            return askForRecording();
        case Command::Reload:
            if (player_) {
                open(std::filesystem::path(player_->followed().path()));
            }
            return;
        case Command::Quit:
            Close();
            return;
        case Command::Keys:
            wxMessageBox(keysInWords(), "Keys", wxOK | wxICON_INFORMATION, this);
            return;
        case Command::About:
            return showAbout(this);
        default:
            break;
    }
    performView(command);
    if (player_ && player_->state().frames > 0) {
        performPlay(command);
        performGo(command);
    }
    refresh();
}

void Window::performPlay(Command command) {
    switch (command) {
        case Command::Export:
            return exportPart();
        case Command::Play:
            if (player_->isPlaying()) {
                player_->pause();
            } else {
                player_->play(Player::Clock::now());
            }
            return schedule();
        case Command::FollowEnd:
            return player_->setFollowEnd(!player_->followsEnd());
        case Command::MarkIn:
            return player_->setMarkIn(player_->number());
        case Command::MarkOut:
            return player_->setMarkOut(player_->number());
        case Command::NoMarks:
            player_->setMarkIn(std::nullopt);
            return player_->setMarkOut(std::nullopt);
        default:
            return;
    }
}

void Window::performGo(Command command) {
    constexpr int Second = 1000;
    switch (command) {
        case Command::Next:
        case Command::Back:
            player_->pause();
            return player_->step(command == Command::Next ? 1 : -1);
        case Command::SecondOn:
            return player_->skip(Second);
        case Command::SecondBack:
            return player_->skip(-Second);
        case Command::First:
            return player_->goTo(0);
        case Command::Last:
            return player_->goToLast();
        case Command::GoToFrame:
            playBar_->frame->SetFocus();
            return playBar_->frame->SetSelection(-1, -1);
        case Command::NextPlace:
            return goToNextPlace();
        default:
            return;
    }
}

void Window::performView(Command command) {
    switch (command) {
        case Command::Loop:
            playBar_->loop->SetValue(!playBar_->loop->GetValue());
            if (player_) {
                player_->setLoop(playBar_->loop->GetValue());
            }
            return;
        case Command::Faster:
            return changeSpeed(1);
        case Command::Slower:
            return changeSpeed(-1);
        case Command::PaletteFile:
            return askForPalette();
        case Command::Larger:
            return grow(1);
        case Command::Smaller:
            return grow(-1);
        case Command::Fit:
            lookBar_->chooseScale(std::nullopt);
            return canvas_->setScale(std::nullopt);
        case Command::RoundDots:
        case Command::SquareDots: {
            const bool round = command == Command::RoundDots;
            lookBar_->dots->SetSelection(round ? 0 : 1);
            GetMenuBar()->Check(idOf(command), true);
            return canvas_->setDots(round ? display::Dots::Round : display::Dots::Square);
        }
        case Command::FullScreen:
            return setFullScreen(!IsFullScreen());
        case Command::ShowPlaces:
            places_->Show(!places_->IsShown());
            Layout();
            return;
        default:
            return;
    }
}

void Window::changeSpeed(int steps) {
    constexpr int Fastest = static_cast<int>(PlayBar::Speeds.size()) - 1;
    const int chosen = std::clamp(playBar_->speed->GetSelection() + steps, 0, Fastest);
    playBar_->speed->SetSelection(chosen);
    if (player_) {
        player_->setSpeed(PlayBar::Speeds[static_cast<std::size_t>(chosen)], Player::Clock::now());
        schedule();
    }
}

void Window::changeShades() {
    if (!player_) {
        return;
    }
    try {
        player_->setShades({lookBar_->mode(), lookBar_->shadeSet()});
    } catch (const recording::Error& error) {
        say(wxString::FromUTF8(words::problem(error.what(), error.failure())), wxICON_ERROR);
    }
    onNews();
}

/// To the next scale that can be chosen.
void Window::grow(int steps) {
    const std::size_t now = canvas_->look().scale;
    std::optional<std::size_t> wanted;
    for (const std::size_t scale : LookBar::Scales) {
        if (steps > 0 ? scale > now && !wanted : scale < now) {
            wanted = scale;
        }
    }
    if (wanted) {
        lookBar_->chooseScale(wanted);
        canvas_->setScale(wanted);
    }
}

/// Nothing but the display.
void Window::setFullScreen(bool full) {
    if (full) {
        hadPlaces_ = places_->IsShown();
        canvas_->SetFocus();
    }
    for (wxWindow* const bar : std::initializer_list<wxWindow*>{indexBar_, playBar_, lookBar_}) {
        bar->Show(!full);
    }
    places_->Show(!full && hadPlaces_);
    ShowFullScreen(full);
    Layout();
    refresh();
}

void Window::goToNextPlace() {
    const Places& places = places_->places();
    if (places.size() == 0) {
        say("No damaged place and no gap has been found.", wxICON_INFORMATION);
        return;
    }
    const std::size_t row = nextPlace_ % places.size();
    nextPlace_ = row + 1;
    places_->select(row);
    if (const auto frame = places.frameAt(row, player_->followed())) {
        player_->pause();
        player_->goTo(*frame);
    }
    refresh();
}

void Window::askForRecording() {
    wxFileDialog dialog(this, "Open a Recording", "", "",
                        "Recordings (*.txt;*.raw)|*.txt;*.raw|All files|*", wxFD_OPEN);
    if (dialog.ShowModal() == wxID_OK) {
        open(pathOf(dialog.GetPath()));
    }
}

void Window::askForPalette() {
    wxFileDialog dialog(this, "Open a Palette", "", "", "Palettes (*.pal)|*.pal|All files|*",
                        wxFD_OPEN);
    if (dialog.ShowModal() == wxID_OK) {
        loadPalette(pathOf(dialog.GetPath()));
    }
}

void Window::loadPalette(const std::filesystem::path& path) {
    std::array<char, palette_file::Size> bytes{};
    std::ifstream file(path, std::ios::binary);
    file.read(bytes.data(), bytes.size());
    const auto count = static_cast<std::size_t>(std::max(file.gcount(), std::streamsize{0}));
    const auto* const first = reinterpret_cast<const std::uint8_t*>(bytes.data());
    const auto colours = palette_file::decode({first, count});
    if (!colours) {
        say(textOf(path) +
                " is no palette file that can be read (56 bytes, the first of them 01). "
                "Save the palette again with the tool's File, Save Palette.",
            wxICON_ERROR);
        return;
    }
    filePalette_ = *colours;
    lookBar_->showPaletteFile(textOf(path.filename()));
    canvas_->setPalette(filePalette_);
    lookBar_->Layout();
}

void Window::take(const std::filesystem::path& path) {
    if (busy_) {
        return;
    }
    isPaletteName(path) ? loadPalette(path) : open(path);
}

}  // namespace viewer
