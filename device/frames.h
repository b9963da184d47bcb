#ifndef LUMADOT_DEVICE_FRAMES_H
#define LUMADOT_DEVICE_FRAMES_H

#include <cstdint>
#include <span>
#include <string_view>

#include "device/command_frame.h"
#include "device/palette_bytes.h"
#include "device/settings_record.h"

/// A builder for every command that has operands.
namespace frames {

/// A command by its code, with byte 5 = `operand`: input mode (SelectMode), palette preset
/// (SelectPreset), 0 for the commands without one.
CommandFrame command(std::uint8_t code, std::uint8_t operand = 0);
inline CommandFrame command(Command code, std::uint8_t operand = 0) {
    return command(static_cast<std::uint8_t>(code), operand);
}

/// Byte 5: 0, byte 6: 1, bytes 7..54: the palette.
CommandFrame palette(std::span<const std::uint8_t, PaletteSize> colours);

/// Byte 17: the level, clamped to 10..255.
CommandFrame brightness(int level);

/// Bytes 5..27: the record.
CommandFrame settings(const configDescriptor& record);

// An upload fills one frame anew for each of its phases (byte 5).

inline constexpr std::size_t UploadBlockSize = 512;

/// Phase 0, bytes 6..: the destination name, without a terminating zero; what does not fit into the
/// frame is left out.
void uploadOpen(CommandFrame& frame, std::string_view name);
/// Phase 1, bytes 6 and 7: the block's length, high byte first; bytes 8..: the block, 0..512 bytes.
void uploadData(CommandFrame& frame, std::span<const std::uint8_t> block);
/// Phase FF.
void uploadClose(CommandFrame& frame);

}  // namespace frames

#endif
