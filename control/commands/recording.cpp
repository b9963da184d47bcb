#include "control/commands/recording.h"

#include <nlohmann/json.hpp>
#include <utility>

#include "control/files.h"
#include "control/interrupt.h"
#include "control/names.h"
#include "control/text.h"
#include "device/frames.h"

namespace control {

namespace {

constexpr Milliseconds Between{100};  // two attempts, when a controller does not play along

int variantOf(const Channel& channel) { return channel.device()->variant; }

}  // namespace

// The start is read before the files are named, as the window does.
Recording::Recording(Session& session, std::unique_ptr<Channel> channel, const std::string& folder,
                     std::uint8_t mode, const RecordingLimits& limits)
    : session_(session),
      channel_(std::move(channel)),
      folder_(folder),
      mode_(mode),
      limits_(limits),
      variant_(variantOf(*channel_)),
      capture_(inputMode(mode), variant_ == variant::Xl, localTimeMillis()),
      files_(folder, inputMode(mode)) {}

ExitCode Recording::run() {
    if (session_.output().showsProgress()) {
        session_.done(
            "Recording; Ctrl-C ends it when the frame that is asked for has come or 10 s "
            "are over.");
    }
    try {
        record();
    } catch (const Interrupted&) {
        endedBy_ = "signal";
    } catch (const Failure&) {
        tell();
        throw;
    }
    tell();
    if (frames_ == 0 && endedBy_ == "seconds") {
        throw Failure(ExitCode::NoAnswer, "No frame has come.",
                      "Check that the machine is on and that the input mode is the machine's.");
    }
    return ExitCode::Done;
}

void Recording::record() {
    while (!isOver()) {
        interrupt::check();
        try {
            round();
        } catch (const Failure& failure) {
            if (failure.code != ExitCode::NoController || !reconnects_) {
                throw;
            }
            search();
        }
        showProgress();
    }
    endedBy_ = limits_.frames > 0 && frames_ >= limits_.frames ? "frames" : "seconds";
}

bool Recording::isOver() const {
    return (limits_.frames > 0 && frames_ >= limits_.frames) ||
           (limits_.seconds > 0 && secondsSince(start_) >= limits_.seconds);
}

void Recording::round() {
    if (!request()) {
        ++refused_;
        pause(Between);
    } else if (readReply()) {
        write(capture_.append(files_));
        ++frames_;
    } else {
        ++lost_;
        write(files_.appendText({}));
    }
}

/// False: the controller has not taken it.
bool Recording::request() {
    try {
        channel_->send(capture_.request(), wire::DumpRequestTimeout);
        return true;
    } catch (const Failure& failure) {
        if (failure.code != ExitCode::NoAnswer) {
            throw;
        }
        return false;
    }
}

/// False: no frame. The byte behind the planes carries nothing, and may be missing.
bool Recording::readReply() {
    const auto reply = capture_.reply();
    try {
        return channel_->receive(reply, wire::DumpReplyTimeout) + 1 >= reply.size();
    } catch (const Failure& failure) {
        if (failure.code != ExitCode::NoAnswer) {
            throw;
        }
        return false;
    }
}

void Recording::write(bool written) const {
    if (!written) {
        throw fileFailure(folder_, "does not take the frames",
                          "Check its permissions and the room on the disk; what has been written "
                          "is there.");
    }
}

/// Until the controller is back, a limit is reached or a signal comes.
void Recording::search() {
    channel_.reset();
    session_.done("The controller has gone; waiting for it to come back.");
    while (!isOver()) {
        pause(Between);
        try {
            return comeBack();
        } catch (const Interrupted&) {
            throw;
        } catch (const Failure& failure) {
            // It may be there and not yet be the user's: whatever it is, it may pass.
            if (failure.code == ExitCode::Failed) {
                throw;
            }
        }
    }
}

void Recording::comeBack() {
    auto channel = session_.connect();
    if (variantOf(*channel) != variant_) {
        throw Failure(ExitCode::Failed, "Another kind of controller has come back.",
                      "Start another recording.");
    }
    if (selectsMode_) {
        channel->send(frames::command(Command::SelectMode, mode_));
    }
    channel_ = std::move(channel);
    session_.done("The controller is back.");
}

std::string Recording::counts() const {
    const double seconds = secondsSince(start_);
    return std::to_string(frames_) + " frames in " + decimal(seconds) + " s (" +
           decimal(seconds > 0 ? frames_ / seconds : 0) + " a second), " +
           std::to_string(refused_) + " refused, " + std::to_string(lost_) + " lost";
}

void Recording::showProgress() {
    constexpr Milliseconds BetweenLines{500};
    if (session_.output().showsProgress() && now() - shown_ >= BetweenLines) {
        shown_ = now();
        session_.output().progress(counts());
    }
}

void Recording::tell() {
    const double seconds = secondsSince(start_);
    session_.document()["record"] = {{"mode", nameJson(modeNames(), mode_)},
                                     {"text", files_.textPath()},
                                     {"raw", files_.hasRaw() ? Json(files_.rawPath()) : Json()},
                                     {"frames", frames_},
                                     {"refused", refused_},
                                     {"lost", lost_},
                                     {"seconds", seconds},
                                     {"rate", seconds > 0 ? frames_ / seconds : 0.0},
                                     {"endedBy", endedBy_}};
    session_.done(counts() + ": " + files_.textPath());
}

}  // namespace control
