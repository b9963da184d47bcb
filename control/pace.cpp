#include "control/pace.h"

#include <algorithm>

#include "recording/summary.h"

namespace control {

void Pace::stay(std::uint32_t ms) {
    due_ += Duration(ms / speed_);
    const auto left = start_ + std::chrono::duration_cast<TimePoint::duration>(due_) - now();
    pause(std::max(Milliseconds(0), std::chrono::duration_cast<Milliseconds>(left)));
}

void playOnce(const pictures::Sequence& sequence, Pace& pace,
              const std::function<void(const std::vector<std::uint8_t>& entries)>& show) {
    std::vector<std::uint8_t> entries;
    std::uint32_t stayMs = 1000;
    std::uint32_t before = 0;
    for (std::uint64_t number = 0; number < sequence.count; ++number) {
        const std::uint32_t stamp = sequence.read(number, entries);
        if (number > 0) {
            const std::uint32_t step = recording::stepMs(before, stamp);
            stayMs = recording::isBackwards(step) ? 0 : step;
            pace.stay(stayMs);
        }
        before = stamp;
        show(entries);
    }
    pace.stay(stayMs);
}

}  // namespace control
