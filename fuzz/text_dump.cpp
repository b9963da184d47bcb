// Text dumps of any content: read as a user would, and line by line.

#include "fuzz/dump_reader.h"
#include "recording/error.h"
#include "recording/raw_format.h"
#include "recording/text_format.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t FewFrames = 13000;
    const auto bytes = fuzz::unpack(data, size, FewFrames);
    if (recording::RawFormat::isHeader(bytes)) {
        return 0;
    }
    try {
        recording::TextFormat format;
        fuzz::readBothWays(bytes, format);
    } catch (const recording::Error&) {
        return 0;  // No recording.
    }
    return 0;
}
