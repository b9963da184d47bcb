#ifndef LUMADOT_VIEWER_SURVEY_H
#define LUMADOT_VIEWER_SURVEY_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include "recording/frame.h"
#include "recording/progress.h"
#include "recording/recording.h"

namespace viewer {

/// A long time without a frame, or a step back in time.
struct Gap {
    std::uint64_t after = 0;  ///< number of the frame before it
    std::uint32_t ms = 0;     ///< the step between the stamps, modulo 2^32

    bool operator==(const Gap&) const = default;
};

/// What is found by reading every frame of a recording once: gaps, and the shades it needs.
class Survey {
public:
    static constexpr std::uint32_t GapMs = 1000;
    static constexpr std::size_t MostGaps = 100000;

    /// Goes on to the last frame that is indexed. False when `progress` wanted it to end. Throws
    /// what reading throws.
    bool extend(recording::Recording& recording, const recording::Progress& progress);

    /// Starts again, as when the digits are read in another way.
    void restart() { *this = Survey(); }

    std::uint64_t frames() const { return frames_; }
    std::uint8_t highestDigit() const { return highest_; }
    /// The first `MostGaps`.
    const std::vector<Gap>& gaps() const { return gaps_; }

private:
    void look();

    std::uint64_t frames_ = 0;
    std::uint8_t highest_ = 0;
    std::uint32_t lastMs_ = 0;
    std::vector<Gap> gaps_;
    recording::Frame frame_;
};

}  // namespace viewer

#endif
