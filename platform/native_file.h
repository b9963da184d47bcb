#ifndef LUMADOT_PLATFORM_NATIVE_FILE_H
#define LUMADOT_PLATFORM_NATIVE_FILE_H

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>
#include <system_error>

/// What systems do each in a way of their own with files. A file's name is in the encoding of the C
/// library, on Windows in UTF-8.
namespace native_file {

/// The file of this name, as every function of the system takes it: on Windows most take no more
/// than 259 characters with all folders, unless the name is written in a special way. Empty when
/// the name is not in the encoding.
std::filesystem::path named(const char* path);
std::filesystem::path reachable(const std::filesystem::path& path);

/// The name in UTF-8; what is no text in it, as Windows allows, is U+FFFD there.
std::string utf8(const std::filesystem::path& path);

/// The file behind the links that `path` may lead over, reachable; it need not exist. On Windows it
/// is the last link itself: the standard library sees none there.
std::filesystem::path target(const std::filesystem::path& path);

/// Moves `fresh`, which is beside it, to the place of `file`, with that one's permissions.
void replace(const std::filesystem::path& file, const std::filesystem::path& fresh,
             std::error_code& error);

/// Opens as `fopen` does; "x" in the mode, too: only if there is none.
std::FILE* open(const char* path, const char* mode);

/// What is there, as far as it matters whether reading or writing it would wait.
std::filesystem::file_type kindOf(const char* path);

/// To the stream's end; returns where that is in bytes, or -1. Lengths of 2 GiB and more, too.
std::int64_t seekEnd(std::FILE* stream);

}  // namespace native_file

#endif
