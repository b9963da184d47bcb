#include "simulator/machine.h"

#include <algorithm>

namespace simulator {

namespace {

using enum Coding;

constexpr std::uint8_t Four[] = {0, 1, 4, 15};
constexpr std::uint8_t Five[] = {0, 3, 7, 11, 15};
constexpr std::uint8_t Sixteen[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15};

// Machines that show more levels than the display has shades.
constexpr std::uint8_t FiveToFour[] = {0, 1, 4, 15, 15};
constexpr std::uint8_t SevenToFour[] = {0, 1, 4, 4, 4, 4, 15};
constexpr std::uint8_t NineToFour[] = {0, 1, 4, 4, 4, 4, 4, 4, 15};
constexpr std::uint8_t ThirteenToFive[] = {0, 3, 3, 7, 7, 7, 11, 11, 11, 11, 11, 11, 15};

constexpr Machine Machines[] = {
    {0, "USB port", 4, Binary, Sixteen},
    {1, "Bally/Williams", 3, Count, Four},
    {2, "Stern S.A.M.", 4, Binary, Sixteen},
    {3, "Stern Whitestar", 2, Binary, Four},
    {4, "Stern Spike", 4, Binary, Sixteen},
    {5, "Data East / Sega", 2, Binary, Four},
    {6, "Premier Gottlieb V1", 12, Count, ThirteenToFive},
    {7, "Premier Gottlieb V2", 6, Count, SevenToFour},
    {8, "Premier Gottlieb V3", 8, Count, NineToFour},
    {9, "Capcom", 4, Count, FiveToFour},
    {10, "Alvin G", 4, Count, Five},
    {11, "Spooky", 4, Binary, Sixteen},
    {12, "Data East 128x16", 2, Binary, Four},
    {13, "Inder / SPinball", 3, Count, Four},
    {14, "Sleic / Petaco", 2, Binary, Four},
    {15, "HomePin", 4, Binary, Sixteen},
};

constexpr Machine Unknown = {255, "", 4, Binary, Sixteen};

}  // namespace

const Machine& machine(std::uint8_t mode) {
    const auto* const found = std::ranges::find(Machines, mode, &Machine::mode);
    return found == std::end(Machines) ? Unknown : *found;
}

}  // namespace simulator
