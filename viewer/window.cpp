#include "viewer/window.h"

#include <wx/dnd.h>
#include <wx/settings.h>
#include <wx/sizer.h>

#include <cmath>

#include "accessibility/accessibility.h"
#include "platform/native_file.h"
#include "platform/window_icon.h"
#include "recording/error.h"
#include "viewer/words.h"

namespace viewer {

namespace {

constexpr const char* Title = "LUMADOT Viewer";
constexpr const char* StartHint = "Open a recording with File, Open (Ctrl+O), or drop it here.";

/// Files that are dragged onto the window.
class DropTarget : public wxFileDropTarget {
public:
    explicit DropTarget(Window& window) : window_(window) {}

    bool OnDropFiles(wxCoord /*x*/, wxCoord /*y*/, const wxArrayString& files) override {
        for (const wxString& file : files) {
            window_.take(pathOf(file));
        }
        return true;
    }

private:
    Window& window_;
};

}  // namespace

wxString textOf(const std::filesystem::path& path) {
    const std::string name = recording::nameOf(path);
    const wxString text = wxString::FromUTF8(name);
    return text.empty() ? wxString::From8BitData(name.c_str()) : text;
}

std::filesystem::path pathOf(const wxString& text) {
    const auto name = text.fn_str();  // Of another type on Windows.
    const std::filesystem::path::value_type* const letters = name;
    return native_file::reachable(letters);
}

Window::Window()
    : wxFrame(nullptr, wxID_ANY, Title),
      messageBar_(new wxInfoBar(this)),
      frameOfCanvas_(new wxPanel(this)),
      canvas_(new Canvas(frameOfCanvas_)),
      indexBar_(new IndexBar(this)),
      playBar_(new PlayBar(this)),
      lookBar_(new LookBar(this)),
      places_(new PlaceTable(this)),
      timer_(this) {
    setProgramIcon(*this);
    SetMenuBar(makeMenus());
    constexpr int StatusWidths[] = {-3, -3, -4};  // Shares.
    CreateStatusBar(std::size(StatusWidths))
        ->SetStatusWidths(std::size(StatusWidths), StatusWidths);
    accessibility::setName(*canvas_, "Display");
    canvas_->setHint(StartHint);
    canvas_->setPalette(
        presets::colours(static_cast<std::size_t>(lookBar_->palette->GetSelection())));
    layOut();
    bindControls();
    bindLook();
    SetDropTarget(new DropTarget(*this));
    refresh();
    canvas_->SetFocus();
}

Window::~Window() {
    // It loses the focus when it is deleted, which is after this.
    canvas_->Unbind(wxEVT_SET_FOCUS, &Window::onFocus, this);
    canvas_->Unbind(wxEVT_KILL_FOCUS, &Window::onFocus, this);
}

void Window::layOut() {
    constexpr int FirstWidth = 1024;  // Of the display, in pixels.
    const int edge = FromDIP(2);
    auto* const inside = new wxBoxSizer(wxVERTICAL);
    inside->Add(canvas_, wxSizerFlags(1).Expand().Border(wxALL, edge));
    frameOfCanvas_->SetSizer(inside);
    const auto wide = wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT | wxTOP, FromDIP(8));
    auto* const column = new wxBoxSizer(wxVERTICAL);
    column->Add(messageBar_, wxSizerFlags().Expand());
    column->Add(frameOfCanvas_, wxSizerFlags(1).Expand());
    column->Add(indexBar_, wide);
    column->Add(playBar_, wide);
    column->Add(lookBar_, wide);
    column->Add(places_, wxSizerFlags(wide).Border(wxALL, FromDIP(8)));
    places_->SetMinSize(FromDIP(wxSize(400, 110)));
    column->AddSpacer(FromDIP(8));
    SetSizer(column);
    const double pixels = GetContentScaleFactor();
    canvas_->SetMinSize(canvas_->sizeFor(2));
    SetMinClientSize(column->ComputeFittingClientSize(this));
    canvas_->SetMinSize(
        canvas_->sizeFor(static_cast<std::size_t>(std::lround(FirstWidth * pixels)) /
                         dump::StandardDisplay.columns()));
    SetClientSize(column->ComputeFittingClientSize(this));
    canvas_->SetMinSize(canvas_->sizeFor(2));
}

