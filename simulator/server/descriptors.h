#ifndef LUMADOT_SIMULATOR_SERVER_DESCRIPTORS_H
#define LUMADOT_SIMULATOR_SERVER_DESCRIPTORS_H

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

/// What the board tells of itself on endpoint 0: a high-speed device with one configuration, one
/// interface of its own kind, and two bulk endpoints.
namespace simulator::descriptors {

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint8_t String = 3;  ///< a descriptor's type

constexpr std::uint16_t Vendor = 0x0314;
constexpr std::uint16_t Product = 0xE457;
/// One that describes itself to Windows has a number of its own: Windows asks once for each.
constexpr std::uint16_t release(bool windowsDescriptors) {
    return windowsDescriptors ? 0x0101 : 0x0100;
}
constexpr std::uint8_t Configuration = 1;  ///< the value that selects the one configuration
constexpr std::array<std::uint8_t, 3> DeviceClass = {0, 0, 0};              // The interface's.
constexpr std::array<std::uint8_t, 3> InterfaceClass = {0xFF, 0x00, 0x00};  // The vendor's own.

constexpr std::uint8_t OutEndpoint = 0x01;
constexpr std::uint8_t InEndpoint = 0x81;
constexpr std::size_t BulkPacketSize = 512;

/// The descriptor of this type and index, whole; nothing: the board has none. The string with the
/// index of the product is `product`; `release` is the board's version, 0xVVvv.
std::optional<Bytes> find(std::uint8_t type, std::uint8_t index, std::string_view product,
                          std::uint16_t release);

}  // namespace simulator::descriptors

#endif
