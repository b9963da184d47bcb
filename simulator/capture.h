#ifndef LUMADOT_SIMULATOR_CAPTURE_H
#define LUMADOT_SIMULATOR_CAPTURE_H

#include <cstdint>
#include <vector>

namespace simulator {

/// The bytes of one bulk transfer, or of one file.
using Packet = std::vector<std::uint8_t>;

/// How a dot's shade is spread over the planes of a frame: as a binary number, or as the number of
/// planes in which the dot is lit.
enum class Coding { Binary, Count };

/// The imaginary machine: a score that counts, a ball that bounces, and a ramp of all shades that
/// scrolls beneath them. It loops after 64 frames, and each frame differs from the one before.
class Animation {
public:
    static constexpr int Loop = 64;

    /// `width` and `height` in dots, multiples of 64 and 32.
    Animation(int width, int height) : width_(width), height_(height) {}

    /// The `index`th frame: `planes` planes of `width` x `height` bits, row by row from the top,
    /// the least significant bit of each byte leftmost. Valid until the next call.
    const Packet& frame(std::uint32_t index, std::uint8_t planes, Coding coding);

    /// The same frame before it is cut into planes: the light of each dot, row by row, from 0 to
    /// 2 ^ `planes` - 1, or to `planes` when they are counted.
    Packet levels(std::uint32_t index, std::uint8_t planes, Coding coding) const;

private:
    Packet render(int step, std::uint8_t planes, Coding coding) const;

    int width_;
    int height_;
    // The rendered frames of one loop, empty where not yet asked for. Only the format asked for
    // last is kept, so that a client that tries them all does not fill the memory.
    std::vector<Packet> rendered_ = std::vector<Packet>(Loop);
    std::uint8_t planes_ = 0;
    Coding coding_ = Coding::Binary;
};

}  // namespace simulator

#endif
