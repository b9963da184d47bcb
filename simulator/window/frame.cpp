#include "simulator/window/frame.h"

#include <wx/filedlg.h>
#include <wx/filefn.h>
#include <wx/imagpng.h>
#include <wx/log.h>
#include <wx/sizer.h>

#include <algorithm>
#include <iterator>

#include "accessibility/accessibility.h"
#include "platform/window_icon.h"

namespace simulator {

namespace {

constexpr std::uint32_t ShortestPictureInterval = 16;  // ms
constexpr int StateInterval = 100;                     // ms
constexpr int FirstWidth = 768;                        // of the display, in pixels

wxString lineState(const UsbDevice& device) {
    return !device.pluggedIn() ? "Unplugged" : device.attached() ? "In use" : "Nobody attached";
}

wxString boardName(Board board) {
    return board == Board::Xl ? "LUMADOT XL, 192 x 64 dots" : "LUMADOT, 128 x 32 dots";
}

}  // namespace

Frame::Frame(Server& server)
    : wxFrame(nullptr, wxID_ANY, "LUMADOT Simulator"),
      server_(server),
      message_(new wxInfoBar(this)),
      canvas_(new Canvas(this)),
      state_(new StatePanel(this)),
      menus_(*this, server),
      pictureTimer_(this),
      stateTimer_(this),
      frameInterval_(
          server.inspect([](const UsbDevice& device) { return device.options().frameInterval; })) {
    if (wxImage::FindHandler(wxBITMAP_TYPE_PNG) == nullptr) {
        wxImage::AddHandler(new wxPNGHandler);
    }
    setProgramIcon(*this);
    accessibility::setName(*canvas_, "Display");
    constexpr int StatusWidths[] = {-3, -4, -2};  // Shares.
    CreateStatusBar(std::size(StatusWidths))
        ->SetStatusWidths(std::size(StatusWidths), StatusWidths);
    auto* const column = new wxBoxSizer(wxVERTICAL);
    column->Add(message_, wxSizerFlags().Expand());
    column->Add(canvas_, wxSizerFlags(1).Expand());
    column->Add(state_, wxSizerFlags().Expand());
    SetSizer(column);

    server_.withDevice([commands = commands_](UsbDevice& device) {
        device.onTransfer([commands](const Transfer& transfer) { commands->add(transfer); });
    });
    Bind(
        wxEVT_TIMER, [this](auto&) { showNextPicture(); }, pictureTimer_.GetId());
    Bind(
        wxEVT_TIMER, [this](auto&) { showState(); }, stateTimer_.GetId());
    Bind(wxEVT_ICONIZE, &Frame::onIconize, this);
    showState();
    canvas_->SetMinSize(canvas_->sizeFor(1));
    SetMinClientSize(column->ComputeFittingClientSize(this));
    const auto columns =
        server_.inspect([](const UsbDevice& device) { return device.controller().size().columns; });
    canvas_->SetMinSize(
        canvas_->sizeFor(static_cast<std::size_t>(FirstWidth * GetContentScaleFactor()) / columns));
    SetClientSize(column->ComputeFittingClientSize(this));
    canvas_->SetMinSize(canvas_->sizeFor(1));
    watch();
}

/// Looks at the device from now on.
void Frame::watch() {
    pictureTimer_.Start(static_cast<int>(std::max(frameInterval_, ShortestPictureInterval)));
    stateTimer_.Start(StateInterval);
}

void Frame::onIconize(wxIconizeEvent& event) {
    if (event.IsIconized()) {
        pictureTimer_.Stop();
        stateTimer_.Stop();
    } else {
        watch();
    }
    event.Skip();
}

/// What is captured is what is seen; otherwise the machine plays on by itself.
void Frame::showNextPicture() {
    const std::uint32_t captured = server_.inspect(
        [](const UsbDevice& device) { return device.controller().capturedFrames(); });
    step_ = captured == captured_ || captured == 0 ? step_ + 1 : captured - 1;
    captured_ = captured;
    showPicture();
}

void Frame::showPicture() {
    canvas_->show(server_.inspect(
        [this](const UsbDevice& device) { return shown(device.controller(), step_); }));
}

void Frame::showState() {
    showPicture();
    server_.inspect([this](const UsbDevice& device) {
        const Controller& controller = device.controller();
        state_->settings->show(settingsInWords(controller));
        state_->files->show(filesInWords(controller));
        state_->commands->show(commands_->rows());
        menus_.show(device);
        const wxString texts[] = {
            boardName(device.options().board) + (controller.restarting() ? ", restarting" : ""),
            "USB over IP at " + server_.address() + ", port " + std::to_string(server_.port()),
            lineState(device)};
        for (int i = 0; i < static_cast<int>(std::size(texts)); ++i) {
            if (GetStatusBar()->GetStatusText(i) != texts[i]) {
                SetStatusText(texts[i], i);
                accessibility::setDescriptionOf(*GetStatusBar());
            }
        }
    });
}

void Frame::replace(Board board, SettingsLayout layout) {
    server_.withDevice([&](UsbDevice& device) {
        ControllerOptions options = device.options();
        options.board = board;
        options.layout = layout;
        options.frameInterval = frameInterval_;
        device.replace(std::move(options));
    });
    showState();
    canvas_->Refresh();
}

void Frame::setFrameInterval(std::uint32_t ms) {
    frameInterval_ = ms;
    server_.withDevice([ms](UsbDevice& device) { device.controller().setFrameInterval(ms); });
    watch();
}

void Frame::grow(int pixels) {
    const auto scale = static_cast<int>(canvas_->scale());
    const wxSize wanted = canvas_->sizeFor(static_cast<std::size_t>(std::max(scale + pixels, 1)));
    SetClientSize(GetClientSize() + wanted - canvas_->GetClientSize());
}

void Frame::savePicture() {
    const wxImage picture = canvas_->picture().Copy();  // As it is now: it plays on meanwhile.
    wxFileDialog dialog(this, "Save a Picture", wxGetCwd(), "display.png",
                        "PNG pictures (*.png)|*.png", wxFD_SAVE | wxFD_OVERWRITE_PROMPT);
    dialog_ = &dialog;
    const int answer = dialog.ShowModal();
    dialog_ = nullptr;
    if (ending_) {
        Close(true);
        return;
    }
    if (answer != wxID_OK) {
        return;
    }
    const wxLogNull silence;
    if (!picture.SaveFile(dialog.GetPath(), wxBITMAP_TYPE_PNG)) {
        message_->ShowMessage(
            "Cannot write " + dialog.GetPath() + ". Save it in a folder that you may write to.",
            wxICON_ERROR);
    }
}

void Frame::end() {
    ending_ = true;
    if (dialog_ != nullptr) {
        dialog_->EndModal(wxID_CANCEL);  // It must go before the window.
    } else {
        Close(true);
    }
}

}  // namespace simulator
