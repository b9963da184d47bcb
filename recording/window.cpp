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
    const std::uint64_t left = limit - std::min(offset, limit);
    const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(capacity_, left));
    buffer_.resize(std::max(buffer_.size(), wanted));
    start_ = offset;
    held_ = kept;
    if (kept < wanted) {
        held_ += source_.read(offset + kept, std::span(buffer_).first(wanted).subspan(kept));
    }
}

}  // namespace recording
