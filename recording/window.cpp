#include "recording/window.h"

#include <algorithm>
#include <cstring>

namespace recording {

std::span<const std::uint8_t> Window::at(std::uint64_t offset, std::size_t wanted,
                                         std::uint64_t limit) {
    const std::uint64_t left = limit - std::min(offset, limit);
    const auto needed = static_cast<std::size_t>(std::min<std::uint64_t>(wanted, left));
    if (offset < start_ || offset + needed > start_ + held_) {
        move(offset, limit);
    }
    const auto skipped = static_cast<std::size_t>(offset - start_);
    const std::size_t held = held_ - std::min(skipped, held_);
    return {buffer_.data() + std::min(skipped, held_),
            static_cast<std::size_t>(std::min<std::uint64_t>(held, left))};
}

/// Fills the window from `offset` on; what it holds of that already is not read again.
void Window::move(std::uint64_t offset, std::uint64_t limit) {
    std::size_t kept = 0;
    if (offset >= start_ && offset < start_ + held_) {
        kept = static_cast<std::size_t>(start_ + held_ - offset);
        std::memmove(buffer_.data(), buffer_.data() + (held_ - kept), kept);
    }
    start_ = offset;
    const std::uint64_t missing = limit - std::min(offset + kept, limit);
    const auto room = std::span(buffer_).subspan(kept);
    held_ = kept + source_.read(offset + kept, room.first(static_cast<std::size_t>(
                                                   std::min<std::uint64_t>(room.size(), missing))));
}

}  // namespace recording
