#ifndef LUMADOT_DEVICE_INPUT_MODE_H
#define LUMADOT_DEVICE_INPUT_MODE_H

#include <cstdint>
#include <span>
#include <string_view>

/// The pinball systems that the controller listens to, by the controller's own numbers (byte 0 of
/// the settings record, operand of Command::SelectMode).
enum class InputMode : std::uint8_t {
    PinMame = 0,
    WPC = 1,
    Stern = 2,
    WhiteStar = 3,
    Spike = 4,
    DataEast = 5,
    Gottlieb1 = 6,
    Gottlieb2 = 7,
    Gottlieb3 = 8,
    Capcom = 9,
    AlvinG = 10,
    Spooky = 11,
    DE128x16 = 12,
    Inder = 13,
    Sleic = 14,
    HomePin = 15,
};

/// How many shades a system shows its dots in; it decides which palette entries can be picked.
enum class ShadeSet : std::uint8_t { Four, Five, Sixteen };

/// How the bits of one dot, one from each bit plane, become the digit in a dump's text.
struct DotRule {
    enum class Sum : std::uint8_t {
        Weighted,  ///< plane n counts 2^n
        Count,     ///< every plane counts 1
    };
    Sum sum;
    std::uint8_t planes;      ///< planes that are summed, from plane 0 on
    std::string_view digits;  ///< digit for each possible sum
};

/// All that the tool knows about one input mode.
struct InputModeInfo {
    std::uint8_t number;     ///< on the wire and in the settings record
    std::string_view label;  ///< as the window shows it, before translation
    ShadeSet shades;
    std::uint8_t capturePlanes;  ///< bit planes that a capture asks for
    bool rawFile;                ///< a capture writes a raw file too
    DotRule dots;
};

/// The modes in the order of their numbers, then one number that no control of the window sets.
std::span<const InputModeInfo> inputModes();

/// What is known about mode `number`; for a number that stands for no mode: no planes, blank dots.
const InputModeInfo& inputMode(std::uint8_t number);

inline const InputModeInfo& inputMode(InputMode mode) {
    return inputMode(static_cast<std::uint8_t>(mode));
}

#endif
