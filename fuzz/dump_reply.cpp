// Two captured frames of any length and content in any mode, one after the other: text and raw
// block against the naive decoder of the tests. Byte 0 of the input is the mode, bit 0 of byte 1
// the XL controller.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

#include "device/dump_format.h"
#include "fuzz/expect.h"
#include "tests/device/capture/naive_decoder.h"

namespace {

void decode(dump::TextEncoder& encoder, const InputModeInfo& mode, int number, bool xl,
            std::span<const std::uint8_t> reply) {
    const auto planes = reply.subspan(4);
    const naive::Bytes copy(planes.begin(), planes.end());
    const std::uint32_t stamp = reply[0] + 0x100U * reply[1] + 0x10000U * reply[2] +
                                0x1000000U * static_cast<std::uint32_t>(reply[3]);
    EXPECT(dump::timeStamp(reply) == stamp);
    EXPECT(encoder.encode(stamp, planes) == naive::text(number, xl, stamp, copy));
    EXPECT(dump::rawBlock(stamp, mode.capturePlanes, planes) == naive::raw(number, stamp, copy));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t ShortestReply = 5;
    if (size < 2 + ShortestReply) {
        return 0;
    }
    const InputModeInfo& mode = inputMode(data[0]);
    const bool xl = (data[1] & 1U) != 0;
    const std::span<const std::uint8_t> reply(data + 2, size - 2);
    dump::TextEncoder encoder(xl ? dump::XlDots : mode.dots,
                              xl ? dump::XlDisplay : dump::StandardDisplay);
    decode(encoder, mode, data[0], xl, reply);
    // A shorter one must show nothing of the one before.
    decode(encoder, mode, data[0], xl, reply.last(std::max(ShortestReply, reply.size() / 2)));
    return 0;
}
