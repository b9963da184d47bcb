#include "device/file_stream.h"

#include <algorithm>
#include <filesystem>

namespace file {

bool wouldWait(const char* path, const char* mode) {
    std::error_code ignored;
    const auto kind = std::filesystem::status(path, ignored).type();
    return kind == std::filesystem::file_type::fifo ||
           (kind == std::filesystem::file_type::character && *mode == 'r');
}

Stream open(const char* path, const char* mode) {
    return wouldWait(path, mode) ? nullptr : Stream(std::fopen(path, mode));
}

long length(std::FILE* stream) {
    std::fgetc(stream);  // A folder can be opened, and on some disks it has a length.
    const bool readable = std::ferror(stream) == 0;
    const bool hasEnd = std::fseek(stream, 0, SEEK_END) == 0;
    const long bytes = std::ftell(stream);
    std::rewind(stream);
    return readable && hasEnd ? bytes : -1;
}

Head readHead(std::FILE* stream, std::size_t limit) {
    const auto held = static_cast<std::size_t>(std::max(length(stream), 0L));
    const std::size_t wanted = std::min(held, limit);
    Head head{std::make_unique<std::uint8_t[]>(wanted), 0};
    head.size = std::fread(head.bytes.get(), 1, wanted, stream);
    return head;
}

}  // namespace file
