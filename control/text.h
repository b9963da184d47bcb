#ifndef LUMADOT_CONTROL_TEXT_H
#define LUMADOT_CONTROL_TEXT_H

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace control {

/// All bytes in hexadecimal, eight zeros or more in a row counted: "81 C3 E7 FF 02 02 00*2046".
std::string byteText(std::span<const std::uint8_t> bytes);

/// Two digits a byte: "81C3E7FF".
std::string hexDigits(std::span<const std::uint8_t> bytes, std::string_view between = "");

/// A text that came from outside, for a terminal: what is no printable ASCII is written "\x9B".
std::string printable(std::string_view text);

std::string lowerCase(std::string_view text);

/// "512 bytes", "1.5 kB", "2.0 MB".
std::string sizeText(double bytes);

/// With one digit behind the point, whatever the locale.
std::string decimal(double value);

}  // namespace control

#endif
