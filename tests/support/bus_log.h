#ifndef LUMADOT_TESTS_SUPPORT_BUS_LOG_H
#define LUMADOT_TESTS_SUPPORT_BUS_LOG_H

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace support {

/// Bytes as text: "81 C3 E7 FF".
std::string hex(std::span<const std::uint8_t> bytes);

/// The text, as `sentFrames` gives it, of a frame of 2052 bytes: these bytes, the rest zero.
std::string frame(std::string_view bytes);

/// What the tool sent since the log was cleared: each packet's bytes as text, its trailing zeros
/// counted, as "81 C3 E7 FF 10 00*2047".
std::vector<std::string> sentFrames();

/// The calls to the USB library since the log was cleared, by name and without "libusb_"; a bulk
/// transfer as "out 2052" or "in 63".
std::vector<std::string> busCalls();

}  // namespace support

#endif
