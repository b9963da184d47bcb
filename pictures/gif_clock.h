#ifndef LUMADOT_PICTURES_GIF_CLOCK_H
#define LUMADOT_PICTURES_GIF_CLOCK_H

#include <cstdint>

namespace pictures {

/// Turns a recording's times into the delays of an animated GIF, which counts hundredths of a
/// second. What is rounded off is made up for by the frames that follow, and so is what is added to
/// the delays that are too short: browsers show what is shorter than 20 ms for 100 ms.
class GifClock {
public:
    static constexpr std::uint32_t LeastDelay = 2;      ///< hundredths of a second
    static constexpr std::uint32_t MostDelay = 0xFFFF;  ///< what the file can hold

    /// `count` frames, `spanMs` from the first to the last. With between 50 and 100 frames a second
    /// the time is kept by leaving some frames out. Slower recordings need not, and in faster ones
    /// every frame is shown for the least time.
    GifClock(std::uint64_t count, std::uint64_t spanMs);

    /// The delay of the next frame, which stays for `ms` in the recording; 0: it is left out. A
    /// step backwards in time (2^31 ms and more) counts as none.
    std::uint32_t next(std::uint32_t ms);

private:
    bool mayLeaveOut_;
    bool leftOut_ = false;     ///< the last one; never two in a row
    std::int64_t owedMs_ = 0;  ///< of the recording's time that is not in the delays yet
};

}  // namespace pictures

#endif
