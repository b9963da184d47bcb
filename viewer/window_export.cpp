// Parts of a recording as pictures and dumps.

#include <wx/progdlg.h>

#include <atomic>
#include <future>

#include "pictures/png.h"
#include "recording/error.h"
#include "viewer/export_dialog.h"
#include "viewer/window.h"
#include "viewer/words.h"

namespace viewer {

namespace {

/// How far a thread is, and whether it shall go on.
struct Watched {
    std::atomic<std::uint64_t> done = 0;
    std::atomic<std::uint64_t> total = 0;
    std::atomic<bool> ended = false;

    recording::Progress progress() {
        return [this](std::uint64_t now, std::uint64_t all) {
            done = now;
            total = all;
            return !ended;
        };
    }
};

/// Shows how far it is until it is ready, and ends it when it is told to.
void watch(std::future<ExportResult>& result, Watched& watched, wxProgressDialog& dialog) {
    constexpr std::chrono::milliseconds Between{30};
    while (result.wait_for(Between) != std::future_status::ready) {
        const std::uint64_t all = watched.total;
        const double share =
            all == 0 ? 0 : static_cast<double>(watched.done) / static_cast<double>(all);
        const int value =
            std::min(static_cast<int>(share * dialog.GetRange()), dialog.GetRange() - 1);
        if (!watched.ended && !dialog.Update(value)) {
            watched.ended = true;
        }
    }
}

std::string inWords(const ExportJob& job, const ExportResult& result) {
    std::filesystem::path path = job.path;
    if (job.kind == ExportKind::Pictures) {
        path = pictures::numbered(path, 0);
    }
    std::string text = "Wrote " + std::to_string(result.frames) +
                       (result.frames == 1 ? " frame to " : " frames to ") +
                       std::string(textOf(path).utf8_str());
    if (job.kind == ExportKind::Pictures) {
        text += " and so on";
    }
    if (result.leftOut > 0) {
        text += "; " + std::to_string(result.leftOut) +
                " were left out, because a GIF shows 50 a second at most";
    }
    return text + ".";
}

}  // namespace

void Window::exportPart() {
    player_->pause();
    refresh();
    ExportDialog::Offer offer;
    offer.recording = std::filesystem::absolute(player_->followed().path());
    offer.kind = player_->followed().use([](const auto& recording) { return recording.kind(); });
    offer.part = player_->part();
    offer.lastFrame = player_->state().frames - 1;
    offer.shownFrame = player_->number();
    offer.mode = player_->shades().mode;
    offer.look = canvas_->look();
    ExportDialog dialog(this, offer);
    if (dialog.ShowModal() == wxID_OK) {
        carryOut(dialog.job());
    }
}

void Window::carryOut(const ExportJob& job) {
    Watched watched;
    busy_ = true;
    auto result = std::async(std::launch::async, [&] {
        return run(job, player_->followed(), player_->shades(), watched.progress());
    });
    {
        constexpr int Steps = 1000;
        wxProgressDialog dialog("Export", "Writing " + textOf(job.path.filename()), Steps, this,
                                wxPD_APP_MODAL | wxPD_CAN_ABORT | wxPD_REMAINING_TIME);
        watch(result, watched, dialog);
    }
    busy_ = false;
    canvas_->SetFocus();  // Which the disabled window has lost.
    try {
        const ExportResult written = result.get();
        say(written.finished ? wxString::FromUTF8(inWords(job, written))
                             : wxString("The export was cancelled; nothing was written."),
            wxICON_INFORMATION);
    } catch (const recording::Error& error) {
        say(wxString::FromUTF8(words::problem(error.what(), error.failure())), wxICON_ERROR);
    } catch (const std::exception& error) {
        say(wxString("The export failed: ") + error.what() + ". Export a smaller part.",
            wxICON_ERROR);
    }
    onNews();
}

}  // namespace viewer
