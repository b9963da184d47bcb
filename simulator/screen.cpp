#include "simulator/screen.h"

#include "simulator/machine.h"

namespace simulator {

namespace {

using Entries = std::vector<std::uint8_t>;

constexpr DotCount ImageSize = {128, 32};
constexpr std::size_t ImageHeader = 4;
constexpr std::size_t ImagePlanes = 4;
constexpr std::size_t PlaneSize = ImageSize.columns * ImageSize.rows / 8;

/// The first bit of a byte of an image is the highest one, unlike that of a captured frame.
std::uint8_t imageEntry(const Packet& image, std::size_t dot) {
    constexpr std::uint8_t LeftmostBit = 0x80;
    unsigned entry = 0;
    for (std::size_t plane = 0; plane < ImagePlanes; ++plane) {
        const std::uint8_t byte = image[ImageHeader + plane * PlaneSize + dot / 8];
        const bool lit = (byte & LeftmostBit >> dot % 8) != 0;
        entry |= static_cast<unsigned>(lit) << plane;
    }
    return static_cast<std::uint8_t>(entry);
}

Entries imageEntries(const Packet& image, const DotCount& size) {
    const std::size_t left = (size.columns - ImageSize.columns) / 2;
    const std::size_t top = (size.rows - ImageSize.rows) / 2;
    Entries entries(size.columns * size.rows);
    for (std::size_t dot = 0; dot < ImageSize.columns * ImageSize.rows; ++dot) {
        const std::size_t row = top + dot / ImageSize.columns;
        entries[row * size.columns + left + dot % ImageSize.columns] = imageEntry(image, dot);
    }
    return entries;
}

Entries machineEntries(const Controller& controller, std::uint32_t step) {
    const Machine& kind = machine(controller.working()[InputModeByte]);
    Entries entries = controller.machineLevels(step, kind.planes, kind.coding);
    for (std::uint8_t& entry : entries) {
        entry = kind.entries[entry];
    }
    return entries;
}

}  // namespace

Shown shown(const Controller& controller, std::uint32_t step) {
    const DotCount size = controller.size();
    const auto& image = controller.image();
    return {.size = size,
            .entries = image ? imageEntries(*image, size) : machineEntries(controller, step),
            .palette = controller.palette(),
            .brightness =
                controller.restarting() ? std::uint8_t{0} : controller.working()[BrightnessByte]};
}

}  // namespace simulator
