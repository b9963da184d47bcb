// Raw dumps of any content: read as a user would, and frame by frame.

#include "fuzz/dump_reader.h"
#include "recording/raw_format.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t FewFrames = 2200;
    const auto bytes = fuzz::unpack(data, size, FewFrames);
    if (recording::RawFormat::isHeader(bytes)) {
        recording::RawFormat format(bytes[7]);
        fuzz::readBothWays(bytes, format);
    }
    return 0;
}
