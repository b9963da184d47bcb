#include "tests/device/operations.h"

#include <array>
#include <cstdint>

#include "device/interfaceUSB.h"
#include "device/logo_frame.h"
#include "tests/support/byte_text.h"

namespace {

std::array<std::uint8_t, 5> someBuffer = {0x02, 0xC3, 0xE8, 0x04, 0xFF};

std::array<std::uint8_t, 48> someColours = {
    0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0x08, 0x09, 0x0A, 0x0B, 0x0C, 0x0D, 0x0E, 0x0F, 0x10,
    0x11, 0x12, 0x13, 0x14, 0x15, 0x16, 0x17, 0x18, 0x19, 0x1A, 0x1B, 0x1C, 0x1D, 0x1E, 0x1F, 0x20,
    0x21, 0x22, 0x23, 0x24, 0x25, 0x26, 0x27, 0x28, 0x29, 0x2A, 0x2B, 0x2C, 0x2D, 0x2E, 0x2F, 0x30};

/// An operation without a result.
template <class Run>
std::function<std::optional<bool>()> silent(Run run) {
    return [run] {
        run();
        return std::nullopt;
    };
}

}  // namespace

const std::vector<Operation>& operations() {
    static const std::vector<Operation> all = {
        {"sendUSB",
         [] { return usb.sendUSB(someBuffer.data(), 5); },
         {"out 0x01 5 1000ms #0: 02 C3 E8 04 FF"}},
        {"getSettings",
         silent([] { config = usb.getSettings(config, versionString); }),
         {"out 0x01 2052 1000ms #0: 81 C3 E7 FF 10 00*2047", "in 0x81 63 1000ms #0"}},
        {"getUniqueId",
         silent([] { usb.getUniqueId(UIDString); }),
         {"out 0x01 2052 1000ms #0: 81 C3 E7 FF 11 00*2047", "in 0x81 63 1000ms counted #0"}},
        {"sendConfig",
         silent([] { usb.sendConfig(config); }),
         {"out 0x01 2052 1000ms #0: 81 C3 E7 FF 20 00 00 0F 0A 0F 0C 0F 00 0F 0F 00*10 01 01 1E "
          "00*2024"}},
        {"sendConfigCmd",
         [] { return usb.sendConfigCmd(0x02, 0x05); },
         {"out 0x01 2052 1000ms #0: 81 C3 E7 FF 02 05 00*2046"}},
        {"sendPal",
         silent([] { usb.sendPal(someColours.data()); }),
         {"out 0x01 2052 1000ms #0: 81 C3 E7 FF 04 00 01 "
          "01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 "
          "11 12 13 14 15 16 17 18 19 1A 1B 1C 1D 1E 1F 20 "
          "21 22 23 24 25 26 27 28 29 2A 2B 2C 2D 2E 2F 30 00*1997"}},
        {"setBrightness",
         silent([] { usb.setBrightness(30); }),
         {"out 0x01 2052 1000ms #0: 81 C3 E7 FF 08 00*12 1E 00*2034"}},
        {"sendLogo",
         [] { return usb.sendLogo(); },
         // The image itself is looked at where it is drawn.
         {"out 0x01 2052 1000ms #0: " + support::byteText(logoFrame())}},
    };
    return all;
}
