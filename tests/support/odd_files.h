#ifndef LUMADOT_TESTS_SUPPORT_ODD_FILES_H
#define LUMADOT_TESTS_SUPPORT_ODD_FILES_H

#ifndef _WIN32
#include <sys/fsuid.h>
#include <sys/stat.h>
#endif

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

#ifdef _WIN32

inline void makePipe(const std::filesystem::path& path) {
    throw std::runtime_error("Windows has no pipe at " + path.string());
}

/// Permissions hold for everybody.
struct WithoutPrivileges {
    WithoutPrivileges() {}  // So that it is no unused variable.
};

#else

/// Makes a pipe that nobody writes into: who opens it for reading waits.
inline void makePipe(const std::filesystem::path& path) {
    if (mkfifo(path.c_str(), 0600) != 0) {
        throw std::runtime_error("no pipe at " + path.string());
    }
}

/// While it lives, permissions hold for this thread, even when the tests run as root.
class WithoutPrivileges {
public:
    WithoutPrivileges() {
        if (before_ == 0) {
            setfsuid(Nobody);
        }
    }
    ~WithoutPrivileges() { setfsuid(static_cast<uid_t>(before_)); }
    WithoutPrivileges(const WithoutPrivileges&) = delete;
    WithoutPrivileges& operator=(const WithoutPrivileges&) = delete;

private:
    static constexpr uid_t Nobody = 65534;
    const int before_ = setfsuid(static_cast<uid_t>(-1));  // Tells, and changes nothing.
};

#endif

/// A folder that everybody may look into and nobody but root write to.
inline void closeFolder(const std::filesystem::path& folder) {
    using enum std::filesystem::perms;
    std::filesystem::permissions(
        folder, owner_read | owner_exec | group_read | group_exec | others_read | others_exec);
}

/// How many times this process has the file open; there, an open file would refuse to be moved.
inline int timesOpen(const std::filesystem::path& file) {
#ifdef _WIN32
    std::error_code refused;
    std::filesystem::rename(file, file, refused);
    return refused ? 1 : 0;
#else
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code closedMeanwhile;
        count += std::filesystem::read_symlink(entry, closedMeanwhile) == file ? 1 : 0;
    }
    return count;
#endif
}

}  // namespace support

#endif
