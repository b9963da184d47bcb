#include "pictures/gif_clock.h"

#include <algorithm>

#include "recording/summary.h"

namespace pictures {

namespace {

constexpr std::int64_t UnitMs = 10;

}  // namespace

GifClock::GifClock(std::uint64_t count, std::uint64_t spanMs)
    : mayLeaveOut_(count > 1 && spanMs >= UnitMs * (count - 1) &&
                   spanMs < LeastDelay * UnitMs * (count - 1)) {}

std::uint32_t GifClock::next(std::uint32_t ms) {
    if (recording::isBackwards(ms)) {
        return LeastDelay;
    }
    owedMs_ += ms;
    if (mayLeaveOut_ && !leftOut_ && owedMs_ <= 0) {
        leftOut_ = true;
        return 0;
    }
    leftOut_ = false;
    const std::int64_t rounded = (std::max<std::int64_t>(owedMs_, 0) + UnitMs / 2) / UnitMs;
    if (rounded > MostDelay) {
        owedMs_ = 0;  // A pause that the file cannot hold is shortened.
        return MostDelay;
    }
    const std::int64_t delay = std::max<std::int64_t>(rounded, LeastDelay);
    owedMs_ -= delay * UnitMs;
    return static_cast<std::uint32_t>(delay);
}

}  // namespace pictures
