#include "ui/palette_file.h"

#include <algorithm>

namespace palette_file {

Bytes encode(const Colours& colours) {
    Bytes bytes{0x01, 0x00, 0x01, 0x00, 0x00, 0x00, 0x10, 0x01};
    std::ranges::copy(colours, bytes.begin() + HeaderSize);
    return bytes;
}

std::optional<Colours> decode(std::span<const std::uint8_t> data) {
    if (data.size() < Size || data[0] != 1) {
        return std::nullopt;
    }
    Colours colours{};
    std::ranges::copy(data.subspan(HeaderSize, PaletteSize), colours.begin());
    return colours;
}

}  // namespace palette_file
