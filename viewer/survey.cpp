#include "viewer/survey.h"

#include <algorithm>

namespace viewer {

bool Survey::extend(recording::Recording& recording, const recording::Progress& progress) {
    if (frames_ > recording.frames()) {
        restart();  // It is another recording by now.
    }
    while (frames_ < recording.frames()) {
        if (!recording::goesOn(progress, frames_, recording.frames())) {
            return false;
        }
        recording.read(frames_, frame_);
        look();
    }
    return true;
}

void Survey::look() {
    for (const std::uint8_t digit : frame_.digits) {
        highest_ = std::max(highest_, digit);
    }
    const std::uint32_t step = recording::stepMs(lastMs_, frame_.stampMs);
    if (frames_ > 0 && step >= GapMs && gaps_.size() < MostGaps) {
        gaps_.push_back({frames_ - 1, step});
    }
    lastMs_ = frame_.stampMs;
    ++frames_;
}

}  // namespace viewer
