#ifndef LUMADOT_RECORDING_FRAME_INDEX_H
#define LUMADOT_RECORDING_FRAME_INDEX_H

#include <cstddef>
#include <cstdint>
#include <vector>

namespace recording {

/// Where the frames of a file are, and when. Frames that follow each other at equal distances take
/// up one entry together, so that a recording without damage needs a single one. Where there are
/// too many entries short ones are joined; frames of a joined entry are found by reading from its
/// start on. Its memory stays under 25 MiB whatever the file.
class FrameIndex {
public:
    /// Where to look for a frame: `skip` frames behind that at `offset`.
    struct Place {
        std::uint64_t offset;
        std::uint64_t skip;
        std::uint8_t planes;  ///< of a raw frame
    };

    /// The time of a frame: how long after the first one.
    struct Mark {
        std::uint64_t frame;
        std::uint64_t elapsedMs;
    };

    static constexpr std::size_t MaxRuns = std::size_t{1} << 18U;
    static constexpr std::size_t MaxMarks = std::size_t{1} << 18U;

    /// `count` frames more, the first at `offset`, each `frameBytes` behind the one before.
    void add(std::uint64_t offset, std::uint64_t count, std::uint64_t frameBytes,
             std::uint8_t planes);

    /// Marks come in the order of their frames. They may be thinned out.
    void addMark(const Mark& mark);

    std::uint64_t frames() const { return frames_; }

    /// Throws std::out_of_range unless `number` is under `frames()`.
    Place place(std::uint64_t number) const;

    /// The last mark that is not behind this frame, or not behind this time; frame 0 at 0 ms when
    /// there is none.
    Mark markBefore(std::uint64_t frame) const;
    Mark markAt(std::uint64_t elapsedMs) const;

private:
    struct Run {
        std::uint64_t first;       ///< number of its first frame
        std::uint64_t offset;      ///< of that frame
        std::uint32_t frameBytes;  ///< 0 when its frames have to be searched for
        std::uint8_t planes;
    };

    void joinNeighbours();
    void dropEverySecondMark();

    std::uint64_t frames_ = 0;
    std::uint64_t joinedFrames_ = 2;  ///< at most, in a joined entry
    std::vector<Run> runs_;
    std::vector<Mark> marks_;
    std::uint64_t markDistance_ = 1;  ///< frames from one mark to the next, at least
};

}  // namespace recording

#endif
