#ifndef LUMADOT_TESTS_DEVICE_REAL_LIBRARY_USB_DESCRIPTION_H
#define LUMADOT_TESTS_DEVICE_REAL_LIBRARY_USB_DESCRIPTION_H

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// What a controller and the hub above it tell about themselves.
namespace support {

/// Where on the mocked bus 1 a device is plugged in.
struct UsbPlace {
    int address;  ///< 2..127; also the number of the hub's port

    std::string systemPath() const;  ///< folder of the device below /sys
    std::string node() const;        ///< file of the device below /dev/bus/usb
};

/// The root hub, in umockdev's description language.
std::string hubDescription();

/// A display controller (0314:e457, high speed, bulk endpoints 0x01 and 0x81 on interface 0).
std::string controllerDescription(const UsbPlace& place);

/// The controller's answer to the 8 bytes of a control request: nothing but string descriptors are
/// known, of which 2 is the product. Empty: the request is refused. Not yet cut to the length that
/// was asked for.
std::vector<std::uint8_t> answerControlRequest(std::span<const std::uint8_t, 8> setup,
                                               std::string_view product);

}  // namespace support

#endif
