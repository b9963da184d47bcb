#ifndef LUMADOT_TESTS_DEVICE_REAL_LIBRARY_REAL_LIBRARY_H
#define LUMADOT_TESTS_DEVICE_REAL_LIBRARY_REAL_LIBRARY_H

#include <gtest/gtest.h>
#include <libusb.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <vector>

#include "device/interfaceUSB.h"
#include "tests/device/real_library/mocked_usbfs.h"
#include "tests/support/dialogs.h"

// USBClass on the real libusb. The calls one by one, and every fault of theirs, are tested on the
// simulated bus; here it matters that the real library takes them, and what reaches the board.
namespace support {

using Bytes = std::vector<std::uint8_t>;

/// Differs from the factory settings in every byte.
inline constexpr std::array<std::uint8_t, 23> OtherRecord = {
    1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 0, 200};

inline configDescriptor record(const std::array<std::uint8_t, 23>& bytes) {
    configDescriptor result;
    std::memcpy(&result, bytes.data(), bytes.size());
    return result;
}

inline Bytes bytesOf(const configDescriptor& settings) {
    Bytes bytes(sizeof settings);
    std::memcpy(bytes.data(), &settings, sizeof settings);
    return bytes;
}

/// A packet of 2052 bytes that starts with `head` and is zero behind it.
inline Bytes frame(std::initializer_list<std::uint8_t> head) {
    Bytes bytes(head);
    bytes.resize(2052);
    return bytes;
}

/// A program that uses the same controller, with a libusb context of its own.
class OtherProgram {
public:
    OtherProgram() {
        libusb_init(&context_);
        handle_ = libusb_open_device_with_vid_pid(context_, 0x0314, 0xE457);
    }
    ~OtherProgram() {
        libusb_close(handle_);
        libusb_exit(context_);
    }
    OtherProgram(const OtherProgram&) = delete;
    OtherProgram& operator=(const OtherProgram&) = delete;

    bool hasOpened() const { return handle_ != nullptr; }
    int claim() { return libusb_claim_interface(handle_, 0); }
    int release() { return libusb_release_interface(handle_, 0); }

private:
    libusb_context* context_ = nullptr;
    libusb_device_handle* handle_ = nullptr;
};

/// The result of a claim that is given back at once.
inline int claimByAnotherProgram() {
    OtherProgram other;
    if (!other.hasOpened()) {
        return LIBUSB_ERROR_NO_DEVICE;
    }
    const int result = other.claim();
    other.release();
    return result;
}

/// A mocked bus without a controller. A message box that a test has not announced fails it.
class RealLibrary : public testing::Test {
protected:
    void SetUp() override {
        if (!MockedUsbfs::unavailable().empty()) {
            GTEST_SKIP() << MockedUsbfs::unavailable();
        }
    }
    // A failed operation leaves its closed handle behind; the next test must not go on with it.
    void TearDown() override { MyLibusbDeviceHandle = nullptr; }

    USBClass usb_;
    Dialogs dialogs_;
};

}  // namespace support

#endif
