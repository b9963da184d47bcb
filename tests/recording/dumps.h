#ifndef LUMADOT_TESTS_RECORDING_DUMPS_H
#define LUMADOT_TESTS_RECORDING_DUMPS_H

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "recording/recording.h"
#include "tests/device/capture/naive_decoder.h"

/// Dumps for the tests, made without the tool's code.
namespace dumps {

using naive::Bytes;

Bytes bytesOf(const std::string& text);

/// For those outside: the bytes have no namespace of their own in which it would be found.
inline namespace joining {
Bytes operator+(Bytes first, const Bytes& second);
}

/// The plane data of a reply, every bit by chance.
Bytes randomPlanes(std::size_t size, unsigned seed);

/// A frame of 128 x 32 dots, or 192 x 64, all of this digit.
std::string plainText(std::uint32_t stampMs, char digit = '0', bool xl = false);

/// A raw frame whose plane bytes are all this.
Bytes plainRaw(std::uint32_t stampMs, std::uint8_t planes = 3, std::uint8_t byte = 0);

/// "RAW", 00, 01, 128, 32, planes.
Bytes rawHeader(std::uint8_t planes = 3);

/// A recording of bytes in memory, with its index made.
struct Opened {
    explicit Opened(Bytes content);
    Bytes bytes;
    std::unique_ptr<recording::Recording> dump;
    recording::Recording* operator->() const { return dump.get(); }
};

/// "0: reason", with the offset in front.
std::vector<std::string> damagesOf(const recording::Recording& dump);

/// The stamps of all frames, read one by one.
std::vector<std::uint32_t> stampsOf(recording::Recording& dump);

/// A frame's digits as a text dump has them, without line ends.
std::string digitsOf(const recording::Frame& frame);

}  // namespace dumps

#endif
