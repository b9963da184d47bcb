#ifndef LUMADOT_RECORDING_SUMMARY_H
#define LUMADOT_RECORDING_SUMMARY_H

#include <cstdint>

namespace recording {

/// The time from one stamp to a later one, in ms; stamps have 32 bits and wrap.
constexpr std::uint32_t stepMs(std::uint32_t from, std::uint32_t to) { return to - from; }

/// Whether a step is rather one backwards in time, for whoever shows frames at their times.
constexpr bool isBackwards(std::uint32_t step) { return step >= 0x80000000; }

/// What is to be known about a row of frames.
struct Summary {
    std::uint64_t frames = 0;
    std::uint32_t firstMs = 0;          ///< stamp of the first frame, as it stands
    std::uint32_t lastMs = 0;           ///< stamp of the last frame
    std::uint64_t durationMs = 0;       ///< the steps between neighbours, added up
    std::uint32_t longestGapMs = 0;     ///< the longest of these steps
    std::uint64_t longestGapAfter = 0;  ///< number of the frame before it
    std::uint64_t equalNeighbours = 0;  ///< frames whose dots are those of the frame before

    /// One frame more.
    void add(std::uint32_t stamp, bool equalsTheOneBefore);

    /// Another row of frames behind this one; whether its first frame equals the last of this one
    /// is in its `equalNeighbours` already.
    void append(const Summary& next);

    /// Mean rate, 0 when it cannot be told.
    double framesPerSecond() const;

private:
    void step(std::uint32_t gap);
};

}  // namespace recording

#endif
