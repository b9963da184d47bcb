#ifndef LUMADOT_TESTS_SIMULATOR_PACKETS_H
#define LUMADOT_TESTS_SIMULATOR_PACKETS_H

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

#include "simulator/controller.h"

/// The bytes as a client puts them on the wire, written out apart from the code under test.
namespace packets {

/// `start`, filled with zeros up to `size`.
inline simulator::Packet padded(std::initializer_list<std::uint8_t> start, std::size_t size) {
    simulator::Packet packet(size, 0);
    std::copy(start.begin(), start.end(), packet.begin());
    return packet;
}

/// A command frame: the header and these bytes from byte 4 on.
inline simulator::Packet command(std::initializer_list<std::uint8_t> codeAndOperands) {
    simulator::Packet packet = padded({0x81, 0xC3, 0xE7, 0xFF}, 2052);
    std::copy(codeAndOperands.begin(), codeAndOperands.end(), packet.begin() + 4);
    return packet;
}

inline simulator::Packet dumpRequest(std::uint8_t planes) {
    return padded({0x02, 0xC3, 0xE8, planes}, 64);
}

/// An image frame, dark but for three dots: the first one is of entry 9, the last one of entry 2,
/// and that in row 7, column 10 of entry 4.
inline simulator::Packet image() {
    simulator::Packet packet = padded({0x81, 0xC3, 0xE7, 0x00, 0x80}, 2052);  // Plane 0: the first.
    packet[4 + 3 * 512] = 0x80;                                               // Plane 3: the same.
    packet[4 + 512 + 511] = 0x01;                                             // Plane 1: the last.
    packet[4 + 2 * 512 + 16 * 7 + 1] = 0x20;                                  // Plane 2.
    return packet;
}

inline simulator::Packet openUpload(const std::string& name) {
    simulator::Packet packet = command({0x0A, 0x00});
    std::copy(name.begin(), name.end(), packet.begin() + 6);
    return packet;
}

/// An upload's block: `text` with its length before it.
inline simulator::Packet block(const std::string& text) {
    simulator::Packet packet = command({0x0A, 0x01, static_cast<std::uint8_t>(text.size() / 256),
                                        static_cast<std::uint8_t>(text.size() % 256)});
    std::copy(text.begin(), text.end(), packet.begin() + 8);
    return packet;
}

inline simulator::Packet closeUpload() { return command({0x0A, 0xFF}); }

}  // namespace packets

#endif
