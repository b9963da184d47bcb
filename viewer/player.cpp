#include "viewer/player.h"

#include <algorithm>
#include <utility>

namespace viewer {

namespace {

using Milliseconds = std::chrono::duration<double, std::milli>;

/// A machine that cannot keep up shows a frame after so long, and goes on from there.
constexpr std::chrono::milliseconds LongestTick{30};

constexpr std::uint32_t SingleFrameMs = 1000;

Player::Clock::duration lasting(std::uint32_t ms, double speed) {
    return std::chrono::duration_cast<Player::Clock::duration>(Milliseconds(ms / speed));
}

}  // namespace

Player::Player(std::filesystem::path path, std::function<void()> news)
    : followed_(std::move(path), std::move(news)) {
    update();
}

bool Player::update() {
    const State before = std::exchange(state_, followed_.state());
    if (state_.frames == 0) {
        hasShown_ = false;
        return before.frames != 0;
    }
    const bool grown = state_.frames > before.frames;
    if (!hasShown_ || number() >= state_.frames) {
        show(std::min(number(), state_.frames - 1));
        return true;
    }
    if (grown && followsEnd_ && !playing_) {
        show(state_.frames - 1);
        return true;
    }
    return false;
}

std::vector<std::uint8_t> Player::entries() const {
    if (!hasShown_) {
        return {};
    }
    const DigitEntries entries = digitEntries();
    std::vector<std::uint8_t> dots(shown_.digits.size());
    std::ranges::transform(shown_.digits, dots.begin(), [&](auto digit) { return entries[digit]; });
    return dots;
}

void Player::setShades(const Shades& shades) {
    if (shades.mode != shades_.mode) {
        followed_.setMode(shades.mode);
    }
    shades_ = shades;
    if (hasShown_) {
        show(number());
    }
}

void Player::goTo(std::uint64_t number) {
    if (state_.frames == 0) {
        return;
    }
    followsEnd_ = false;
    show(std::min(number, state_.frames - 1));
    shownAt_ = Clock::now();
}

void Player::goToLast() {
    if (state_.frames > 0) {
        goTo(state_.frames - 1);
    }
}

void Player::step(std::int64_t frames) {
    const auto back = static_cast<std::uint64_t>(-frames);
    if (frames >= 0) {
        goTo(number() + static_cast<std::uint64_t>(frames));
    } else {
        goTo(number() - std::min(number(), back));
    }
}

void Player::skip(std::int64_t ms) {
    if (state_.frames == 0) {
        return;
    }
    const auto back = static_cast<std::uint64_t>(-ms);
    const std::uint64_t time = ms >= 0 ? elapsedMs_ + static_cast<std::uint64_t>(ms)
                                       : elapsedMs_ - std::min(elapsedMs_, back);
    try {
        goTo(followed_.use([&](auto& recording) { return recording.frameAt(time); }));
    } catch (const recording::Error& error) {
        problem_ = error.what();
        failure_ = error.failure();
    }
}

void Player::setFollowEnd(bool follows) {
    if (follows) {
        playing_ = false;
        goToLast();
    }
    followsEnd_ = follows;
}

/// Reads a frame with its digits, if they are known.
void Player::read(std::uint64_t number, recording::Frame& into) {
    followed_.use([&](recording::Recording& recording) {
        display_ = recording.display().value_or(dump::StandardDisplay);
        recording.readDigits(number, into);
    });
}

void Player::show(std::uint64_t number) {
    hasAhead_ = false;
    hasShown_ = true;
    problem_.clear();
    failure_.reset();
    shown_.number = number;
    try {
        elapsedMs_ = followed_.use([&](auto& recording) { return recording.elapsedMs(number); });
        read(number, shown_);
    } catch (const recording::Error& error) {
        problem_ = error.what();
        failure_ = error.failure();
        shown_.digits.clear();
    } catch (const std::out_of_range&) {
        shown_.digits.clear();  // The file has become shorter just now; `update` will tell.
    }
}

/// Reads the frame that is to come; false: it cannot be read.
bool Player::lookAhead(std::uint64_t number) {
    if (hasAhead_ && ahead_.number == number) {
        return true;
    }
    try {
        read(number, ahead_);
        hasAhead_ = true;
    } catch (const std::exception&) {
        hasAhead_ = false;
    }
    return hasAhead_;
}

/// Shows the frame that was looked at.
void Player::advance() {
    elapsedMs_ += recording::stepMs(shown_.stampMs, ahead_.stampMs);
    std::swap(shown_, ahead_);
    hasAhead_ = false;
}

void Player::play(Time now) {
    if (state_.frames == 0) {
        return;
    }
    followsEnd_ = false;
    if (number() >= lastToPlay()) {
        show(part().first);
    }
    playing_ = true;
    shownAt_ = now;
    stayMs_ = SingleFrameMs;
}

void Player::setSpeed(double speed, Time now) {
    const double left = Milliseconds(shownAt_ - now).count() * speed_ / speed;
    shownAt_ = now + std::chrono::duration_cast<Clock::duration>(Milliseconds(left));
    speed_ = speed;
}

/// The last frame before playing ends or starts again.
std::uint64_t Player::lastToPlay() const {
    const std::uint64_t last = part().last;
    return number() <= last ? last : state_.frames - 1;
}

std::optional<Player::Time> Player::tick(Time now) {
    const Time started = Clock::now();
    while (playing_ && state_.frames > 0) {
        const bool atEnd = number() >= lastToPlay();
        if (atEnd && !loops_) {
            playing_ = !state_.indexed && !state_.stopped && !out_;
            return std::nullopt;  // More is being found.
        }
        const std::uint64_t next = atEnd ? part().first : number() + 1;
        if (!atEnd) {
            if (!lookAhead(next)) {
                playing_ = false;
                show(next);
                return std::nullopt;
            }
            const std::uint32_t step = recording::stepMs(shown_.stampMs, ahead_.stampMs);
            stayMs_ = recording::isBackwards(step) ? 0 : step;
        }
        const Time due = shownAt_ + lasting(stayMs_, speed_);
        if (due > now) {
            return due;
        }
        atEnd ? show(next) : advance();
        shownAt_ = due;
        if (Clock::now() - started > LongestTick) {
            shownAt_ = now;
            return now;
        }
    }
    return std::nullopt;
}

void Player::setMarkIn(std::optional<std::uint64_t> number) {
    in_ = number;
    if (in_ && out_ && *out_ < *in_) {
        out_.reset();
    }
}

void Player::setMarkOut(std::optional<std::uint64_t> number) {
    out_ = number;
    if (in_ && out_ && *out_ < *in_) {
        in_.reset();
    }
}

recording::Range Player::part() const {
    const std::uint64_t last = state_.frames - 1;
    return {std::min(in_.value_or(0), last), std::min(out_.value_or(last), last)};
}

}  // namespace viewer
