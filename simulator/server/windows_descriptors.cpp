#include "simulator/server/windows_descriptors.h"

#include <string_view>

namespace simulator::windows_descriptors {

namespace {

constexpr std::uint8_t StringType = 3;
constexpr std::uint8_t Pad = 0;
constexpr std::uint16_t Version = 0x0100;

constexpr std::uint16_t CompatibleIds = 4;
constexpr std::string_view Driver = "WINUSB";
constexpr std::size_t DriverSize = 8;
constexpr std::uint8_t Interface = 0;

constexpr std::uint16_t Properties = 5;
constexpr std::uint32_t ListOfTexts = 7;  // The type of the property; REG_MULTI_SZ.
constexpr std::string_view PropertyName = "DeviceInterfaceGUIDs";
constexpr std::string_view Guid = "{8586c851-0d5b-48a5-8dd4-ffc9661ee371}";

void put(Bytes& bytes, std::uint64_t value, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i) {
        bytes.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
    }
}

/// In UTF-16.
void put(Bytes& bytes, std::string_view text) {
    for (const char letter : text) {
        put(bytes, static_cast<std::uint8_t>(letter), 2);
    }
}

/// The four bytes of the length at the front count everything, themselves, too.
Bytes withLength(const Bytes& rest) {
    constexpr std::size_t Own = 4;
    Bytes bytes;
    put(bytes, static_cast<std::uint32_t>(Own + rest.size()), Own);
    bytes.insert(bytes.end(), rest.begin(), rest.end());
    return bytes;
}

Bytes compatibleIds() {
    Bytes bytes;
    put(bytes, Version, 2);
    put(bytes, CompatibleIds, 2);
    put(bytes, 1, 1);  // One interface is listed.
    put(bytes, 0, 7);
    put(bytes, Interface, 1);
    put(bytes, 1, 1);  // Reserved; it has to be 1.
    Bytes driver(Driver.begin(), Driver.end());
    driver.resize(DriverSize);
    bytes.insert(bytes.end(), driver.begin(), driver.end());
    bytes.resize(bytes.size() + DriverSize + 6);  // No finer distinction, and what is reserved.
    return withLength(bytes);
}

Bytes interfaceName() {
    Bytes property;
    put(property, ListOfTexts, 4);
    put(property, static_cast<std::uint32_t>(2 * (PropertyName.size() + 1)), 2);
    put(property, PropertyName);
    put(property, 0, 2);
    put(property, static_cast<std::uint32_t>(2 * (Guid.size() + 2)), 4);
    put(property, Guid);
    put(property, 0, 4);  // The end of the text, and of the list.
    return withLength(property);
}

Bytes properties() {
    Bytes bytes;
    put(bytes, Version, 2);
    put(bytes, Properties, 2);
    put(bytes, 1, 2);  // One property.
    const Bytes name = interfaceName();
    bytes.insert(bytes.end(), name.begin(), name.end());
    return withLength(bytes);
}

}  // namespace

Bytes signature() {
    constexpr std::uint8_t Length = 18;
    Bytes bytes = {Length, StringType};
    put(bytes, "MSFT100");
    bytes.push_back(VendorRequest);
    bytes.push_back(Pad);
    return bytes;
}

std::optional<Bytes> find(std::uint8_t code, std::uint16_t value, std::uint16_t index) {
    // The value: which interface, and which 64 KiB of the answer.
    if (code != VendorRequest || value != 0) {
        return std::nullopt;
    }
    switch (index) {
        case CompatibleIds:
            return compatibleIds();
        case Properties:
            return properties();
        default:
            return std::nullopt;
    }
}

}  // namespace simulator::windows_descriptors
