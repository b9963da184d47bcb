#ifndef LUMADOT_DEVICE_LOGO_FRAME_H
#define LUMADOT_DEVICE_LOGO_FRAME_H

#include <array>
#include <cstdint>

/// Image frame: 128 x 32 dots at 4 bits a dot.
///
///   byte 0..3      81 C3 E7 00
///   byte 4..2051   four bit planes of 512 bytes, plane 0 (least significant colour bit) first;
///                  a plane is 32 rows of 16 bytes, top row first; the most significant bit of a
///                  byte is the leftmost of its 8 dots
using ImageFrame = std::array<std::uint8_t, 2052>;

/// The built-in logo: rows 0..6 a strip of the sixteen colours, rows 9..21 the product lettering in
/// colour 15, everything else dark.
const ImageFrame& logoFrame();

#endif
