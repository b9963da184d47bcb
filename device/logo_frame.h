#ifndef LUMADOT_DEVICE_LOGO_FRAME_H
#define LUMADOT_DEVICE_LOGO_FRAME_H

#include "device/image_frame.h"

/// The built-in logo: rows 0..6 a strip of the sixteen colours, rows 9..21 the product lettering in
/// colour 15, everything else dark.
const ImageFrame& logoFrame();

#endif
