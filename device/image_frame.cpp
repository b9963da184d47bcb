#include "device/image_frame.h"

namespace image_frame {

ImageFrame fromDots(std::span<const std::uint8_t, Rows * Columns> dots) {
    ImageFrame frame = frame::blank(frame::Kind::Image);
    for (std::size_t dot = 0; dot < dots.size(); ++dot) {
        const std::size_t column = dot % Columns;
        for (std::size_t plane = 0; plane < Planes; ++plane) {
            if ((dots[dot] >> plane & 1U) != 0) {
                frame[offsetOf(plane, dot / Columns, column / 8)] |= bitOf(column);
            }
        }
    }
    return frame;
}

}  // namespace image_frame
