#ifndef LUMADOT_VIEWER_PLAYER_H
#define LUMADOT_VIEWER_PLAYER_H

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "device/dump_format.h"
#include "recording/cut.h"
#include "recording/error.h"
#include "viewer/followed.h"
#include "viewer/shades.h"

namespace viewer {

/// Which frame of a recording is shown, and when the next one is.
class Player {
public:
    using Clock = std::chrono::steady_clock;
    using Time = Clock::time_point;

    /// A recording that is open, at its first frame. Throws recording::Error.
    Player(std::filesystem::path path, std::function<void()> news);

    Followed& followed() { return followed_; }

    /// Takes over what the thread has found. True when another frame is shown now.
    bool update();
    const State& state() const { return state_; }

    // The frame that is shown.
    std::uint64_t number() const { return shown_.number; }
    std::uint32_t stampMs() const { return shown_.stampMs; }
    std::uint64_t elapsedMs() const { return elapsedMs_; }
    dump::Geometry display() const { return display_; }
    /// Palette entries of its dots; empty when it cannot be shown.
    std::vector<std::uint8_t> entries() const;
    /// Why it cannot be shown, or is not as it should be, and what kind of failure that is.
    const std::string& problem() const { return problem_; }
    std::optional<recording::Failure> failure() const { return failure_; }

    const Shades& shades() const { return shades_; }
    /// Throws recording::Error (ModeUnfit), and changes nothing then.
    void setShades(const Shades& shades);
    DigitEntries digitEntries() const { return entriesOf(shades_, state_.highestDigit); }

    // Moving; what is out of range ends at the first or the last frame.
    void goTo(std::uint64_t number);
    void goToLast();
    void step(std::int64_t frames);
    void skip(std::int64_t ms);

    // Playing.
    bool isPlaying() const { return playing_; }
    void play(Time now);
    void pause() { playing_ = false; }
    double speed() const { return speed_; }
    void setSpeed(double speed, Time now);
    bool loops() const { return loops_; }
    void setLoop(bool loops) { loops_ = loops; }
    /// Whether the newest frame is shown as soon as it is there.
    bool followsEnd() const { return followsEnd_; }
    void setFollowEnd(bool follows);
    /// Shows what is due. Returns when there is more to do; nothing: not before something changes.
    std::optional<Time> tick(Time now);

    // A part of the recording, its ends included.
    const std::optional<std::uint64_t>& markIn() const { return in_; }
    const std::optional<std::uint64_t>& markOut() const { return out_; }
    void setMarkIn(std::optional<std::uint64_t> number);
    void setMarkOut(std::optional<std::uint64_t> number);
    /// What is between the marks, or all. There must be frames.
    recording::Range part() const;

private:
    void show(std::uint64_t number);
    void read(std::uint64_t number, recording::Frame& into);
    bool lookAhead(std::uint64_t number);
    void advance();
    std::uint64_t lastToPlay() const;

    Followed followed_;
    State state_;
    Shades shades_;
    dump::Geometry display_ = dump::StandardDisplay;
    recording::Frame shown_;
    recording::Frame ahead_;  ///< the one behind it, once it has been looked at
    bool hasAhead_ = false;
    bool hasShown_ = false;
    std::uint64_t elapsedMs_ = 0;
    std::string problem_;
    std::optional<recording::Failure> failure_;

    bool playing_ = false;
    bool loops_ = false;
    bool followsEnd_ = false;
    double speed_ = 1;
    Time shownAt_;
    std::uint32_t stayMs_ = 1000;  ///< of the frame before
    std::optional<std::uint64_t> in_;
    std::optional<std::uint64_t> out_;
};

}  // namespace viewer

#endif
