#ifndef LUMADOT_PICTURES_GIF_FILE_H
#define LUMADOT_PICTURES_GIF_FILE_H

#include <gif_lib.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "display/look.h"
#include "recording/output_file.h"

namespace pictures {

/// A rectangle of pixels.
struct Area {
    std::size_t left;
    std::size_t top;
    std::size_t width;
    std::size_t height;
};

/// An animated GIF that is being written. Everything throws recording::Error (CannotWrite).
class GifFile {
public:
    static constexpr std::size_t MostPixels = 0xFFFF;  ///< in a row or column

    /// `colours`: 256 at most.
    GifFile(recording::OutputFile& file, std::size_t width, std::size_t height,
            const std::vector<display::Colour>& colours);
    ~GifFile();
    GifFile(const GifFile&) = delete;
    GifFile& operator=(const GifFile&) = delete;

    /// A frame: what it changes of the picture before it, as indices of the colours, and how long
    /// it stays, in hundredths of a second.
    void add(const Area& area, std::span<std::uint8_t> pixels, std::uint32_t delay);

    void finish();

private:
    void repeatForEver();
    void check(int result) const;

    recording::OutputFile& file_;
    GifFileType* gif_ = nullptr;
};

}  // namespace pictures

#endif
