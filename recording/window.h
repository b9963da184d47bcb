#ifndef LUMADOT_RECORDING_WINDOW_H
#define LUMADOT_RECORDING_WINDOW_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "recording/source.h"

namespace recording {

/// A part of a source in memory, which moves on as it is asked for.
class Window {
public:
    Window(Source& source, std::size_t capacity) : source_(source), capacity_(capacity) {}

    /// The bytes from `offset` on: at least `wanted` (at most the capacity) unless the source ends
    /// earlier, at most up to `limit`. Valid until the next call.
    std::span<const std::uint8_t> at(std::uint64_t offset, std::size_t wanted, std::uint64_t limit);

    /// What it holds may have changed in the source.
    void forget() { held_ = 0; }

private:
    void move(std::uint64_t offset, std::uint64_t limit);

    Source& source_;
    std::size_t capacity_;
    std::vector<std::uint8_t> buffer_;
    std::uint64_t start_ = 0;  ///< where the bytes that it holds are in the source
    std::size_t held_ = 0;
};

}  // namespace recording

#endif
