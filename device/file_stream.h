#ifndef LUMADOT_DEVICE_FILE_STREAM_H
#define LUMADOT_DEVICE_FILE_STREAM_H

#include <cstdio>
#include <filesystem>
#include <memory>

/// The C library's byte streams, owned.
namespace file {

struct Closer {
    void operator()(std::FILE* stream) const { std::fclose(stream); }
};
using Stream = std::unique_ptr<std::FILE, Closer>;

/// Opens `path` as `fopen` does; null when it cannot be opened.
inline Stream open(const char* path, const char* mode) {
    std::error_code ignored;
    const auto kind = std::filesystem::status(path, ignored).type();
    // A pipe or a terminal would keep the window waiting for what comes out of it.
    if (kind == std::filesystem::file_type::fifo ||
        (kind == std::filesystem::file_type::character && *mode == 'r')) {
        return nullptr;
    }
    return Stream(std::fopen(path, mode));
}

/// The stream's length in bytes, negative when it cannot be read; the stream is rewound.
inline long length(std::FILE* stream) {
    std::fgetc(stream);  // A folder can be opened, and on some disks it has a length.
    const bool readable = std::ferror(stream) == 0;
    const bool hasEnd = std::fseek(stream, 0, SEEK_END) == 0;
    const long bytes = std::ftell(stream);
    std::rewind(stream);
    return readable && hasEnd ? bytes : -1;
}

}  // namespace file

#endif
