#ifndef LUMADOT_TESTS_SUPPORT_PRESETS_H
#define LUMADOT_TESTS_SUPPORT_PRESETS_H

#include <ostream>

namespace support {

/// A palette preset: its 48 bytes, and the frame that selects it on the controller.
struct Preset {
    int index;
    const char* name;
    const char* selected;
    const char* bytes;
};

inline void PrintTo(const Preset& preset, std::ostream* out) { *out << preset.name; }

// clang-format off
inline constexpr Preset Presets[] = {
    {0, "Vga", "81 C3 E7 FF 03 00*2047",
     "00 00 00 80 00 00 FF 00 00 FF 00 FF 00 80 80 00 80 00 00 FF 00 00 FF FF "
     "00 00 80 80 00 80 00 00 FF 40 40 40 80 80 80 80 80 00 FF FF 00 FF FF FF"},
    {1, "Red", "81 C3 E7 FF 03 01 00*2046",
     "00 00 00 11 00 00 22 00 00 33 00 00 44 00 00 55 00 00 66 00 00 77 00 00 "
     "88 00 00 99 00 00 AA 00 00 BB 00 00 CC 00 00 DD 00 00 EE 00 00 FF 00 00"},
    {2, "Green", "81 C3 E7 FF 03 02 00*2046",
     "00 00 00 00 11 00 00 22 00 00 33 00 00 44 00 00 55 00 00 66 00 00 77 00 "
     "00 88 00 00 99 00 00 AA 00 00 BB 00 00 CC 00 00 DD 00 00 EE 00 00 FF 00"},
    {3, "Blue", "81 C3 E7 FF 03 03 00*2046",
     "00 00 00 00 00 11 00 00 22 00 00 33 00 00 44 00 00 55 00 00 66 00 00 77 "
     "00 00 88 00 00 99 00 00 AA 00 00 BB 00 00 CC 00 00 DD 00 00 EE 00 00 FF"},
    {4, "Violet", "81 C3 E7 FF 03 04 00*2046",
     "00 00 00 11 00 11 22 00 22 33 00 33 44 00 44 55 00 55 66 00 66 77 00 77 "
     "88 00 88 99 00 99 AA 00 AA BB 00 BB CC 00 CC DD 00 DD EE 00 EE FF 00 FF"},
    {5, "Cyan", "81 C3 E7 FF 03 05 00*2046",
     "00 00 00 00 11 11 00 22 22 00 33 33 00 44 44 00 55 55 00 66 66 00 77 77 "
     "00 88 88 00 99 99 00 AA AA 00 BB BB 00 CC CC 00 DD DD 00 EE EE 00 FF FF"},
    {6, "Yellow", "81 C3 E7 FF 03 06 00*2046",
     "00 00 00 11 11 00 22 22 00 33 33 00 44 44 00 55 55 00 66 66 00 77 77 00 "
     "88 88 00 99 99 00 AA AA 00 BB BB 00 CC CC 00 DD DD 00 EE EE 00 FF FF 00"},
    {7, "White", "81 C3 E7 FF 03 07 00*2046",
     "00 00 00 11 11 11 22 22 22 33 33 33 44 44 44 55 55 55 66 66 66 77 77 77 "
     "88 88 88 99 99 99 AA AA AA BB BB BB CC CC CC DD DD DD EE EE EE FF FF FF"},
    {8, "Orange", "81 C3 E7 FF 03 08 00*2046",
     "00 00 00 11 09 00 22 12 00 33 1B 00 44 24 00 55 2D 00 66 36 00 77 3F 00 "
     "88 48 00 99 51 00 AA 5A 00 BB 63 00 CC 6C 00 DD 75 00 EE 7E 00 FF 87 00"},
};
// clang-format on

}  // namespace support

#endif
