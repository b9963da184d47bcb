#ifndef LUMADOT_DEVICE_FRAME_H
#define LUMADOT_DEVICE_FRAME_H

#include <array>
#include <cstddef>
#include <cstdint>

/// What command frames and image frames have in common, always sent whole:
///
///   byte 0..2      81 C3 E7
///   byte 3         FF a command, 00 an image
///   byte 4..2051   the command's code and operands, or the image
namespace frame {

inline constexpr std::size_t Size = 2052;
inline constexpr std::size_t Content = 4;

enum class Kind : std::uint8_t { Image = 0x00, Command = 0xFF };

using Bytes = std::array<std::uint8_t, Size>;

/// A frame with nothing but its head.
constexpr Bytes blank(Kind kind) { return {0x81, 0xC3, 0xE7, static_cast<std::uint8_t>(kind)}; }

}  // namespace frame

#endif
