#ifndef LUMADOT_SIMULATOR_WINDOW_WORDS_OF_VALUES_H
#define LUMADOT_SIMULATOR_WINDOW_WORDS_OF_VALUES_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// Single values in words.
namespace simulator::words {

std::string modeName(std::uint8_t mode);
std::string presetName(std::uint8_t index);
std::string onOff(std::uint8_t value);
std::string bytes(std::size_t count);
/// ASCII as it is, every other byte as `\xNN`: a name from the wire is any bytes.
std::string printable(std::string_view text);

}  // namespace simulator::words

#endif
