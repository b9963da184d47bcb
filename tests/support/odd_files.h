#ifndef LUMADOT_TESTS_SUPPORT_ODD_FILES_H
#define LUMADOT_TESTS_SUPPORT_ODD_FILES_H

#include <sys/stat.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <system_error>
#include <vector>

namespace support {

/// `size` bytes without a zero, in which each block of 512 differs from the ones around it.
inline std::vector<std::uint8_t> pattern(std::size_t size) {
    std::vector<std::uint8_t> bytes(size);
    for (std::size_t i = 0; i < size; ++i) {
        bytes[i] = static_cast<std::uint8_t>(1 + i % 251);
    }
    return bytes;
}

/// Makes a file of this length that takes no room on the disk and reads as zeros.
inline void makeSparseFile(const std::filesystem::path& path, std::uintmax_t size) {
    std::ofstream(path).close();
    std::filesystem::resize_file(path, size);
}

/// Makes a pipe that nobody writes into: who opens it for reading waits.
inline void makePipe(const std::filesystem::path& path) {
    if (mkfifo(path.c_str(), 0600) != 0) {
        throw std::runtime_error("no pipe at " + path.string());
    }
}

/// How many times this process has the file open.
inline int timesOpen(const std::filesystem::path& file) {
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code closedMeanwhile;
        count += std::filesystem::read_symlink(entry, closedMeanwhile) == file ? 1 : 0;
    }
    return count;
}

}  // namespace support

#endif
