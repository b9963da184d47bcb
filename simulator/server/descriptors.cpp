#include "simulator/server/descriptors.h"

#include <algorithm>

namespace simulator::descriptors {

namespace {

enum Type : std::uint8_t {
    Device = 1,
    ConfigurationTree = 2,
    Interface = 4,
    Endpoint = 5,
    DeviceQualifier = 6,
    OtherSpeedTree = 7,
};

constexpr std::uint8_t ControlPacketSize = 64;
constexpr std::uint16_t FullSpeedPacketSize = 64;
constexpr std::uint8_t Bulk = 2;
constexpr std::uint8_t SelfPowered = 0xC0;  // The machine's supply drives the display.
constexpr std::uint8_t MaxPower = 50;       // In units of 2 mA.
constexpr std::uint8_t ProductIndex = 2;
constexpr std::size_t LongestString = 126;  // Letters; the length byte counts two for each.

constexpr std::uint8_t low(std::uint16_t value) { return static_cast<std::uint8_t>(value); }
constexpr std::uint8_t high(std::uint16_t value) { return static_cast<std::uint8_t>(value >> 8U); }

Bytes device(std::uint16_t release) {
    return {18,
            Device,
            0x00,
            0x02,
            DeviceClass[0],
            DeviceClass[1],
            DeviceClass[2],
            ControlPacketSize,
            low(Vendor),
            high(Vendor),
            low(Product),
            high(Product),
            low(release),
            high(release),
            0,
            ProductIndex,
            0,
            1};
}

/// What differs at the other speed of the device: nothing but the bulk packets' size.
Bytes qualifier() {
    return {10,
            DeviceQualifier,
            0x00,
            0x02,
            DeviceClass[0],
            DeviceClass[1],
            DeviceClass[2],
            ControlPacketSize,
            1,
            0};
}

Bytes configuration(Type type, std::uint16_t packetSize) {
    Bytes bytes = {9, type, 0, 0, 1, Configuration, 0, SelfPowered, MaxPower};
    const Bytes interface = {
        9, Interface, 0, 0, 2, InterfaceClass[0], InterfaceClass[1], InterfaceClass[2], 0};
    bytes.insert(bytes.end(), interface.begin(), interface.end());
    for (const std::uint8_t address : {OutEndpoint, InEndpoint}) {
        const Bytes endpoint = {7, Endpoint, address, Bulk, low(packetSize), high(packetSize), 0};
        bytes.insert(bytes.end(), endpoint.begin(), endpoint.end());
    }
    bytes[2] = static_cast<std::uint8_t>(bytes.size());
    return bytes;
}

Bytes languages() { return {4, String, 0x09, 0x04}; }  // English, United States.

/// Letters as they are, in UTF-16.
Bytes string(std::string_view text) {
    text = text.substr(0, LongestString);
    Bytes bytes = {static_cast<std::uint8_t>(2 + 2 * text.size()), String};
    for (const char letter : text) {
        bytes.push_back(static_cast<std::uint8_t>(letter));
        bytes.push_back(0);
    }
    return bytes;
}

}  // namespace

std::optional<Bytes> find(std::uint8_t type, std::uint8_t index, std::string_view product,
                          std::uint16_t release) {
    if (type == String && index == 0) {
        return languages();
    }
    if (type == String && index == ProductIndex) {
        return string(product);
    }
    if (type == String || index != 0) {
        return std::nullopt;
    }
    switch (type) {
        case Device:
            return device(release);
        case ConfigurationTree:
            return configuration(ConfigurationTree, BulkPacketSize);
        case DeviceQualifier:
            return qualifier();
        case OtherSpeedTree:
            return configuration(OtherSpeedTree, FullSpeedPacketSize);
        default:
            return std::nullopt;
    }
}

}  // namespace simulator::descriptors
