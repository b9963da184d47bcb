#ifndef LUMADOT_PICTURES_COLOUR_TABLE_H
#define LUMADOT_PICTURES_COLOUR_TABLE_H

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "display/look.h"

namespace pictures {

/// The colours that pictures in a look can have, each once: what the palette of an image file
/// holds.
class ColourTable {
public:
    explicit ColourTable(const display::Look& look);

    /// At most 256.
    const std::vector<display::Colour>& colours() const { return colours_; }

    /// Turns pixels painted as display::Pixels::Numbers into indices of `colours`.
    void index(std::span<std::uint8_t> pixels) const;

private:
    std::vector<display::Colour> colours_;
    std::array<std::uint8_t, std::tuple_size_v<display::Colours>> indexOf_{};
};

}  // namespace pictures

#endif
