#include <algorithm>
#include <array>
#include <cmath>

#include "pictures/picture.h"

namespace pictures {

namespace {

using Palette = std::span<const std::uint8_t, 3 * display::Entries>;
using Rgb = std::array<float, 3>;

constexpr float FullLight = 255;

/// A picture of a few dots, with fractions.
struct Dots {
    std::size_t width;
    std::size_t height;
    std::vector<Rgb> colours;
};

/// How much each pixel of a line adds to a dot.
struct Share {
    std::size_t pixel;
    std::size_t dot;
    float weight;
};

/// A line of pixels evenly divided among dots, each the mean of what it covers.
std::vector<Share> shares(std::size_t pixels, std::size_t dots) {
    std::vector<Share> all;
    const double length = static_cast<double>(pixels) / static_cast<double>(dots);
    for (std::size_t dot = 0; dot < dots; ++dot) {
        const double start = static_cast<double>(dot) * length;
        const double end = start + length;
        for (auto pixel = static_cast<std::size_t>(start);
             pixel < pixels && static_cast<double>(pixel) < end; ++pixel) {
            const auto left = static_cast<double>(pixel);
            const double covered = std::min(left + 1, end) - std::max(left, start);
            if (covered > 0) {
                all.push_back({pixel, dot, static_cast<float>(covered / length)});
            }
        }
    }
    return all;
}

void addScaled(Rgb& sum, const Rgb& colour, float weight) {
    for (std::size_t channel = 0; channel < sum.size(); ++channel) {
        sum[channel] += colour[channel] * weight;
    }
}

/// Each dot the mean colour of the part of the picture that it covers.
Dots resample(const Picture& picture, std::size_t width, std::size_t height) {
    Dots dots{width, height, std::vector<Rgb>(width * height)};
    const std::vector<Share> across = shares(picture.width, width);
    const std::vector<Share> down = shares(picture.height, height);
    std::vector<Rgb> line(width);
    std::size_t lineOf = picture.height;
    for (const Share& row : down) {
        if (row.pixel != lineOf) {
            lineOf = row.pixel;
            std::ranges::fill(line, Rgb{});
            for (const Share& column : across) {
                const std::uint8_t* const rgb =
                    &picture.rgb[3 * (row.pixel * picture.width + column.pixel)];
                addScaled(line[column.dot],
                          {static_cast<float>(rgb[0]), static_cast<float>(rgb[1]),
                           static_cast<float>(rgb[2])},
                          column.weight);
            }
        }
        for (std::size_t x = 0; x < width; ++x) {
            addScaled(dots.colours[row.dot * width + x], line[x], row.weight);
        }
    }
    return dots;
}

Rgb entryOf(Palette palette, std::size_t entry) {
    return {static_cast<float>(palette[3 * entry]), static_cast<float>(palette[3 * entry + 1]),
            static_cast<float>(palette[3 * entry + 2])};
}

/// Compares colours in the way that suits the palette.
class Eye {
public:
    explicit Eye(Palette palette) {
        for (std::size_t entry = 0; entry < display::Entries; ++entry) {
            const Rgb colour = entryOf(palette, entry);
            if (lightOf(colour) > lightOf(hue_)) {
                hue_ = colour;
            }
        }
        for (std::size_t entry = 0; entry < display::Entries; ++entry) {
            single_ = single_ && isOfHue(entryOf(palette, entry));
        }
        for (std::size_t entry = 0; entry < display::Entries; ++entry) {
            entries_[entry] = seen(entryOf(palette, entry));
        }
    }

    /// With a single hue only the brightness: of grey the picture's own, of that hue the palette's.
    Rgb seen(const Rgb& colour) const {
        if (!single_ || lightOf(hue_) == 0) {
            return colour;
        }
        float ofHue = FullLight;
        for (std::size_t channel = 0; channel < colour.size(); ++channel) {
            if (hue_[channel] > 0) {
                ofHue = std::min(ofHue, colour[channel] / hue_[channel] * lightOf(hue_));
            }
        }
        const float grey = 0.299F * colour[0] + 0.587F * colour[1] + 0.114F * colour[2];
        return {std::max(ofHue, grey), 0, 0};
    }

