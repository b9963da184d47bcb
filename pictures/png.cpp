#include "pictures/png.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>

#include "display/painter.h"
#include "pictures/colour_table.h"
#include "pictures/png_file.h"
#include "recording/error.h"
#include "recording/output_file.h"

namespace pictures {

namespace {

using Entries = std::vector<std::uint8_t>;
using recording::OutputFile;

/// The memory that a row of frames in a sheet may take.
constexpr std::uint64_t MostRowBytes = std::uint64_t{256} << 20U;

/// Paints frames as indices of the colours.
class IndexPainter {
public:
    IndexPainter(const Sequence& sequence, const display::Look& look)
        : columns_(sequence.columns),
          rows_(sequence.rows),
          painter_(look, display::Pixels::Numbers),
          colours_(look) {}

    std::size_t width() const { return columns_ * painter_.scale(); }
    std::size_t height() const { return rows_ * painter_.scale(); }
    const std::vector<display::Colour>& colours() const { return colours_.colours(); }

    /// Valid until the next call.
    std::span<const std::uint8_t> paint(const Entries& entries) {
        pixels_.resize(width() * height());
        painter_.paint(entries, columns_, pixels_);
        colours_.index(pixels_);
        return pixels_;
    }

private:
    std::size_t columns_;
    std::size_t rows_;
    display::Painter painter_;
    ColourTable colours_;
    std::vector<std::uint8_t> pixels_;
};

/// Throws recording::Error when the library could not express it.
void checkSize(std::uint64_t width, std::uint64_t height) {
    const std::uint64_t most = std::max(width, height);
    if (most > PngFile::MostPixels) {
        throw recording::Error(recording::Failure::CannotConvert,
                               "a PNG has at most " + std::to_string(PngFile::MostPixels) +
                                   " pixels in a row or column, not " + std::to_string(most));
    }
}

void writeFrame(const Sequence& sequence, std::uint64_t number, IndexPainter& painter,
                OutputFile& file) {
    Entries entries;
    sequence.read(number, entries);
    PngFile png(file, painter.width(), painter.height(), painter.colours());
    png.add(painter.paint(entries));
    png.finish();
    file.complete();
}

/// A row of frames of a sheet, side by side.
class SheetRow {
public:
    SheetRow(IndexPainter& painter, std::uint64_t columns)
        : painter_(painter), width_(painter.width() * static_cast<std::size_t>(columns)) {
        if (std::uint64_t{width_} * painter.height() > MostRowBytes) {
            throw recording::Error(
                recording::Failure::CannotConvert,
                std::to_string(columns) + " frames side by side are too many at this scale");
        }
        pixels_.resize(width_ * painter.height());
    }

    std::size_t width() const { return width_; }
    std::span<const std::uint8_t> pixels() const { return pixels_; }

    void put(std::uint64_t column, const Entries& entries) {
        const auto picture = painter_.paint(entries);
        const std::size_t left = painter_.width() * static_cast<std::size_t>(column);
        for (std::size_t row = 0; row < painter_.height(); ++row) {
            std::memcpy(&pixels_[row * width_ + left], &picture[row * painter_.width()],
                        painter_.width());
        }
    }

private:
    IndexPainter& painter_;
    std::size_t width_;
    std::vector<std::uint8_t> pixels_;
};

}  // namespace

bool writePng(const Sequence& sequence, std::uint64_t number, const display::Look& look,
              const std::filesystem::path& path, const recording::Progress& progress) {
    IndexPainter painter(sequence, look);
    OutputFile file(path);
    writeFrame(sequence, number, painter, file);
    if (!recording::goesOn(progress, 1, 1)) {
        return false;
    }
    file.takePlace();
    return true;
}

bool writePngs(const Sequence& sequence, const display::Look& look,
               const std::filesystem::path& path, const recording::Progress& progress) {
    IndexPainter painter(sequence, look);
    std::vector<std::unique_ptr<OutputFile>> files;
    for (std::uint64_t number = 0; number < sequence.count; ++number) {
        files.push_back(std::make_unique<OutputFile>(numbered(path, number)));
        writeFrame(sequence, number, painter, *files.back());
        if (!recording::goesOn(progress, number + 1, sequence.count)) {
            return false;
        }
    }
    for (const auto& file : files) {
        file->takePlace();
    }
    return true;
}

std::filesystem::path numbered(const std::filesystem::path& path, std::uint64_t number) {
    constexpr std::size_t Digits = 6;
    std::string digits = std::to_string(number);
    digits.insert(0, Digits - std::min(Digits, digits.size()), '0');
    std::filesystem::path name = path.stem();
    name += "-" + digits;
    name += path.extension();
    return path.parent_path() / name;
}

bool writeSheet(const Sequence& sequence, const display::Look& look, std::uint64_t columns,
                const std::filesystem::path& path, const recording::Progress& progress) {
    IndexPainter painter(sequence, look);
    const std::uint64_t across = std::clamp<std::uint64_t>(columns, 1, sequence.count);
    const std::uint64_t down = (sequence.count + across - 1) / across;
    SheetRow row(painter, across);
    checkSize(row.width(), down * painter.height());
    OutputFile file(path);
    PngFile png(file, row.width(), static_cast<std::size_t>(down * painter.height()),
                painter.colours());
    Entries entries;
    for (std::uint64_t number = 0; number < across * down; ++number) {
        if (number < sequence.count) {
            sequence.read(number, entries);
        } else {
            std::ranges::fill(entries, std::uint8_t{0});
        }
        row.put(number % across, entries);
        if ((number + 1) % across == 0) {
            png.add(row.pixels());
        }
        if (number < sequence.count && !recording::goesOn(progress, number + 1, sequence.count)) {
            return false;
        }
    }
    png.finish();
    file.finish();
    return true;
}

}  // namespace pictures
