#include "tests/support/bus_log.h"

#include <algorithm>
#include <cstdio>
#include <sstream>

#include "simulator/bus.h"

namespace support {

namespace {

constexpr std::size_t FrameSize = 2052;

std::string withCountedZeros(const simulator::Packet& packet) {
    const auto isSet = [](std::uint8_t byte) { return byte != 0; };
    const auto last = std::find_if(packet.rbegin(), packet.rend(), isSet).base();
    return hex({packet.begin(), last}) + " 00*" + std::to_string(packet.end() - last);
}

}  // namespace

std::string hex(std::span<const std::uint8_t> bytes) {
    std::string text;
    for (const std::uint8_t byte : bytes) {
        char digits[4];
        std::snprintf(digits, sizeof digits, " %02X", byte);
        text += digits;
    }
    return text.empty() ? text : text.substr(1);
}

std::string frame(std::string_view bytes) {
    simulator::Packet packet;
    std::istringstream text{std::string(bytes)};
    for (unsigned byte = 0; text >> std::hex >> byte;) {
        packet.push_back(static_cast<std::uint8_t>(byte));
    }
    packet.resize(FrameSize);
    return withCountedZeros(packet);
}

std::vector<std::string> sentFrames() {
    std::vector<std::string> frames;
    for (const simulator::Call& call : simulator::Bus::instance().calls()) {
        if (call.function == "libusb_bulk_transfer" && call.endpoint == 0x01) {
            frames.push_back(withCountedZeros(call.data));
        }
    }
    return frames;
}

std::vector<std::string> busCalls() {
    std::vector<std::string> names;
    for (const simulator::Call& call : simulator::Bus::instance().calls()) {
        if (call.function == "libusb_bulk_transfer") {
            names.push_back((call.endpoint == 0x01 ? "out " : "in ") + std::to_string(call.length));
        } else {
            names.push_back(call.function.substr(call.function.find('_') + 1));
        }
    }
    return names;
}

}  // namespace support
