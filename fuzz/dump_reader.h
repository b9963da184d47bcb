#ifndef LUMADOT_FUZZ_DUMP_READER_H
#define LUMADOT_FUZZ_DUMP_READER_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "recording/damage.h"
#include "recording/format.h"
#include "recording/recording.h"

namespace fuzz {

/// The bytes that an input stands for: FE, a count and a byte are 8 x count of that byte, so that a
/// short input can be a whole frame; everything else is itself. At most `most` bytes.
inline std::vector<std::uint8_t> unpack(const std::uint8_t* data, std::size_t size,
                                        std::size_t most) {
    constexpr std::uint8_t Run = 0xFE;
    constexpr std::size_t RunUnit = 8;
    std::vector<std::uint8_t> bytes;
    bytes.reserve(std::min(most, RunUnit * size));
    for (std::size_t i = 0; i < size; ++i) {
        if (data[i] == Run && i + 2 < size) {
            bytes.insert(bytes.end(), RunUnit * data[i + 1], data[i + 2]);
            i += 2;
        } else {
            bytes.push_back(data[i]);
        }
    }
    if (bytes.size() > most) {
        bytes.resize(most);
    }
    return bytes;
}

/// Reads a dump as a user would, and piece by piece without its fast ways; both must find the same.
/// `format` as the file starts. Throws recording::Error when it is no dump.
void readBothWays(const std::vector<std::uint8_t>& bytes, recording::Format& format);

}  // namespace fuzz

#endif
