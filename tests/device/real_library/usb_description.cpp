#include "tests/device/real_library/usb_description.h"

#include <cstdio>

namespace support {

namespace {

constexpr const char* HubSystemPath = "/devices/usb1";

// Device descriptor; configuration with one interface and two bulk endpoints of 512-byte packets.
constexpr const char* ControllerDescriptors =
    "12 01 0002 00 00 00 40 1403 57e4 0001 01 02 03 01"
    "09 02 2000 01 01 00 80 fa"
    "09 04 00 00 02 ff 00 00 00"
    "07 05 01 02 0002 00"
    "07 05 81 02 0002 00";

constexpr const char* HubDescriptors =
    "12 01 0002 09 00 01 40 6b1d 0200 0206 00 00 00 01"
    "09 02 1900 01 01 00 e0 00"
    "09 04 00 00 01 09 00 00 00"
    "07 05 81 03 0400 0c";

std::string threeDigits(int number) {
    std::array<char, 12> text{};
    std::snprintf(text.data(), text.size(), "%03d", number);
    return text.data();
}

std::string nodeOf(int address) { return "bus/usb/001/" + threeDigits(address); }

std::string withoutBlanks(std::string_view text) {
    std::string result(text);
    std::erase(result, ' ');
    return result;
}

std::string describe(const std::string& path, int address, std::string_view descriptors) {
    const std::string node = nodeOf(address);
    return "P: " + path + "\nN: " + node +
           "\nE: SUBSYSTEM=usb\nE: DEVTYPE=usb_device\nE: DRIVER=usb\nE: DEVNAME=/dev/" + node +
           "\nE: BUSNUM=001\nE: DEVNUM=" + threeDigits(address) +
           "\nA: busnum=1\\n\nA: devnum=" + std::to_string(address) +
           "\\n\nA: bConfigurationValue=1\\n\nA: speed=480\\n\nH: descriptors=" +
           withoutBlanks(descriptors) + "\n";
}

std::vector<std::uint8_t> stringDescriptor(std::string_view text) {
    constexpr std::uint8_t StringType = 3;
    std::vector<std::uint8_t> bytes{static_cast<std::uint8_t>(2 + 2 * text.size()), StringType};
    for (const char letter : text) {
        bytes.push_back(static_cast<std::uint8_t>(letter));
        bytes.push_back(0);
    }
    return bytes;
}

}  // namespace

std::string UsbPlace::systemPath() const {
    return std::string(HubSystemPath) + "/1-" + std::to_string(address);
}

std::string UsbPlace::node() const { return "/dev/" + nodeOf(address); }

std::string hubDescription() { return describe(HubSystemPath, 1, HubDescriptors); }

std::string controllerDescription(const UsbPlace& place) {
    return describe(place.systemPath(), place.address, ControllerDescriptors);
}

std::vector<std::uint8_t> answerControlRequest(std::span<const std::uint8_t, 8> setup,
                                               std::string_view product) {
    const bool asksForString = setup[0] == 0x80 && setup[1] == 6 && setup[3] == 3;
    if (!asksForString) {
        return {};
    }
    switch (setup[2]) {
        case 0:
            return {4, 3, 0x09, 0x04};  // English is the only language.
        case 1:
            return stringDescriptor("maker");
        case 2:
            return stringDescriptor(product);
        case 3:
            return stringDescriptor("0001");
        default:
            return {};
    }
}

}  // namespace support
