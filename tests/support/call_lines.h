#ifndef LUMADOT_TESTS_SUPPORT_CALL_LINES_H
#define LUMADOT_TESTS_SUPPORT_CALL_LINES_H

#include <array>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

#include "simulator/bus.h"
#include "tests/support/byte_text.h"

namespace support {

/// The log of the simulated bus as text, one line a call.
using Lines = std::vector<std::string>;

/// A call as one line. "#0" is the device that it is about, "stale" a handle that is not open:
///
///     libusb_open #0
///     libusb_get_string_descriptor_ascii index 2 length 256 #0
///     libusb_claim_interface 0 #0
///     out 0x01 2052 1000ms #0: 81 C3 E7 FF 10 00*2047
///     in 0x81 63 1000ms counted #0
///
/// A transfer to the device shows the bytes that went over the wire; "counted" says that the
/// transferred count was asked for.
inline std::string lineOf(const simulator::Call& call) {
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

/// All calls that the bus has logged.
inline Lines callLines() {
    Lines lines;
    for (const simulator::Call& call : simulator::Bus::instance().calls()) {
        lines.push_back(lineOf(call));
    }
    return lines;
}

/// One list of lines after the other.
inline Lines joined(std::initializer_list<Lines> parts) {
    Lines lines;
    for (const Lines& part : parts) {
        lines.insert(lines.end(), part.begin(), part.end());
    }
    return lines;
}

/// The lines as they are about another device than #0.
inline Lines aboutDevice(int number, Lines lines) {
    for (std::string& line : lines) {
        if (const auto at = line.find("#0"); at != std::string::npos) {
            line.replace(at, 2, "#" + std::to_string(number));
        }
    }
    return lines;
}

/// The lines as they are with a handle that is no longer open: nothing goes over the wire.
inline Lines withStaleHandle(Lines lines) {
    for (std::string& line : lines) {
        if (const auto at = line.find("#0"); at != std::string::npos) {
            line.replace(at, std::string::npos, "stale");
        }
    }
    return lines;
}

}  // namespace support

#endif