    /// The entry that looks most like it.
    std::size_t nearest(const Rgb& look) const {
        std::size_t best = 0;
        float least = distance(look, entries_[0]);
        for (std::size_t entry = 1; entry < entries_.size(); ++entry) {
            const float each = distance(look, entries_[entry]);
            if (each < least) {
                least = each;
                best = entry;
            }
        }
        return best;
    }
    const Rgb& look(std::size_t entry) const { return entries_[entry]; }

private:
    static float lightOf(const Rgb& colour) { return *std::ranges::max_element(colour); }

    static float distance(const Rgb& a, const Rgb& b) {
        float sum = 0;
        for (std::size_t channel = 0; channel < a.size(); ++channel) {
            sum += (a[channel] - b[channel]) * (a[channel] - b[channel]);
        }
        return sum;
    }

    /// The brightest colour, darkened; a palette's channels are rounded.
    bool isOfHue(const Rgb& colour) const {
        const float share = lightOf(hue_) == 0 ? 0 : lightOf(colour) / lightOf(hue_);
        for (std::size_t channel = 0; channel < colour.size(); ++channel) {
            if (std::abs(colour[channel] - share * hue_[channel]) > 1) {
                return false;
            }
        }
        return true;
    }

    Rgb hue_{};  ///< the brightest entry
    bool single_ = true;
    std::array<Rgb, display::Entries> entries_{};
};

/// Floyd and Steinberg's dithering, row by row from the left: what an entry shows too much or too
/// little of is made up for by the dots to the right and below.
class Dither {
public:
    Dither(const Eye& eye, std::size_t width)
        : eye_(eye), width_(width), now_(width + 2), below_(width + 2) {}

    std::vector<std::uint8_t> row(std::span<const Rgb> colours) {
        std::vector<std::uint8_t> entries;
        for (std::size_t x = 0; x < width_; ++x) {
            Rgb wanted = eye_.seen(colours[x]);
            for (std::size_t channel = 0; channel < wanted.size(); ++channel) {
                wanted[channel] =
                    std::clamp(wanted[channel] + now_[x + 1][channel], 0.0F, FullLight);
            }
            const std::size_t entry = eye_.nearest(wanted);
            spread(x + 1, wanted, eye_.look(entry));
            entries.push_back(static_cast<std::uint8_t>(entry));
        }
        now_.swap(below_);
        std::ranges::fill(below_, Rgb{});
        return entries;
    }

private:
    void spread(std::size_t x, const Rgb& wanted, const Rgb& shown) {
        const Rgb error = {wanted[0] - shown[0], wanted[1] - shown[1], wanted[2] - shown[2]};
        addScaled(now_[x + 1], error, 7.0F / 16);
        addScaled(below_[x - 1], error, 3.0F / 16);
        addScaled(below_[x], error, 5.0F / 16);
        addScaled(below_[x + 1], error, 1.0F / 16);
    }

    const Eye& eye_;
    std::size_t width_;
    std::vector<Rgb> now_;    ///< what is to be made up for, with a dot more on either side
    std::vector<Rgb> below_;  ///< in the next row
};

/// The size that a picture has in a display, from 1 dot on.
std::size_t fitted(std::size_t pixels, double scale, std::size_t most) {
    const auto dots = static_cast<std::size_t>(std::lround(static_cast<double>(pixels) * scale));
    return std::clamp<std::size_t>(dots, 1, most);
}

}  // namespace

std::vector<std::uint8_t> fitToDisplay(const Picture& picture, Palette palette, std::size_t columns,
                                       std::size_t rows) {
    const Eye eye(palette);
    std::vector<std::uint8_t> entries(columns * rows,
                                      static_cast<std::uint8_t>(eye.nearest(eye.seen(Rgb{}))));
    if (picture.rgb.empty()) {
        return entries;
    }
    const double scale = std::min(static_cast<double>(columns) / static_cast<double>(picture.width),
                                  static_cast<double>(rows) / static_cast<double>(picture.height));
    const Dots dots = resample(picture, fitted(picture.width, scale, columns),
                               fitted(picture.height, scale, rows));
    const std::size_t left = (columns - dots.width) / 2;
    const std::size_t top = (rows - dots.height) / 2;
    Dither dither(eye, dots.width);
    for (std::size_t y = 0; y < dots.height; ++y) {
        const auto line = dither.row(std::span(dots.colours).subspan(y * dots.width, dots.width));
        std::ranges::copy(
            line, entries.begin() + static_cast<std::ptrdiff_t>((top + y) * columns + left));
    }
    return entries;
}

}  // namespace pictures
