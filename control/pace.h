#ifndef LUMADOT_CONTROL_PACE_H
#define LUMADOT_CONTROL_PACE_H

#include <chrono>
#include <cstdint>
#include <functional>
#include <vector>

#include "control/clock.h"
#include "pictures/sequence.h"

namespace control {

/// Keeps the times of a recording, faster or slower.
class Pace {
public:
    /// `speed`: 2 is twice as fast as recorded.
    explicit Pace(double speed) : speed_(speed) {}

    /// Waits until the frame that is shown has had its time, `ms` in the recording; where the time
    /// is over it does not wait. Throws Interrupted.
    void stay(std::uint32_t ms);

private:
    using Duration = std::chrono::duration<double, std::milli>;

    double speed_;
    TimePoint start_ = now();
    Duration due_{0};  ///< since the start
};

/// Plays the frames of a sequence once: `show` is given the palette entries of each, the first time
/// at once. The last one stays as long as the one before it, a single one for a second; after a
/// step backwards in time the next one follows at once. Throws Interrupted, and what `show` throws.
void playOnce(const pictures::Sequence& sequence, Pace& pace,
              const std::function<void(const std::vector<std::uint8_t>& entries)>& show);

}  // namespace control

#endif
