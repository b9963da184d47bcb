#include "recording/bit_planes.h"

#include "device/dot_sums.h"

namespace recording {

namespace {

template <class IsSet>
void fill(std::span<const std::uint8_t> dots, std::size_t planes, std::vector<std::uint8_t>& into,
          IsSet isSet) {
    const std::size_t planeBytes = dots.size() / dump::DotsPerByte;
    into.assign(planes * planeBytes, 0);
    for (std::size_t plane = 0; plane < planes; ++plane) {
        for (std::size_t i = 0; i < planeBytes * dump::DotsPerByte; ++i) {
            const unsigned bit = isSet(dots[i], plane) ? 1 : 0;
            into[plane * planeBytes + i / dump::DotsPerByte] |=
                static_cast<std::uint8_t>(bit << i % dump::DotsPerByte);
        }
    }
}

}  // namespace

void toPlanes(std::span<const std::uint8_t> dots, std::size_t planes,
              std::vector<std::uint8_t>& into) {
    fill(dots, planes, into,
         [](std::uint8_t dot, std::size_t plane) { return (dot >> plane & 1U) != 0; });
}

void toCountedPlanes(std::span<const std::uint8_t> dots, std::size_t planes,
                     std::vector<std::uint8_t>& into) {
    fill(dots, planes, into, [](std::uint8_t dot, std::size_t plane) { return plane < dot; });
}

}  // namespace recording
