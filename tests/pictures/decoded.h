#ifndef LUMADOT_TESTS_PICTURES_DECODED_H
#define LUMADOT_TESTS_PICTURES_DECODED_H

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "display/look.h"
#include "pictures/sequence.h"

/// Image files, decoded by a library that the tool does not use.
namespace decoded {

using Bytes = std::vector<std::uint8_t>;

struct Image {
    std::size_t width = 0;
    std::size_t height = 0;
    int repeats = -1;           ///< 0: for ever, -1: not at all
    std::vector<int> timesMs;   ///< of each frame
    std::vector<Bytes> frames;  ///< red, green, blue
};

/// Fails the test and yields nothing if it cannot be decoded.
Image image(const std::filesystem::path& path);

/// Frames of which each dot's entry is given by chance, those with the same seed alike.
pictures::Sequence chanceFrames(std::vector<unsigned> seeds, std::vector<std::uint32_t> stampsMs,
                                std::size_t columns = 128, std::size_t rows = 32);

/// The picture that the display's painter makes of a frame.
Bytes painted(const pictures::Sequence& sequence, std::uint64_t number, const display::Look& look);

/// A way to draw a display of that size.
struct LookCase {
    std::string name;
    std::size_t scale;
    display::Dots dots;
    std::size_t columns;
    std::size_t rows;
};

/// A palette of random colours, some of them equal.
display::Look chanceLook(std::size_t scale, display::Dots dots);

}  // namespace decoded

#endif
