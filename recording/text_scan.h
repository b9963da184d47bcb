#ifndef LUMADOT_RECORDING_TEXT_SCAN_H
#define LUMADOT_RECORDING_TEXT_SCAN_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "device/dump_format.h"

/// The text of a dump looked at as fast as the memory gives it.
namespace recording::text {

/// The stamp of a line "0x%08x" and CR LF, or LF only, at the start of `bytes`, which may go on;
/// its digits may be of either case.
struct StampLine {
    std::uint32_t stampMs;
    std::size_t size;
};
std::optional<StampLine> stampLine(std::span<const std::uint8_t> bytes);

/// Whether textBlockSize(display) bytes are a frame just as a capture writes it: its digits in
/// lower case, every line ended by CR LF.
bool isBlock(const std::uint8_t* block, const dump::Geometry& display);

/// The same when its dots are known to be good, those of a frame before.
bool startsBlock(const std::uint8_t* block);

/// The stamp of a block that is known to be good.
std::uint32_t stampOf(const std::uint8_t* block);

/// The values of a row of hexadecimal digits of either case, as many as there are bytes. False, and
/// no values, when there is something else among them.
bool readDigits(std::span<const std::uint8_t> digits, std::uint8_t* values);

/// Whether they are hexadecimal digits of either case, all of them.
bool areDigits(std::span<const std::uint8_t> bytes);

/// How many of the bytes in front are.
std::size_t digitCount(std::span<const std::uint8_t> bytes);

}  // namespace recording::text

#endif
