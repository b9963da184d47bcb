#include "device/command_frame.h"

#include <algorithm>
#include <stdexcept>

std::span<std::uint8_t> CommandFrame::operandsFrom(std::size_t offset) {
    if (offset < FirstOperand || offset >= frame::Size) {
        throw std::out_of_range("no operand of a command frame");
    }
    return std::span(bytes_).subspan(offset);
}

void CommandFrame::set(std::size_t offset, std::uint8_t value) {
    operandsFrom(offset).front() = value;
}

void CommandFrame::copy(std::size_t offset, std::span<const std::uint8_t> operands) {
    const auto room = operandsFrom(offset);
    std::copy_n(operands.begin(), std::min(operands.size(), room.size()), room.begin());
}

void CommandFrame::clear() {
    const auto operands = operandsFrom(FirstOperand);
    std::fill(operands.begin(), operands.end(), std::uint8_t{0});  // One memset, in every build.
}
