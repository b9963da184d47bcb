// Pictures of 128 x 32 dots beside a plain memset of as many bytes, in turns, on one core.
//
// Exit code 1: at scale 8 it is under 1,000 pictures a second, or under half of the memset's rate.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "bench/report.h"
#include "display/painter.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t Columns = 128;
constexpr std::size_t Rows = 32;
constexpr std::size_t JudgedScale = 8;
constexpr double WantedPictures = 1000;
constexpr double WantedShare = 0.5;

/// Makes the compiler believe that somebody looks at the bytes.
void lookAt(const Bytes& bytes) { asm volatile("" : : "r"(bytes.data()) : "memory"); }

Bytes randomShades(unsigned count) {
    std::mt19937 random(1);
    Bytes shades(Columns * Rows);
    std::ranges::generate(shades, [&] { return static_cast<std::uint8_t>(random() % count); });
    return shades;
}

/// The fastest rounds of many, a memset after each picture.
struct Rates {
    double pictures = 0;  ///< a second
    double memsets = 0;
};

Rates measure(const display::Painter& painter, const Bytes& shades) {
    constexpr int Rounds = 200;
    constexpr int Pictures = 20;
    Bytes picture(painter.pictureBytes(Columns, Rows));
    Rates rates;
    for (int round = 0; round < Rounds; ++round) {
        const double painted = bench::fastest(1, [&] {
            for (int i = 0; i < Pictures; ++i) {
                painter.paint(shades, Columns, picture);
                lookAt(picture);
            }
        });
        const double set = bench::fastest(1, [&] {
            for (int i = 0; i < Pictures; ++i) {
                std::memset(picture.data(), i, picture.size());
                lookAt(picture);
            }
        });
        rates.pictures = std::max(rates.pictures, Pictures / painted);
        rates.memsets = std::max(rates.memsets, Pictures / set);
    }
    return rates;
}

bool judge(std::size_t scale, display::Dots dots, unsigned shades) {
    display::Look look;
    look.palette.fill(200);
    look.scale = scale;
    look.dots = dots;
    const Rates rates = measure(display::Painter(look), randomShades(shades));
    const char* const shape = dots == display::Dots::Round ? "round" : "square";
    std::printf("scale %2zu, %s dots, %2u shades: %9.0f pictures a second, memset %9.0f: %.2f\n",
                scale, shape, shades, rates.pictures, rates.memsets,
                rates.pictures / rates.memsets);
    if (scale != JudgedScale) {
        return true;
    }
    return bench::atLeast("pictures a second", rates.pictures, WantedPictures) &&
           bench::atLeast("of the memset's rate", rates.pictures / rates.memsets, WantedShare);
}

}  // namespace

int main() {
    bool good = true;
    for (const std::size_t scale : {std::size_t{2}, std::size_t{4}, JudgedScale, std::size_t{16}}) {
        for (const auto dots : {display::Dots::Round, display::Dots::Square}) {
            for (const unsigned shades : {4U, 16U}) {
                good &= judge(scale, dots, shades);
            }
        }
    }
    return good ? EXIT_SUCCESS : EXIT_FAILURE;
}
