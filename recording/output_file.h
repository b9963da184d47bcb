#ifndef LUMADOT_RECORDING_OUTPUT_FILE_H
#define LUMADOT_RECORDING_OUTPUT_FILE_H

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <span>
#include <string>
#include <vector>

namespace recording {

/// A file that is there whole or not at all: it is written under another name in the same folder,
/// and takes its place only when it is complete. Until then, and when anything fails, the file that
/// was there before stays.
class OutputFile {
public:
    /// Throws Error (CannotWrite), also when `path` is a folder, a device, or write-protected.
    explicit OutputFile(const std::filesystem::path& path);

    /// Takes away what was written, unless `finish` has been called.
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    /// Throws Error (CannotWrite).
    void write(std::span<const std::uint8_t> bytes);

    /// The same for callers that no exception may go through: false once anything has failed, which
    /// `check` and `finish` throw.
    bool put(std::span<const std::uint8_t> bytes) noexcept;
    void check() const;

    /// Completes the file; `takePlace` puts it in its place. Both throw Error (CannotWrite).
    void complete();
    void takePlace();
    void finish() {
        complete();
        takePlace();
    }

private:
    void prepare();
    [[noreturn]] void fail(const std::string& why) const;

    std::filesystem::path path_;
    std::filesystem::path temporary_;
    std::vector<char> buffer_;
    std::filebuf file_;
    int error_ = 0;  ///< of the C library
};

}  // namespace recording

#endif
