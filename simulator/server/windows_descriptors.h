#ifndef LUMADOT_SIMULATOR_SERVER_WINDOWS_DESCRIPTORS_H
#define LUMADOT_SIMULATOR_SERVER_WINDOWS_DESCRIPTORS_H

#include <cstdint>
#include <optional>
#include <vector>

/// What a USB 2.0 device tells Windows, so that it binds the driver WinUSB by itself ("Microsoft OS
/// 1.0 descriptors").
namespace simulator::windows_descriptors {

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint8_t StringIndex = 0xEE;  ///< of the string descriptor that says there are more
constexpr std::uint8_t VendorRequest =
    0x20;  ///< the code that this device takes requests for them by

/// The string descriptor: the signature, and the code.
Bytes signature();

/// The answer to a vendor's request: 4 is which driver, 5 the name under which programs find the
/// device; nothing for others.
std::optional<Bytes> find(std::uint8_t code, std::uint16_t value, std::uint16_t index);

}  // namespace simulator::windows_descriptors

#endif
