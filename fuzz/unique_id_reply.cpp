// A reply with the unique id, of any content, with a count of bytes that may not be true: the id is
// what arrived before the first zero byte. The count is the input's first four bytes.

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "device/unique_id.h"
#include "fuzz/expect.h"

namespace {

constexpr std::size_t ReplyLength = 63;
constexpr std::size_t TextSize = 64;

/// Most counts shall be about as large as a reply.
int countIn(const std::uint8_t* data) {
    std::int32_t count = 0;
    std::memcpy(&count, data, sizeof count);
    return count % 2 == 0 ? count : count % 80;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t Count = 4;
    if (size < Count) {
        return 0;
    }
    const int received = countIn(data);
    std::array<std::uint8_t, ReplyLength> reply{};
    for (std::size_t i = 0; i < reply.size() && Count + i < size; ++i) {
        reply[i] = data[Count + i];
    }
    std::array<char, TextSize> uid{};
    uid.fill('b');
    unique_id::applyReply(reply, received, uid.data());

    std::array<char, TextSize> expected{};
    for (int i = 0; i < received && i < 63 && reply[static_cast<std::size_t>(i)] != 0; ++i) {
        expected[static_cast<std::size_t>(i)] =
            static_cast<char>(reply[static_cast<std::size_t>(i)]);
    }
    EXPECT(uid == expected);
    return 0;
}