void Window::bindControls() {
    Bind(wxEVT_MENU, [this](wxCommandEvent& event) {
        if (const auto command = commandOf(event.GetId())) {
            perform(*command);
        } else {
            event.Skip();
        }
    });
    Bind(wxEVT_CHAR_HOOK, &Window::onKey, this);
    Bind(
        wxEVT_TIMER, [this](wxTimerEvent&) { schedule(); }, timer_.GetId());
    const std::pair<wxButton*, Command> buttons[] = {
        {playBar_->first, Command::First},      {playBar_->back, Command::Back},
        {playBar_->play, Command::Play},        {playBar_->next, Command::Next},
        {playBar_->last, Command::Last},        {playBar_->markIn, Command::MarkIn},
        {playBar_->markOut, Command::MarkOut},  {playBar_->noMarks, Command::NoMarks},
        {playBar_->exportPart, Command::Export}};
    for (const auto& [button, command] : buttons) {
        button->Bind(wxEVT_BUTTON, [this, wanted = command](auto&) { perform(wanted); });
    }
    const auto goTo = [this](int number) {
        if (player_) {
            player_->goTo(static_cast<std::uint64_t>(std::max(number, 0)));
            refresh();
        }
    };
    playBar_->slider->Bind(wxEVT_SLIDER,
                           [this, goTo](auto&) { goTo(playBar_->slider->GetValue()); });
    playBar_->frame->Bind(wxEVT_SPINCTRL,
                          [goTo](wxSpinEvent& event) { goTo(event.GetPosition()); });
    playBar_->speed->Bind(wxEVT_CHOICE, [this](auto&) { changeSpeed(0); });
    playBar_->loop->Bind(wxEVT_CHECKBOX, [this](auto&) {
        if (player_) {
            player_->setLoop(playBar_->loop->GetValue());
            refresh();
        }
    });
    indexBar_->stop->Bind(wxEVT_BUTTON, [this](auto&) {
        if (player_) {
            player_->followed().stop(!player_->state().stopped);
            onNews();
        }
    });
    places_->Bind(wxEVT_DATAVIEW_ITEM_ACTIVATED, [this](auto&) {
        if (const auto row = places_->selected()) {
            nextPlace_ = *row;
            goToNextPlace();
        }
    });
    canvas_->Bind(wxEVT_SET_FOCUS, &Window::onFocus, this);
    canvas_->Bind(wxEVT_KILL_FOCUS, &Window::onFocus, this);
    canvas_->Bind(wxEVT_LEFT_DCLICK, [this](auto&) { setFullScreen(!IsFullScreen()); });
}

/// The canvas is framed while it has the focus.
void Window::onFocus(wxFocusEvent& event) {
    frameOfCanvas_->SetBackgroundColour(event.GetEventType() == wxEVT_SET_FOCUS
                                            ? wxSystemSettings::GetColour(wxSYS_COLOUR_HIGHLIGHT)
                                            : wxNullColour);
    frameOfCanvas_->Refresh();
    event.Skip();
}

void Window::bindLook() {
    lookBar_->palette->Bind(wxEVT_CHOICE, [this](auto&) {
        const auto chosen = static_cast<std::size_t>(lookBar_->palette->GetSelection());
        if (chosen < presets::Count) {
            canvas_->setPalette(presets::colours(chosen));
        } else {
            canvas_->setPalette(filePalette_);
        }
    });
    lookBar_->paletteFile->Bind(wxEVT_BUTTON, [this](auto&) { perform(Command::PaletteFile); });
    lookBar_->inputMode->Bind(wxEVT_CHOICE, [this](auto&) { changeShades(); });
    lookBar_->shades->Bind(wxEVT_CHOICE, [this](auto&) { changeShades(); });
    lookBar_->scale->Bind(wxEVT_CHOICE,
                          [this](auto&) { canvas_->setScale(lookBar_->scaleChosen()); });
    lookBar_->dots->Bind(wxEVT_CHOICE, [this](auto&) {
        perform(lookBar_->dots->GetSelection() == 0 ? Command::RoundDots : Command::SquareDots);
    });
}

void Window::open(const std::filesystem::path& path) {
    std::unique_ptr<Player> opened;
    try {
        opened = std::make_unique<Player>(path, [this] { CallAfter([this] { onNews(); }); });
    } catch (const recording::Error& error) {
        say(wxString::FromUTF8(words::problem(error.what(), error.failure())), wxICON_ERROR);
        return;
    }
    if (player_) {
        opened->setSpeed(player_->speed(), Player::Clock::now());
    }
    opened->setLoop(playBar_->loop->GetValue());
    player_ = std::move(opened);
    missing_ = player_->followed().use([](const auto& recording) { return recording.missing(); });
    standing_.clear();
    nextPlace_ = 0;
    messageBar_->Dismiss();
    messageShown_.clear();
    places_->show({});
    changeSpeed(0);
    lookBar_->showModes(player_.get());
    refresh();
    canvas_->SetFocus();
}

