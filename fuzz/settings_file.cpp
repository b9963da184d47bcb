// A settings file of any content: 23 bytes are a record, all else is refused.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "device/settings_record.h"
#include "fuzz/expect.h"
#include "fuzz/file_in_memory.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const file::Stream stream = fuzz::fileInMemory(data, size);
    const file::Head head = file::readHead(stream.get(), settings::FileHead);
    const auto record = settings::fromFile({head.bytes.get(), head.size});
    EXPECT(head.size == std::min(size, std::size_t{24}));
    EXPECT(record.has_value() == (size == 23));
    if (record) {
        std::array<std::uint8_t, 23> inMemory{};
        std::memcpy(inMemory.data(), &*record, sizeof *record);
        EXPECT(std::equal(inMemory.begin(), inMemory.end(), data));
        EXPECT(settings::bytesOf(*record) == inMemory);  // What is saved is what was loaded.
    }
    return 0;
}
