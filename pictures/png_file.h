#ifndef LUMADOT_PICTURES_PNG_FILE_H
#define LUMADOT_PICTURES_PNG_FILE_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "display/look.h"
#include "recording/output_file.h"

namespace pictures {

/// A PNG with a palette that is being written, from the top row to the bottom. Everything throws
/// recording::Error (CannotWrite).
class PngFile {
public:
    static constexpr std::size_t MostPixels = 0x7FFFFFFF;  ///< in a row or column

    /// `colours`: 256 at most.
    PngFile(recording::OutputFile& file, std::size_t width, std::size_t height,
            const std::vector<display::Colour>& colours);
    ~PngFile();
    PngFile(const PngFile&) = delete;
    PngFile& operator=(const PngFile&) = delete;

    /// Whole rows of pixels, a byte each: indices of the colours.
    void add(std::span<const std::uint8_t> pixels);

    /// After the last row.
    void finish();

private:
    struct Png;

    [[noreturn]] void fail() const;

    recording::OutputFile& file_;
    std::size_t width_;
    std::unique_ptr<Png> png_;
};

}  // namespace pictures

#endif
