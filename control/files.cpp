#include "control/files.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <random>
#include <system_error>

#include "control/text.h"
#include "device/file_stream.h"
#include "platform/native_file.h"
#include "recording/source.h"

namespace control {

namespace {

namespace fs = std::filesystem;

constexpr const char* CheckName = "Check the name and the permissions, and try again.";

std::string lastError() {
    const int error = errno;
    return error != 0 ? std::generic_category().message(error) : "it is no file";
}

/// Opens what `readableSize` takes.
file::Stream openToRead(const std::string& path, std::size_t most, std::size_t& size) {
    if (file::wouldWait(path.c_str(), "rb")) {
        throw fileFailure(path, "is a pipe or a device", "Copy it into a file, and name that.");
    }
    errno = 0;
    file::Stream stream = file::open(path.c_str(), "rb");
    if (!stream) {
        throw fileFailure(path, "cannot be read: " + lastError(), CheckName);
    }
    errno = 0;
    const std::int64_t length = file::length(stream.get());
    if (length < 0) {
        throw fileFailure(path, "cannot be read: " + lastError(), CheckName);
    }
    size = static_cast<std::size_t>(length);
    if (size > most) {
        throw fileFailure(path,
                          "is too large: " + std::to_string(size) + " bytes, at most " +
                              std::to_string(most) + " fit",
                          "Choose a smaller file.");
    }
    return stream;
}

/// Writes and closes. False: not all of it is there.
bool write(file::Stream stream, std::span<const std::uint8_t> bytes) {
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), stream.get()) == bytes.size() &&
                         std::fflush(stream.get()) == 0;  // Not all systems tell when it is closed.
    return std::fclose(stream.release()) == 0 && written;
}

Failure notWritten(const std::string& path) {
    return fileFailure(path, "cannot be written: " + lastError(),
                       "Check the folder, its permissions and the room on the disk.");
}

/// A name beside the file that nothing has.
std::string nameBeside(const fs::path& file) {
    std::random_device random;
    return recording::nameOf(file) + "." + std::to_string(random()) + ".new";
}

void writeBeside(const std::string& path, const fs::path& file,
                 std::span<const std::uint8_t> bytes) {
    const std::string fresh = nameBeside(file);
    errno = 0;
    file::Stream stream = file::openAny(fresh.c_str(), "wbx");
    if (!stream) {
        throw notWritten(path);
    }
    const fs::path freshFile = native_file::named(fresh.c_str());
    std::error_code error;
    const bool written = write(std::move(stream), bytes);
    if (written) {
        native_file::replace(file, freshFile, error);
    }
    if (!written || error) {
        const Failure failure = notWritten(path);
        fs::remove(freshFile, error);
        throw Failure(failure);
    }
}

}  // namespace

Failure fileFailure(const std::string& path, const std::string& what, const std::string& hint) {
    return {ExitCode::File, "\"" + path + "\" " + what + ".", hint};
}

std::size_t readableSize(const std::string& path, std::size_t most) {
    std::size_t size = 0;
    openToRead(path, most, size);
    return size;
}

std::vector<std::uint8_t> readWhole(const std::string& path, std::size_t most) {
    std::size_t size = 0;
    const file::Stream stream = openToRead(path, most, size);
    std::vector<std::uint8_t> bytes(size);
    if (std::fread(bytes.data(), 1, size, stream.get()) != size) {
        throw fileFailure(path, "cannot be read to its end", "Try again.");
    }
    return bytes;
}

std::vector<std::uint8_t> readHead(const std::string& path, std::size_t limit) {
    std::size_t size = 0;
    const file::Stream stream = openToRead(path, static_cast<std::size_t>(-1), size);
    const file::Head head = file::readHead(stream.get(), limit);
    std::vector<std::uint8_t> bytes(head.size);
    std::copy_n(head.bytes.get(), head.size, bytes.begin());
    return bytes;
}

void writeWhole(const std::string& path, std::span<const std::uint8_t> bytes) {
    const fs::file_status status(native_file::kindOf(path.c_str()));
    if (!fs::exists(status) || fs::is_regular_file(status)) {
        return writeBeside(path, native_file::target(native_file::named(path.c_str())), bytes);
    }
    errno = 0;
    file::Stream stream = file::open(path.c_str(), "wb");
    if (!stream || !write(std::move(stream), bytes)) {
        throw notWritten(path);
    }
}

void requireFolder(const std::string& path) {
    std::error_code error;
    if (!fs::is_directory(native_file::named(path.c_str()), error)) {
        throw fileFailure(path, "is no folder", "Make it first, or name another.");
    }
}

}  // namespace control
