#ifndef LUMADOT_TESTS_DEVICE_FAULTS_DISK_H
#define LUMADOT_TESTS_DEVICE_FAULTS_DISK_H

#include <cstddef>
#include <filesystem>
#include <string>

#include "tests/support/temporary_folder.h"

namespace faults {

/// A small disk in memory that only this process sees. It takes root to make one; without, `why`
/// says what is missing, and the test is to be skipped.
class Disk {
public:
    static constexpr std::size_t Size = std::size_t{256} << 10;

    Disk();
    ~Disk();
    Disk(const Disk&) = delete;
    Disk& operator=(const Disk&) = delete;

    const std::filesystem::path& path() const { return folder_.path(); }
    const std::string& why() const { return why_; }

    void setReadOnly(bool readOnly);
    /// Takes all the room that is left, until `makeRoom`. Files can still be made, but stay empty.
    void fill();
    void makeRoom();

private:
    support::TemporaryFolder folder_;
    std::string why_;
};

}  // namespace faults

#endif
