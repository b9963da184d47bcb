#ifndef LUMADOT_RECORDING_SOURCE_H
#define LUMADOT_RECORDING_SOURCE_H

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <memory>
#include <span>

namespace recording {

/// Bytes that are read in pieces. One thread at a time may use a source.
class Source {
public:
    Source() = default;
    virtual ~Source() = default;
    Source(const Source&) = delete;
    Source& operator=(const Source&) = delete;

    /// How many bytes there are now; a file may grow.
    virtual std::uint64_t size() = 0;

    /// Reads from `offset` on until `bytes` is full or there is nothing more; returns how many it
    /// read. Throws Error (CannotRead).
    virtual std::size_t read(std::uint64_t offset, std::span<std::uint8_t> bytes) = 0;

    /// The same bytes for another thread; null when there is no such thing.
    virtual std::unique_ptr<Source> another() const = 0;
};

/// A file, of any size. It may grow while it is open.
class FileSource : public Source {
public:
    /// Throws Error (CannotRead), also when it is no regular file.
    explicit FileSource(const std::filesystem::path& path);

    std::uint64_t size() override;
    std::size_t read(std::uint64_t offset, std::span<std::uint8_t> bytes) override;
    std::unique_ptr<Source> another() const override;

private:
    std::filesystem::path path_;
    std::filebuf file_;
};

/// Bytes that somebody else keeps.
class MemorySource : public Source {
public:
    explicit MemorySource(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    std::uint64_t size() override { return bytes_.size(); }
    std::size_t read(std::uint64_t offset, std::span<std::uint8_t> bytes) override;
    std::unique_ptr<Source> another() const override;

private:
    std::span<const std::uint8_t> bytes_;
};

/// A file's name for messages: UTF-8.
std::string nameOf(const std::filesystem::path& path);

}  // namespace recording

#endif
