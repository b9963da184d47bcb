#include "device/command_frame.h"

#include <algorithm>

CommandFrame::CommandFrame(std::uint8_t code) { bytes_[4] = code; }

void CommandFrame::copy(std::size_t offset, std::span<const std::uint8_t> operands) {
    const auto room = std::span(bytes_).subspan(std::min(offset, Size));
    std::copy_n(operands.begin(), std::min(operands.size(), room.size()), room.begin());
}

void CommandFrame::clearFrom(std::size_t offset) {
    std::ranges::fill(std::span(bytes_).subspan(std::min(offset, Size)), std::uint8_t{0});
}
