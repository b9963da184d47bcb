#include "recording/summary.h"

namespace recording {

void Summary::add(std::uint32_t stamp, bool equalsTheOneBefore) {
    if (frames == 0) {
        firstMs = stamp;
    } else {
        step(stepMs(lastMs, stamp));
    }
    lastMs = stamp;
    equalNeighbours += equalsTheOneBefore ? 1 : 0;
    ++frames;
}

void Summary::append(const Summary& next) {
    if (next.frames == 0) {
        return;
    }
    if (frames == 0) {
        *this = next;
        return;
    }
    step(stepMs(lastMs, next.firstMs));
    if (next.longestGapMs > longestGapMs) {
        longestGapMs = next.longestGapMs;
        longestGapAfter = frames + next.longestGapAfter;
    }
    lastMs = next.lastMs;
    durationMs += next.durationMs;
    equalNeighbours += next.equalNeighbours;
    frames += next.frames;
}

double Summary::framesPerSecond() const {
    return durationMs == 0
               ? 0
               : 1000.0 * static_cast<double>(frames - 1) / static_cast<double>(durationMs);
}

/// A step from the last frame to the one that comes now.
void Summary::step(std::uint32_t gap) {
    durationMs += gap;
    if (gap > longestGapMs) {
        longestGapMs = gap;
        longestGapAfter = frames - 1;
    }
}

}  // namespace recording