/// The thread has found more.
void Window::onNews() {
    if (!player_ || busy_) {
        return;
    }
    player_->update();
    schedule();
}

/// Plays what is due, and comes back for what is next.
void Window::schedule() {
    if (!player_ || busy_) {
        return;
    }
    const auto next = player_->tick(Player::Clock::now());
    if (next) {
        const auto wait =
            std::chrono::ceil<std::chrono::milliseconds>(*next - Player::Clock::now());
        timer_.StartOnce(static_cast<int>(std::max<std::int64_t>(wait.count(), 1)));
    }
    refresh();
}

void Window::refresh() {
    showFrame();
    // First: the status bar paints at once, and GTK would draw a slider that moved before that
    // where it was.
    showStatus();
    playBar_->show(player_.get());
    showPlaces();
    showMessages();
    indexBar_->show(player_ ? player_->state() : State());
    wxMenuBar& menus = *GetMenuBar();
    menus.Check(idOf(Command::Loop), playBar_->loop->GetValue());
    menus.Check(idOf(Command::FollowEnd), player_ && player_->followsEnd());
    menus.Check(idOf(Command::FullScreen), IsFullScreen());
    menus.Check(idOf(Command::ShowPlaces), places_->IsShown());
}

void Window::showFrame() {
    if (!player_) {
        return;
    }
    canvas_->show(player_->entries(), player_->display());
    canvas_->setHint(player_->state().frames == 0 ? "There is no frame that can be read."
                                                  : "This frame cannot be shown.");
}

void Window::showStatus() {
    wxString title = Title;
    wxString texts[3];
    if (player_) {
        const State& state = player_->state();
        title = textOf(player_->followed().path().filename()) + " - " + Title;
        const dump::Geometry display = player_->display();
        texts[0] = wxString::Format("%zu x %zu dots%s", display.columns(), display.rows,
                                    player_->followsEnd() ? ", follows the end" : "");
        if (state.frames > 0) {
            texts[1] = wxString::Format("Time stamp 0x%08x", player_->stampMs());
        }
        texts[2] = std::to_string(state.damages) +
                   (state.damages == 1 ? " damaged place, " : " damaged places, ") +
                   std::to_string(state.gaps) + (state.gaps == 1 ? " gap" : " gaps");
    }
    if (GetTitle() != title) {
        SetTitle(title);
    }
    for (int i = 0; i < 3; ++i) {
        if (GetStatusBar()->GetStatusText(i) != texts[i]) {
            SetStatusText(texts[i], i);
            accessibility::setDescriptionOf(*GetStatusBar());
        }
    }
    if (player_ && !player_->isPlaying()) {
        accessibility::setDescription(*canvas_, "Frame " + std::to_string(player_->number()) +
                                                    " at " + words::time(player_->elapsedMs()));
    }
}

void Window::showPlaces() {
    if (!player_) {
        return;
    }
    const State& state = player_->state();
    const std::size_t damages =
        std::min<std::uint64_t>(state.damages, recording::Indexer::MaxDamages);
    const Places& shown = places_->places();
    if (damages == shown.damages.size() && state.gaps == shown.gaps.size()) {
        return;
    }
    places_->show(Places::of(player_->followed()));
}

/// What is to be said about the recording as it is; each text once.
void Window::showMessages() {
    if (!player_) {
        return;
    }
    std::string text;
    if (player_->failure()) {
        text = words::problem(player_->problem(), *player_->failure());
    } else if (!player_->state().error.empty()) {
        text = player_->state().error + ". Check the file, and open it again with File, Reload.";
    } else if (player_->state().frames > 0) {
        text = missing_;
    }
    if (text == standing_) {
        return;
    }
    standing_ = text;
    if (text.empty()) {
        messageBar_->Dismiss();
        messageShown_.clear();
    } else {
        say(wxString::FromUTF8(text), wxICON_WARNING);
    }
}

void Window::say(const wxString& text, int icon) {
    messageShown_ = text;
    messageBar_->ShowMessage(text, icon);
}

}  // namespace viewer
