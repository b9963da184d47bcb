// A settings reply of any content: what must change changes, and nothing else.

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

#include "device/settings_record.h"
#include "fuzz/expect.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    settings::Reply reply{};
    std::copy_n(data, std::min(size, std::size_t{63}), reply.begin());

    configDescriptor record;
    std::memset(static_cast<void*>(&record), 0xAA, sizeof record);
    std::array<char, 9> version{"before"};
    settings::applyReply(reply, record, version.data());
    const auto bytes = settings::bytesOf(record);

    std::array<std::uint8_t, 23> expected{};
    std::array<char, 9> expectedVersion{"before"};
    if (reply[4] == 0x56) {
        std::copy_n(reply.begin() + 10, 23, expected.begin());
        std::copy_n(reply.begin() + 4, 6, expectedVersion.begin());
    } else {
        expected.fill(0xAA);
        expected[0] = reply[0];
        expected[22] = reply[1];
        expected[21] = reply[2];
        expected[1] = reply[3];
    }
    EXPECT(bytes == expected);
    EXPECT(version == expectedVersion);
    return 0;
}
