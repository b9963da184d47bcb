#ifndef LUMADOT_FUZZ_FILE_IN_MEMORY_H
#define LUMADOT_FUZZ_FILE_IN_MEMORY_H

#include <cstddef>
#include <cstdint>
#include <cstdio>

#include "device/file_stream.h"
#include "fuzz/expect.h"

namespace fuzz {

/// The input as an open file. It is only read, and must live as long as the file.
inline file::Stream fileInMemory(const std::uint8_t* data, std::size_t size) {
    file::Stream stream(fmemopen(const_cast<std::uint8_t*>(data), size, "rb"));
    EXPECT(stream != nullptr);
    return stream;
}

}  // namespace fuzz

#endif
