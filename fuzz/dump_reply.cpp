// A captured frame of any length and content in any mode: text and raw block against the naive
// decoder of the tests. Byte 0 of the input is the mode, bit 0 of byte 1 the XL controller.

#include <cstdint>
#include <span>

#include "device/dump_format.h"
#include "fuzz/expect.h"
#include "tests/device/capture/naive_decoder.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 6) {
        return 0;
    }
    const int number = data[0];
    const InputModeInfo& mode = inputMode(data[0]);
    const bool xl = (data[1] & 1U) != 0;
    const std::span<const std::uint8_t> reply(data + 2, size - 2);
    const auto planes = reply.subspan(dump::PlanesOffset);
    const naive::Bytes copy(planes.begin(), planes.end());
    const std::uint32_t stamp = dump::timeStamp(reply);

    dump::TextEncoder encoder(xl ? dump::XlDots : mode.dots,
                              xl ? dump::XlDisplay : dump::StandardDisplay);
    EXPECT(encoder.encode(stamp, planes) == naive::text(number, xl, stamp, copy));
    EXPECT(dump::rawBlock(stamp, mode.capturePlanes, planes) == naive::raw(number, stamp, copy));
    return 0;
}
