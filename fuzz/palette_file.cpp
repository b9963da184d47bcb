// A palette file of any content: taken over when it starts with 01 and has its 56 bytes.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "fuzz/expect.h"
#include "fuzz/file_in_memory.h"
#include "ui/palette_file.h"

namespace {

constexpr std::array<std::uint8_t, 8> Header = {1, 0, 1, 0, 0, 0, 16, 1};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const file::Stream stream = fuzz::fileInMemory(data, size);
    const file::Head head = file::readHead(stream.get(), palette_file::Size);
    const auto colours = palette_file::decode({head.bytes.get(), head.size});
    EXPECT(head.size == std::min(size, std::size_t{56}));
    EXPECT(colours.has_value() == (size >= 56 && data[0] == 1));
    if (colours) {
        EXPECT(std::equal(colours->begin(), colours->end(), data + 8));
        const auto saved = palette_file::encode(*colours);
        EXPECT(std::equal(Header.begin(), Header.end(), saved.begin()));
        EXPECT(std::equal(saved.begin() + 8, saved.end(), data + 8, data + 56));
    }
    return 0;
}
