#include "viewer/followed.h"

#include <system_error>
#include <utility>

namespace viewer {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds TellInterval{50};
constexpr std::chrono::milliseconds LongestStart{300};

/// Whoever wants the recording waits so long, lest the work is never done.
constexpr std::chrono::milliseconds ShortestTurn{4};

}  // namespace

Followed::Turn::Turn(Followed& owner) : owner_(owner) {
    ++owner_.waiting_;
    lock_ = std::unique_lock(owner_.mutex_);
    --owner_.waiting_;
}

Followed::Turn::~Turn() {
    lock_.unlock();
    owner_.turn_.notify_one();
}

Followed::Followed(std::filesystem::path path, std::function<void()> news)
    : path_(std::move(path)), news_(std::move(news)), recording_(path_) {
    const auto limit = Clock::now() + LongestStart;
    index([&](std::uint64_t, std::uint64_t) {
        return recording_.frames() == 0 && Clock::now() < limit;
    });
    publish();
    thread_ = std::thread([this] { run(); });
}

Followed::~Followed() {
    ending_ = true;
    {
        const Turn turn(*this);  // So that it is not missed between look and wait.
    }
    thread_.join();
}

State Followed::state() {
    const std::lock_guard lock(stateMutex_);
    told_ = false;
    State state = state_;
    state.stopped = stopped_;
    return state;
}

void Followed::stop(bool stopped) {
    stopped_ = stopped;
    const Turn turn(*this);
}

void Followed::setMode(std::optional<std::uint8_t> mode) {
    const Turn turn(*this);
    recording_.setMode(mode);
    survey_.restart();
    rests_ = false;
}

void Followed::run() {
    std::unique_lock lock(mutex_);
    while (!ending_) {
        if (waiting_ > 0 || stopped_) {
            turn_.wait(lock, [this] { return ending_ || (waiting_ == 0 && !stopped_); });
        } else if (rests_ && !hasGrown()) {
            turn_.wait_for(lock, LookInterval);
        } else {
            work();
        }
    }
}

/// Until all is done, or somebody wants the recording.
void Followed::work() {
    const auto start = Clock::now();
    const auto goesOn = [&](std::uint64_t, std::uint64_t) {
        tellNowAndThen();
        const bool makesWay = waiting_ > 0 && Clock::now() - start >= ShortestTurn;
        return !makesWay && !ending_ && !stopped_;
    };
    now_.error.clear();
    try {
        const bool indexed = index([&](std::uint64_t done, std::uint64_t total) {
            now_.bytesDone = done;
            now_.bytes = total;
            return goesOn(done, total);
        });
        rests_ = indexed && survey_.extend(recording_, goesOn);
    } catch (const std::exception& error) {
        now_.error = error.what();
        rests_ = true;
    }
    if (rests_) {
        publish();
        tell();
    } else {
        tellNowAndThen();
    }
}

bool Followed::hasGrown() const {
    std::error_code error;
    const std::uint64_t size = std::filesystem::file_size(path_, error);
    return !error && size != seenBytes_;
}

bool Followed::index(const recording::Progress& progress) {
    std::error_code ignored;
    const std::uint64_t size = std::filesystem::file_size(path_, ignored);
    if (now_.indexed && size == seenBytes_) {
        return true;
    }
    seenBytes_ = size;
    now_.indexed = false;
    now_.indexed = recording_.extend(progress);
    return now_.indexed;
}

void Followed::publish() {
    now_.frames = recording_.frames();
    now_.durationMs = recording_.summary().durationMs;
    now_.damages = recording_.damageCount();
    now_.gaps = survey_.gaps().size();
    now_.surveyed = survey_.frames();
    now_.highestDigit = survey_.highestDigit();
    const std::lock_guard lock(stateMutex_);
    state_ = now_;
}

void Followed::tell() {
    toldAt_ = Clock::now();
    {
        const std::lock_guard lock(stateMutex_);
        if (std::exchange(told_, true)) {
            return;
        }
    }
    news_();
}

void Followed::tellNowAndThen() {
    if (Clock::now() - toldAt_ >= TellInterval) {
        publish();
        tell();
    }
}

}  // namespace viewer
