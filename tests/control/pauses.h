#ifndef LUMADOT_TESTS_CONTROL_PAUSES_H
#define LUMADOT_TESTS_CONTROL_PAUSES_H

#include <cstdint>
#include <functional>
#include <vector>

namespace support {

/// The pauses that lumadotctl has asked for since the last call, in ms. They take no time, but its
/// clock has moved on by them.
std::vector<std::int64_t> takePauses();

/// What happens in each pause from now on, instead of nothing.
void onPause(std::function<void()> action);

/// The same when the program asks what time it is.
void onClock(std::function<void()> action);

}  // namespace support

#endif
