#include "control/clock.h"

#include <algorithm>
#include <ctime>
#include <thread>

#include "control/interrupt.h"

namespace control {

namespace {

/// Days from one date to another that is at most a day away.
int daysBetween(const std::tm& from, const std::tm& to) {
    if (from.tm_year != to.tm_year) {
        return to.tm_year > from.tm_year ? 1 : -1;
    }
    return to.tm_yday - from.tm_yday;
}

/// How far the local time is ahead of UTC, in s; an hour of summer time does not count, whatever
/// the zone's own summer time is.
std::int64_t secondsAheadOfUtc(std::time_t time) {
    constexpr int SummerTime = 3600;
    const std::tm* const utcNow = std::gmtime(&time);
    if (utcNow == nullptr) {
        return 0;
    }
    const std::tm utc = *utcNow;
    const std::tm* const local = std::localtime(&time);
    if (local == nullptr) {
        return 0;
    }
    const int hours = daysBetween(utc, *local) * 24 + local->tm_hour - utc.tm_hour;
    const int ahead = (hours * 60 + local->tm_min - utc.tm_min) * 60 + local->tm_sec - utc.tm_sec;
    return local->tm_isdst > 0 ? ahead - SummerTime : ahead;
}

}  // namespace

TimePoint now() { return std::chrono::steady_clock::now(); }

double secondsSince(TimePoint start) {
    return std::chrono::duration<double>(now() - start).count();
}

void pause(Milliseconds time) {
    constexpr Milliseconds Slice{20};  // As long as a signal may have to wait.
    const TimePoint end = now() + time;
    for (TimePoint at = now(); at < end; at = now()) {
        interrupt::check();
        std::this_thread::sleep_for(std::min<TimePoint::duration>(Slice, end - at));
    }
    interrupt::check();
}

std::int64_t localTimeMillis() {
    using std::chrono::system_clock;
    const auto time = system_clock::now();
    const auto sinceEpoch = std::chrono::duration_cast<Milliseconds>(time.time_since_epoch());
    return sinceEpoch.count() + secondsAheadOfUtc(system_clock::to_time_t(time)) * 1000;
}

}  // namespace control
