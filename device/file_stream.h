#ifndef LUMADOT_DEVICE_FILE_STREAM_H
#define LUMADOT_DEVICE_FILE_STREAM_H

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>

/// The C library's byte streams, owned. How names are encoded: see native_file.h.
namespace file {

struct Closer {
    void operator()(std::FILE* stream) const { std::fclose(stream); }
};
using Stream = std::unique_ptr<std::FILE, Closer>;

/// Whether reading from `path` or writing to it would wait for another program or for the user, as
/// a pipe or a terminal does.
bool wouldWait(const char* path, const char* mode);

/// Opens `path` as `fopen` does; null when it cannot be opened, or when using it would wait.
Stream open(const char* path, const char* mode);

/// Opens `path` as `fopen` does, whatever it is.
Stream openAny(const char* path, const char* mode);

/// The stream's length in bytes, negative when it cannot be read; the stream is rewound.
std::int64_t length(std::FILE* stream);

/// The first bytes of a file.
struct Head {
    std::unique_ptr<std::uint8_t[]> bytes;
    std::size_t size;
};

/// Reads no more than `limit` bytes, however long the file is.
Head readHead(std::FILE* stream, std::size_t limit);

}  // namespace file

#endif
