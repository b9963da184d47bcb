#include "device/file_stream.h"

#include <algorithm>
#include <filesystem>

#include "platform/native_file.h"

namespace file {

bool wouldWait(const char* path, const char* mode) {
    const auto kind = native_file::kindOf(path);
    return kind == std::filesystem::file_type::fifo ||
           (kind == std::filesystem::file_type::character && *mode == 'r');
}

Stream open(const char* path, const char* mode) {
    return wouldWait(path, mode) ? nullptr : openAny(path, mode);
}

Stream openAny(const char* path, const char* mode) { return Stream(native_file::open(path, mode)); }

std::int64_t length(std::FILE* stream) {
    std::fgetc(stream);  // A folder can be opened, and on some disks it has a length.
    const bool readable = std::ferror(stream) == 0;
    const std::int64_t bytes = native_file::seekEnd(stream);
    std::rewind(stream);
    return readable ? bytes : -1;
}

Head readHead(std::FILE* stream, std::size_t limit) {
    const auto held = static_cast<std::uint64_t>(std::max<std::int64_t>(length(stream), 0));
    const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(held, limit));
    Head head{std::make_unique<std::uint8_t[]>(wanted), 0};
    head.size = std::fread(head.bytes.get(), 1, wanted, stream);
    return head;
}

}  // namespace file
