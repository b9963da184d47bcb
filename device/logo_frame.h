#ifndef LUMADOT_DEVICE_LOGO_FRAME_H
#define LUMADOT_DEVICE_LOGO_FRAME_H

#include "device/frame.h"

/// Image frame: 128 x 32 dots at 4 bits a dot. From byte 4 on four bit planes of 512 bytes, plane 0
/// (least significant colour bit) first; a plane is 32 rows of 16 bytes, top row first; the most
/// significant bit of a byte is the leftmost of its 8 dots.
using ImageFrame = frame::Bytes;

/// The built-in logo: rows 0..6 a strip of the sixteen colours, rows 9..21 the product lettering in
/// colour 15, everything else dark.
const ImageFrame& logoFrame();

#endif
