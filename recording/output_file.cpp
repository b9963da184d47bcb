#include "recording/output_file.h"

#include <cerrno>
#include <random>
#include <system_error>

#include "platform/native_file.h"
#include "recording/error.h"
#include "recording/source.h"

namespace recording {

namespace {

constexpr std::size_t BufferBytes = std::size_t{64} << 10;

/// A name beside the file that no other has.
std::filesystem::path unusedName(const std::filesystem::path& file) {
    std::random_device random;
    std::error_code ignored;
    std::filesystem::path name = file;
    do {
        name.replace_filename(".lumadot-" + std::to_string(random()) + ".part");
    } while (std::filesystem::exists(name, ignored));
    return name;
}

/// What went wrong in the C library; it does not always say.
std::string reasonOf(int error) {
    return error == 0 ? "unknown error" : std::generic_category().message(error);
}

}  // namespace

OutputFile::OutputFile(const std::filesystem::path& path)
    : path_(native_file::target(path)),  // A link stays, the file behind it is replaced.
      buffer_(BufferBytes) {
    std::error_code ignored;
    prepare();
    temporary_ = unusedName(path_);
    file_.pubsetbuf(buffer_.data(), static_cast<std::streamsize>(buffer_.size()));
    errno = 0;
    if (file_.open(temporary_, std::ios::out | std::ios::binary) == nullptr) {
        fail(reasonOf(errno));
    }
    const auto before = std::filesystem::status(path_, ignored);
    if (std::filesystem::exists(before)) {
        std::filesystem::permissions(temporary_, before.permissions(), ignored);
    }
}

/// Refuses to take the place of what should not be replaced.
void OutputFile::prepare() {
    std::error_code ignored;
    const auto before = std::filesystem::status(path_, ignored);
    if (!std::filesystem::exists(before)) {
        return;
    }
    if (!std::filesystem::is_regular_file(before)) {
        fail("there is something else of that name");
    }
    std::filebuf writable;
    errno = 0;
    if (writable.open(path_, std::ios::in | std::ios::out | std::ios::binary) == nullptr) {
        fail(reasonOf(errno));
    }
}

OutputFile::~OutputFile() {
    if (!temporary_.empty()) {
        file_.close();
        std::error_code ignored;
        std::filesystem::remove(temporary_, ignored);
    }
}

void OutputFile::write(std::span<const std::uint8_t> bytes) {
    put(bytes);
    check();
}

bool OutputFile::put(std::span<const std::uint8_t> bytes) noexcept {
    if (error_ != 0) {
        return false;
    }
    errno = 0;
    const auto size = static_cast<std::streamsize>(bytes.size());
    if (file_.sputn(reinterpret_cast<const char*>(bytes.data()), size) != size) {
        error_ = errno == 0 ? EIO : errno;
    }
    return error_ == 0;
}

void OutputFile::check() const {
    if (error_ != 0) {
        fail(reasonOf(error_));
    }
}

void OutputFile::complete() {
    check();
    errno = 0;
    if (file_.close() == nullptr) {
        error_ = errno == 0 ? EIO : errno;
    }
    std::vector<char>().swap(buffer_);  // Many files may wait for their place at the same time.
    check();
}

void OutputFile::takePlace() {
    std::error_code error;
    std::filesystem::rename(temporary_, path_, error);
    if (error) {
        fail(error.message());
    }
    temporary_.clear();
}

void OutputFile::fail(const std::string& why) const {
    throw Error(Failure::CannotWrite, nameOf(path_) + " cannot be written: " + why);
}

}  // namespace recording
