#ifndef LUMADOT_RECORDING_FORMAT_H
#define LUMADOT_RECORDING_FORMAT_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>

#include "recording/damage.h"
#include "recording/summary.h"
#include "recording/window.h"

namespace recording {

/// Part of a file: a frame, a damaged place, or both.
struct Piece {
    std::uint64_t offset = 0;  ///< its first byte
    std::uint64_t next = 0;    ///< where to go on
    bool frame = false;        ///< there is a frame at `offset`
    std::uint32_t stampMs = 0;
    std::optional<Damage> damage = {};
    /// The file ends here, before it should. When it grows, it is to be read anew from `next`.
    bool last = false;
};

/// How a kind of dump is read. Frames that lie in a row just as a capture writes them are scanned
/// fast; everything else is read piece by piece.
class Format {
public:
    Format() = default;
    virtual ~Format() = default;

    /// Another reader that knows what this one knows.
    virtual std::unique_ptr<Format> copy() const = 0;

    /// Bytes of a frame as a capture writes it, and how many of them are in front of its dots. 0
    /// as long as that is unknown.
    virtual std::size_t frameBytes() const = 0;
    virtual std::size_t headBytes() const = 0;

    /// Bytes behind a frame that a scan wants to see.
    virtual std::size_t lookahead() const = 0;

    /// Adds the regular frames at the start of `bytes` to the summary, up to one that is cut off or
    /// otherwise needs `next`; returns how many there were. `atEnd`: the file ends with `bytes`.
    /// `previous`: the dots of the frame before, frameBytes() - headBytes() bytes as they stand in
    /// the file, or null. May be called by several threads.
    virtual std::size_t scan(std::span<const std::uint8_t> bytes, bool atEnd,
                             const std::uint8_t* previous, Summary& summary) const = 0;

    /// What is at `offset` in a file of `limit` bytes, more than `offset`.
    virtual Piece next(Window& window, std::uint64_t offset, std::uint64_t limit) = 0;

    /// Goes on at some other place of the file, where the frames of a raw dump have so many planes.
    /// `lookingForCuts`: see RawFormat.
    virtual void moveTo(std::uint8_t planes, bool lookingForCuts) = 0;

    /// After a piece with a frame: its dots as they stand in a regular frame.
    virtual std::span<const std::uint8_t> dots() = 0;

protected:
    Format(const Format&) = default;
    Format& operator=(const Format&) = default;
};

/// A window in front of a format must have this capacity at least.
inline constexpr std::size_t SmallestWindow = std::size_t{32} << 10;

}  // namespace recording

#endif
