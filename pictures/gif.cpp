#include "pictures/gif.h"

#include <algorithm>
#include <stdexcept>
#include <string>

#include "display/painter.h"
#include "pictures/colour_table.h"
#include "pictures/gif_clock.h"
#include "pictures/gif_file.h"
#include "recording/error.h"
#include "recording/output_file.h"
#include "recording/summary.h"

namespace pictures {

namespace {

using Entries = std::vector<std::uint8_t>;

constexpr std::uint32_t SingleFrameMs = 1000;

/// The dots in which two frames differ. There is always one: a GIF has no frame without pixels.
Area difference(const Entries& before, const Entries& now, std::size_t columns) {
    if (before.empty()) {
        return {0, 0, columns, now.size() / columns};
    }
    std::size_t left = columns;
    std::size_t right = 0;
    std::size_t top = now.size();
    std::size_t bottom = 0;
    for (std::size_t i = 0; i < now.size(); ++i) {
        if (before[i] != now[i]) {
            left = std::min(left, i % columns);
            right = std::max(right, i % columns);
            top = std::min(top, i / columns);
            bottom = i / columns;
        }
    }
    return top == now.size() ? Area{0, 0, 1, 1}
                             : Area{left, top, right - left + 1, bottom - top + 1};
}

/// Paints what changes from frame to frame.
class Animation {
public:
    Animation(recording::OutputFile& file, const Sequence& sequence, const display::Look& look)
        : columns_(sequence.columns),
          scale_(look.scale),
          painter_(look, display::Pixels::Numbers),
          colours_(look),
          gif_(file, columns_ * scale_, sequence.rows * scale_, colours_.colours()) {}

    void add(const Entries& entries, std::uint32_t delay) {
        const Area dots = difference(before_, entries, columns_);
        part_.clear();
        for (std::size_t row = dots.top; row < dots.top + dots.height; ++row) {
            const auto from =
                entries.begin() + static_cast<std::ptrdiff_t>(row * columns_ + dots.left);
            part_.insert(part_.end(), from, from + static_cast<std::ptrdiff_t>(dots.width));
        }
        pixels_.resize(painter_.pictureBytes(dots.width, dots.height));
        painter_.paint(part_, dots.width, pixels_);
        colours_.index(pixels_);
        gif_.add({dots.left * scale_, dots.top * scale_, dots.width * scale_, dots.height * scale_},
                 pixels_, delay);
        before_ = entries;
    }

    void finish() { gif_.finish(); }

private:
    std::size_t columns_;
    std::size_t scale_;
    display::Painter painter_;
    ColourTable colours_;
    GifFile gif_;
    Entries before_;
    Entries part_;
    std::vector<std::uint8_t> pixels_;
};

void checkSize(const Sequence& sequence, const display::Look& look) {
    const std::size_t most = std::max(sequence.columns, sequence.rows) * look.scale;
    if (most > GifFile::MostPixels) {
        throw recording::Error(recording::Failure::CannotConvert,
                               "a GIF has at most " + std::to_string(GifFile::MostPixels) +
                                   " pixels in a row, not " + std::to_string(most) +
                                   "; choose a smaller scale");
    }
}

}  // namespace

GifResult writeGif(const Sequence& sequence, const display::Look& look,
                   const std::filesystem::path& path, const recording::Progress& progress) {
    if (sequence.count == 0) {
        throw std::invalid_argument("there are no frames for an animation");
    }
    checkSize(sequence, look);
    GifResult result;
    recording::OutputFile file(path);
    Animation animation(file, sequence, look);
    GifClock clock(sequence.count, sequence.spanMs);
    Entries now;
    Entries next;
    std::uint32_t stamp = sequence.read(0, now);
    std::uint32_t shownMs = SingleFrameMs;
    for (std::uint64_t number = 0; number < sequence.count; ++number) {
        if (number + 1 < sequence.count) {
            const std::uint32_t nextStamp = sequence.read(number + 1, next);
            shownMs = recording::stepMs(stamp, nextStamp);
            stamp = nextStamp;
        }
        const std::uint32_t delay = clock.next(shownMs);
        if (delay > 0) {
            animation.add(now, delay);
        }
        ++(delay > 0 ? result.frames : result.leftOut);
        now.swap(next);
        if (!recording::goesOn(progress, number + 1, sequence.count)) {
            return result;
        }
    }
    animation.finish();
    file.finish();
    result.finished = true;
    return result;
}

}  // namespace pictures
