#include "pictures/colour_table.h"

#include <algorithm>

namespace pictures {

ColourTable::ColourTable(const display::Look& look) {
    const display::Colours all = display::coloursOf(look);
    const display::DotMask mask(look.scale, look.dots);
    std::array<bool, display::FullCover + 1> occurs{};
    for (std::size_t y = 0; y < look.scale; ++y) {
        for (std::size_t x = 0; x < look.scale; ++x) {
            occurs[mask.cover(x, y)] = true;
        }
    }
    for (std::size_t entry = 0; entry < display::Entries; ++entry) {
        for (std::size_t cover = 0; cover < occurs.size(); ++cover) {
            if (!occurs[cover]) {
                continue;
            }
            const std::uint8_t number = display::colourNumber(entry, cover);
            const auto found = std::ranges::find(colours_, all[number]);
            indexOf_[number] = static_cast<std::uint8_t>(found - colours_.begin());
            if (found == colours_.end()) {
                colours_.push_back(all[number]);
            }
        }
    }
}

void ColourTable::index(std::span<std::uint8_t> pixels) const {
    for (std::uint8_t& pixel : pixels) {
        pixel = indexOf_[pixel];
    }
}

}  // namespace pictures
