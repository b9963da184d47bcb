#include "device/dot_sums.h"

#include <algorithm>
#include <cstring>

namespace dump {

namespace {

/// As many dots as are counted at once; the compiler makes vector instructions of it.
using Lanes = std::array<std::uint64_t, 2>;
static_assert(StandardDisplay.planeBytes() % sizeof(Lanes) == 0);
static_assert(XlDisplay.planeBytes() % sizeof(Lanes) == 0);

/// Adds a bit to each dot's bit of the sum; what is carried over replaces it.
void addCarry(Lanes& bits, Lanes& carry) {
    for (std::size_t i = 0; i < bits.size(); ++i) {
        const std::uint64_t next = bits[i] & carry[i];
        bits[i] ^= carry[i];
        carry[i] = next;
    }
}

}  // namespace

DotSums::DotSums(const DotRule& rule, const Geometry& display)
    : display_(display),
      weighted_(rule.sum == DotRule::Sum::Weighted),
      planes_(rule.planes),
      frame_(planes_ * display.planeBytes()),
      sums_(SumPlanes * display.planeBytes()) {}

void DotSums::take(std::span<const std::uint8_t> planes) {
    const std::span<std::uint8_t> frame(weighted_ ? sums_ : frame_);
    const std::size_t held = std::min(planes.size(), planes_ * display_.planeBytes());
    const auto rest = std::copy_n(planes.begin(), held, frame.begin());
    std::fill(rest, frame.end(), std::uint8_t{0});
    if (!weighted_) {
        count();
    }
}

/// Counts the set bits of each dot, 128 dots at a time: a plane is added to the sums as a carry
/// that runs up through their planes.
void DotSums::count() {
    const std::size_t planeBytes = display_.planeBytes();
    const std::size_t planes = planes_;  // Members would be read anew after every store.
    const std::uint8_t* const frame = frame_.data();
    std::uint8_t* const sums = sums_.data();
    for (std::size_t at = 0; at < planeBytes; at += sizeof(Lanes)) {
        std::array<Lanes, SumPlanes> sum{};
        for (std::size_t plane = 0; plane < planes; ++plane) {
            Lanes carry;
            std::memcpy(&carry, frame + plane * planeBytes + at, sizeof(Lanes));
            addCarry(sum[0], carry);  // Written out: as a loop it takes four times as long.
            addCarry(sum[1], carry);
            addCarry(sum[2], carry);
            addCarry(sum[3], carry);
        }
        for (std::size_t bit = 0; bit < SumPlanes; ++bit) {
            std::memcpy(sums + bit * planeBytes + at, &sum[bit], sizeof(Lanes));
        }
    }
}

}  // namespace dump
