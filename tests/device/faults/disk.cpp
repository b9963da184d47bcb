#include "tests/device/faults/disk.h"

#ifndef _WIN32
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>

#include <cerrno>
#include <cstring>
#endif
#include <fstream>

namespace faults {

#ifdef _WIN32

Disk::Disk() : why_("Windows has no disk for one process alone") {}

Disk::~Disk() = default;

void Disk::setReadOnly(bool /*readOnly*/) {}

#else

namespace {

/// From now on this process's mounts are its own. Empty, or the reason why it cannot be done.
std::string leaveSharedMounts() {
    static const std::string why = [] {
        const bool done = unshare(CLONE_NEWNS) == 0 &&
                          mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
        return done ? std::string() : std::string("no mounts of our own: ") + std::strerror(errno);
    }();
    return why;
}

}  // namespace

Disk::Disk() : why_(leaveSharedMounts()) {
    const std::string options = "size=" + std::to_string(Size);
    if (why_.empty() && mount("none", path().c_str(), "tmpfs", 0, options.c_str()) != 0) {
        why_ = std::string("no disk in memory: ") + std::strerror(errno);
    }
}

Disk::~Disk() {
    if (why_.empty()) {
        EXPECT_EQ(umount(path().c_str()), 0) << "a file is still open";
    }
}

void Disk::setReadOnly(bool readOnly) {
    const unsigned long readOnlyFlag = MS_RDONLY;
    const unsigned long flags = MS_REMOUNT | (readOnly ? readOnlyFlag : 0);
    EXPECT_EQ(mount("none", path().c_str(), "tmpfs", flags, nullptr), 0) << std::strerror(errno);
}

#endif

void Disk::fill() {
    const std::string page(4096, 'x');  // The disk gives room away in pages.
    std::ofstream filler(path() / "filler", std::ios::binary);
    while (filler << page << std::flush) {
    }
}

void Disk::makeRoom() { std::filesystem::remove(path() / "filler"); }

}  // namespace faults
