#include "tests/support/bus_log.h"

#include <array>
#include <cstdint>

#include "tests/support/byte_text.h"

namespace support {

std::string lineOf(const simulator::Call& call) {
    std::string line = call.function;
    if (call.function == "libusb_bulk_transfer") {
        line = (call.endpoint & 0x80) != 0 ? "in 0x" : "out 0x";
        line += byteText(std::array{static_cast<std::uint8_t>(call.endpoint)});
        line += " " + std::to_string(call.length) + " " + std::to_string(call.timeout) + "ms";
        line += call.countAsked ? " counted" : "";
    } else if (call.function == "libusb_get_string_descriptor_ascii") {
        line += " index " + std::to_string(call.endpoint);
        line += " length " + std::to_string(call.length);
    } else if (call.endpoint >= 0) {
        line += " " + std::to_string(call.endpoint);
    }
    if (call.stale) {
        line += " stale";
    } else if (call.device >= 0) {
        line += " #" + std::to_string(call.device);
    }
    const bool sent = line.starts_with("out") && !call.data.empty();
    return sent ? line + ": " + byteText(call.data) : line;
}

Lines callLines() {
    Lines lines;
    for (const simulator::Call& call : simulator::Bus::instance().calls()) {
        lines.push_back(lineOf(call));
    }
    return lines;
}

Lines sentFrames() {
    Lines frames;
    for (const simulator::Call& call : simulator::Bus::instance().calls()) {
        if (call.function == "libusb_bulk_transfer" && call.endpoint == 0x01) {
            frames.push_back(byteText(call.data));
        }
    }
    return frames;
}

Lines joined(std::initializer_list<Lines> parts) {
    Lines lines;
    for (const Lines& part : parts) {
        lines.insert(lines.end(), part.begin(), part.end());
    }
    return lines;
}

Lines setupLines() {
    return {"libusb_init",
            "libusb_get_device_list",
            "libusb_get_device_descriptor #0",
            "libusb_open #0",
            "libusb_get_string_descriptor_ascii index 2 length 256 #0",
            "libusb_free_device_list",
            "libusb_claim_interface 0 #0"};
}

Lines emptyBusLines() { return {"libusb_init", "libusb_get_device_list"}; }

Lines releaseLines() { return {"libusb_release_interface 0 #0", "libusb_close #0"}; }

Lines connection(const Lines& transfers) {
    return joined({setupLines(), transfers, releaseLines()});
}

Lines aboutDevice(int number, Lines lines) {
    for (std::string& line : lines) {
        if (const auto at = line.find("#0"); at != std::string::npos) {
            line.replace(at, 2, "#" + std::to_string(number));
        }
    }
    return lines;
}

Lines withStaleHandle(Lines lines) {
    for (std::string& line : lines) {
        if (const auto at = line.find("#0"); at != std::string::npos) {
            line.replace(at, std::string::npos, "stale");
        }
    }
    return lines;
}

}  // namespace support
