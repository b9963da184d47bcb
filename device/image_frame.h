#ifndef LUMADOT_DEVICE_IMAGE_FRAME_H
#define LUMADOT_DEVICE_IMAGE_FRAME_H

#include <cstddef>
#include <cstdint>
#include <span>

#include "device/frame.h"

/// Image frame: 128 x 32 dots at 4 bits a dot. From byte 4 on four bit planes of 512 bytes, plane 0
/// (least significant colour bit) first; a plane is 32 rows of 16 bytes, top row first; the most
/// significant bit of a byte is the leftmost of its 8 dots.
using ImageFrame = frame::Bytes;

namespace image_frame {

inline constexpr std::size_t Planes = 4;
inline constexpr std::size_t Rows = 32;
inline constexpr std::size_t RowBytes = 16;
inline constexpr std::size_t Columns = 8 * RowBytes;

/// Where a byte of a row stands in the frame.
constexpr std::size_t offsetOf(std::size_t plane, std::size_t row, std::size_t byte) {
    return frame::Content + (plane * Rows + row) * RowBytes + byte;
}

/// The bit of the dot in its byte.
constexpr std::uint8_t bitOf(std::size_t column) {
    return static_cast<std::uint8_t>(0x80U >> column % 8);
}

/// The dots are palette entries, 0..15, row by row from the top left.
ImageFrame fromDots(std::span<const std::uint8_t, Rows * Columns> dots);

}  // namespace image_frame

#endif
