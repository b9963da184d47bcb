#include "recording/frame_index.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <string>

namespace recording {

void FrameIndex::add(std::uint64_t offset, std::uint64_t count, std::uint64_t frameBytes,
                     std::uint8_t planes) {
    const Run run{frames_, offset, static_cast<std::uint32_t>(frameBytes), planes};
    if (!runs_.empty()) {
        const Run& last = runs_.back();
        const bool goesOn = last.frameBytes == run.frameBytes && last.planes == planes &&
                            offset == last.offset + (run.first - last.first) * last.frameBytes;
        if (goesOn) {
            frames_ += count;
            return;
        }
    }
    if (runs_.size() == MaxRuns) {
        joinNeighbours();
    }
    runs_.push_back(run);
    frames_ += count;
}

/// Joins the short entries, so that frames of the long ones are still found at once.
void FrameIndex::joinNeighbours() {
    while (runs_.size() > MaxRuns / 4 * 3) {
        joinedFrames_ *= 2;
        std::size_t kept = 0;
        for (std::size_t i = 1; i < runs_.size(); ++i) {
            const std::uint64_t end = i + 1 < runs_.size() ? runs_[i + 1].first : frames_;
            if (end - runs_[kept].first <= joinedFrames_) {
                runs_[kept].frameBytes = 0;
            } else {
                runs_[++kept] = runs_[i];
            }
        }
        runs_.resize(kept + 1);
    }
}

void FrameIndex::addMark(const Mark& mark) {
    if (!marks_.empty() && mark.frame < marks_.back().frame + markDistance_) {
        return;
    }
    if (marks_.size() == MaxMarks) {
        dropEverySecondMark();
    }
    marks_.push_back(mark);
}

void FrameIndex::dropEverySecondMark() {
    for (std::size_t i = 0; i < marks_.size() / 2; ++i) {
        marks_[i] = marks_[2 * i];
    }
    marks_.resize(marks_.size() / 2);
    markDistance_ = marks_.back().frame / marks_.size();
}

FrameIndex::Place FrameIndex::place(std::uint64_t number) const {
    if (number >= frames_) {
        throw std::out_of_range("there is no frame " + std::to_string(number));
    }
    const auto behind = std::ranges::upper_bound(runs_, number, {}, &Run::first);
    const Run& run = *std::prev(behind);
    const std::uint64_t skip = number - run.first;
    if (run.frameBytes == 0) {
        return {run.offset, skip, run.planes};
    }
    return {run.offset + skip * run.frameBytes, 0, run.planes};
}

FrameIndex::Mark FrameIndex::markBefore(std::uint64_t frame) const {
    const auto behind = std::ranges::upper_bound(marks_, frame, {}, &Mark::frame);
    return behind == marks_.begin() ? Mark{0, 0} : *std::prev(behind);
}

FrameIndex::Mark FrameIndex::markAt(std::uint64_t elapsedMs) const {
    const auto behind = std::ranges::upper_bound(marks_, elapsedMs, {}, &Mark::elapsedMs);
    return behind == marks_.begin() ? Mark{0, 0} : *std::prev(behind);
}

}  // namespace recording
