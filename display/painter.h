#ifndef LUMADOT_DISPLAY_PAINTER_H
#define LUMADOT_DISPLAY_PAINTER_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "display/look.h"

namespace display {

/// What a pixel of a picture is made of.
enum class Pixels : std::uint8_t {
    Rgb,      ///< red, green, blue
    Numbers,  ///< the number of its colour among `coloursOf(look)`, one byte
};

/// Makes pictures of a display in one look: no margin, every dot a cell of scale x scale pixels.
/// What the look decides is worked out once, when the painter is made. Any number of threads may
/// use it at the same time.
class Painter {
public:
    static constexpr std::size_t MaxScale = 256;

    /// Throws std::invalid_argument when the scale is 0 or above `MaxScale`.
    explicit Painter(const Look& look, Pixels pixels = Pixels::Rgb);

    std::size_t scale() const { return scale_; }

    /// Bytes of a row of pixels and of a whole picture, without padding.
    std::size_t lineBytes(std::size_t columns) const { return columns * dotBytes_; }
    std::size_t pictureBytes(std::size_t columns, std::size_t rows) const {
        return rows * scale() * lineBytes(columns);
    }

    /// Paints rows of `columns` shades, the numbers of their palette entries (the lowest four bits
    /// of each count), into `picture`, from the top left pixel on. Throws std::invalid_argument
    /// unless `shades` are whole rows and `picture` has room for them.
    void paint(std::span<const std::uint8_t> shades, std::size_t columns,
               std::span<std::uint8_t> picture) const;

private:
    /// Rows of pixels through the dots that look the same.
    struct Line {
        std::vector<std::size_t> rows;     ///< counted from the top of a dot
        std::vector<std::uint8_t> pixels;  ///< of each group of dots, and some room behind them
    };

    std::vector<std::uint8_t> groupPixels(const std::vector<std::uint8_t>& dots) const;
    std::vector<std::uint16_t> groups(std::span<const std::uint8_t> shades,
                                      std::size_t columns) const;
    void paintLine(const Line& line, std::span<const std::uint16_t> groups,
                   std::span<std::uint8_t> dots) const;

    std::size_t scale_;
    std::size_t dotBytes_;    ///< of a dot in a row of pixels
    std::size_t groupDots_;   ///< neighbouring dots that are copied at once: 1 or 2
    std::size_t groupBytes_;  ///< of them in a row of pixels
    std::vector<Line> lines_;
};

}  // namespace display

#endif
