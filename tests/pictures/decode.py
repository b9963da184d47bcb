#!/usr/bin/python3
"""Decodes an image with a library that the tool does not use: decode.py FILE.

Prints to the standard output "WIDTH HEIGHT FRAMES REPEATS" (REPEATS: -1 when it is not repeated, 0 when
it is for ever) and a line end; then for each frame its time in ms, a line end, and red, green, blue of
its pixels.
"""

import sys

from PIL import Image

Image.MAX_IMAGE_PIXELS = None
with Image.open(sys.argv[1]) as image:
    out = sys.stdout.buffer
    frames = getattr(image, "n_frames", 1)
    out.write(b"%d %d %d %d\n" % (*image.size, frames, image.info.get("loop", -1)))
    for frame in range(frames):
        image.seek(frame)
        out.write(b"%d\n" % image.info.get("duration", 0))
        out.write(image.convert("RGB").tobytes())
