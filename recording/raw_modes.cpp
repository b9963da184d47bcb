#include "recording/raw_modes.h"

#include <algorithm>

namespace recording {

namespace {

bool areSame(const DotRule& a, const DotRule& b) {
    return a.sum == b.sum && a.planes == b.planes && a.digits == b.digits;
}

}  // namespace

std::vector<const InputModeInfo*> modesOfPlanes(std::uint8_t planes) {
    std::vector<const InputModeInfo*> modes;
    for (const InputModeInfo& mode : inputModes()) {
        if (mode.rawFile && mode.capturePlanes == planes) {
            modes.push_back(&mode);
        }
    }
    return modes;
}

const DotRule* commonRule(std::uint8_t planes) {
    const auto modes = modesOfPlanes(planes);
    const bool agree = std::ranges::all_of(
        modes, [&](const auto* mode) { return areSame(mode->dots, modes.front()->dots); });
    return agree && !modes.empty() ? &modes.front()->dots : nullptr;
}

bool canBeOf(const InputModeInfo& mode, std::uint8_t planes) { return mode.dots.planes == planes; }

std::string listOf(const std::vector<const InputModeInfo*>& modes) {
    std::string list;
    for (const auto* mode : modes) {
        list += list.empty() ? "" : ", ";
        list += std::to_string(mode->number) + " (" + std::string(mode->label) + ")";
    }
    return list;
}

}  // namespace recording
