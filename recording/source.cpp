#include "recording/source.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <ios>
#include <string>
#include <system_error>

#include "platform/native_file.h"
#include "recording/error.h"

namespace recording {

namespace {

Error cannotRead(const std::filesystem::path& path, const std::string& why) {
    return {Failure::CannotRead, nameOf(path) + " cannot be read: " + why};
}

}  // namespace

std::string nameOf(const std::filesystem::path& path) { return native_file::utf8(path); }

FileSource::FileSource(const std::filesystem::path& path) : path_(native_file::reachable(path)) {
    std::error_code error;
    const auto status = std::filesystem::status(path_, error);
    if (!std::filesystem::exists(status)) {
        throw cannotRead(path_, error ? error.message() : "there is no such file");
    }
    // A pipe would be waited for, and a folder can be opened.
    if (!std::filesystem::is_regular_file(status)) {
        throw cannotRead(path_, "it is no file");
    }
    file_.pubsetbuf(nullptr, 0);  // The pieces that are read are large enough.
    errno = 0;
    if (file_.open(path_, std::ios::in | std::ios::binary) == nullptr) {
        throw cannotRead(path_, std::generic_category().message(errno));
    }
}

std::uint64_t FileSource::size() {
    const auto end = file_.pubseekoff(0, std::ios::end, std::ios::in);
    if (end == std::filebuf::pos_type(std::filebuf::off_type(-1))) {
        throw cannotRead(path_, "its length is unknown");
    }
    return static_cast<std::uint64_t>(std::filebuf::off_type(end));
}

std::size_t FileSource::read(std::uint64_t offset, std::span<std::uint8_t> bytes) {
    try {
        file_.pubseekpos(static_cast<std::filebuf::off_type>(offset), std::ios::in);
        const auto held = file_.sgetn(reinterpret_cast<char*>(bytes.data()),
                                      static_cast<std::streamsize>(bytes.size()));
        return static_cast<std::size_t>(std::max(held, std::streamsize{0}));
    } catch (const std::ios_base::failure& failure) {
        throw cannotRead(path_, failure.code().message());
    }
}

std::unique_ptr<Source> FileSource::another() const { return std::make_unique<FileSource>(path_); }

std::size_t MemorySource::read(std::uint64_t offset, std::span<std::uint8_t> bytes) {
    if (offset >= bytes_.size()) {
        return 0;
    }
    const auto from = bytes_.subspan(static_cast<std::size_t>(offset));
    const std::size_t held = std::min(from.size(), bytes.size());
    std::memcpy(bytes.data(), from.data(), held);
    return held;
}

std::unique_ptr<Source> MemorySource::another() const {
    return std::make_unique<MemorySource>(bytes_);
}

}  // namespace recording
