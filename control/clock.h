#ifndef LUMADOT_CONTROL_CLOCK_H
#define LUMADOT_CONTROL_CLOCK_H

#include <chrono>
#include <cstdint>

namespace control {

using Milliseconds = std::chrono::milliseconds;
using TimePoint = std::chrono::steady_clock::time_point;

/// A clock that never jumps.
TimePoint now();

/// Seconds since `start`.
double secondsSince(TimePoint start);

/// Waits; throws Interrupted when a signal asks for the end meanwhile.
void pause(Milliseconds time);

/// The local time in ms since 1970 as the window's captures take it: in summer, too, an hour
/// behind the clock on the wall.
std::int64_t localTimeMillis();

}  // namespace control

#endif
