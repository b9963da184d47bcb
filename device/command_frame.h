#ifndef LUMADOT_DEVICE_COMMAND_FRAME_H
#define LUMADOT_DEVICE_COMMAND_FRAME_H

#include <cstddef>
#include <cstdint>
#include <span>

#include "device/frame.h"

/// Every command that the tool sends, by its code on the wire. The builders of device/frames.h say
/// what goes into the operands.
enum class Command : std::uint8_t {
    Reset = 0x00,
    Store = 0x01,
    SelectMode = 0x02,
    SelectPreset = 0x03,
    LoadPalette = 0x04,
    Brightness = 0x08,
    Upload = 0x0A,
    ReadSettings = 0x10,
    ReadUniqueId = 0x11,
    StorePalette = 0x12,
    WriteSettings = 0x20,
};

/// Command frame: byte 4 is the command's code, its operands follow, zero unless they are set.
class CommandFrame {
public:
    static constexpr std::size_t Code = frame::Content;
    static constexpr std::size_t FirstOperand = Code + 1;

    explicit CommandFrame(Command command) : CommandFrame(static_cast<std::uint8_t>(command)) {}
    /// For a command that is given by its code.
    explicit CommandFrame(std::uint8_t code) { bytes_[Code] = code; }

    /// Sets the operand byte at `offset` (5..2051; throws std::out_of_range elsewhere).
    void set(std::size_t offset, std::uint8_t value);

    /// Copies `operands` to `offset` (5..2051; throws std::out_of_range elsewhere); what would lie
    /// behind the frame's end is left out.
    void copy(std::size_t offset, std::span<const std::uint8_t> operands);

    /// Zeroes every operand.
    void clear();

    const frame::Bytes& bytes() const { return bytes_; }

    // As sendUSB takes them.
    unsigned char* data() { return bytes_.data(); }
    static constexpr int size() { return static_cast<int>(frame::Size); }

private:
    std::span<std::uint8_t> operandsFrom(std::size_t offset);

    frame::Bytes bytes_ = frame::blank(frame::Kind::Command);
};

#endif
