#ifndef LUMADOT_DEVICE_COMMAND_FRAME_H
#define LUMADOT_DEVICE_COMMAND_FRAME_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

/// Every command that the tool sends, by its code on the wire.
enum class Command : std::uint8_t {
    Reset = 0x00,          ///< no operand; the controller restarts
    Store = 0x01,          ///< no operand; the working settings become permanent
    SelectMode = 0x02,     ///< byte 5: input mode
    SelectPreset = 0x03,   ///< byte 5: palette preset
    LoadPalette = 0x04,    ///< byte 5: 0, byte 6: 1, bytes 7..54: the palette
    Brightness = 0x08,     ///< byte 17: brightness, 10..255
    Upload = 0x0A,         ///< byte 5: phase, then what the phase needs
    ReadSettings = 0x10,   ///< no operand; a settings reply follows
    ReadUniqueId = 0x11,   ///< no operand; the id as text follows
    StorePalette = 0x12,   ///< no operand; closes the sequence preset, palette, store
    WriteSettings = 0x20,  ///< bytes 5..27: the settings record
};

/// Command frame: the fixed packet that carries every command, always sent whole.
///
///   byte 0..3   81 C3 E7 FF
///   byte 4      command code
///   byte 5..    operands, zero unless the command sets them
class CommandFrame {
public:
    static constexpr std::size_t Size = 2052;
    static constexpr std::size_t FirstOperand = 5;

    explicit CommandFrame(Command command) : CommandFrame(static_cast<std::uint8_t>(command)) {}
    /// For a command that is given by its code.
    explicit CommandFrame(std::uint8_t code);

    /// Sets the byte at `offset` (5..2051).
    void set(std::size_t offset, std::uint8_t value) { bytes_.at(offset) = value; }

    /// Copies `operands` to `offset`; what would lie behind the frame's end is left out.
    void copy(std::size_t offset, std::span<const std::uint8_t> operands);

    /// Zeroes everything from `offset` on.
    void clearFrom(std::size_t offset);

    // The USB library takes its buffer and length in these types.
    unsigned char* data() { return bytes_.data(); }
    static constexpr int size() { return static_cast<int>(Size); }

private:
    std::array<std::uint8_t, Size> bytes_{0x81, 0xC3, 0xE7, 0xFF};
};

#endif
