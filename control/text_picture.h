#ifndef LUMADOT_CONTROL_TEXT_PICTURE_H
#define LUMADOT_CONTROL_TEXT_PICTURE_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "display/look.h"
#include "ui/palette.h"

namespace control {

/// Pictures of a display as lines of text. A letter stands for dots beside each other and twice as
/// many below each other, as few as fit into the width: their mean colour.
class TextPicture {
public:
    enum class Colours {
        Full,  ///< 24 bits, an upper and a lower half in each letter
        Few,   ///< the same in the 256 colours of most terminals
        None,  ///< letters that are more or less bright
    };

    /// `width`: letters in a line, from 1 on.
    TextPicture(const presets::Colours& entryColours, Colours colours, std::size_t width)
        : palette_(entryColours), colours_(colours), width_(width) {}

    /// Palette entries, row by row; each line ends with a line feed.
    std::string of(std::span<const std::uint8_t> entries, std::size_t columns) const;

private:
    display::Colour meanOf(std::span<const std::uint8_t> entries, std::size_t columns,
                           std::size_t x, std::size_t y, std::size_t size) const;
    std::string letter(const display::Colour& upper, const display::Colour& lower) const;

    presets::Colours palette_;
    Colours colours_;
    std::size_t width_;
};

/// The best that the terminal can do, as the environment tells: COLORTERM, TERM, NO_COLOR, and
/// whether its letters are UTF-8 (LC_ALL, LC_CTYPE, LANG). On Windows NO_COLOR, and what the
/// console itself says.
TextPicture::Colours terminalColours();

}  // namespace control

#endif
