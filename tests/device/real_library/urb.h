#ifndef LUMADOT_TESTS_DEVICE_REAL_LIBRARY_URB_H
#define LUMADOT_TESTS_DEVICE_REAL_LIBRARY_URB_H

#include <linux/usbdevice_fs.h>
#include <umockdev.h>

#include <chrono>
#include <cstdint>
#include <memory>
#include <span>

namespace support {

struct IoctlDataUnref {
    void operator()(UMockdevIoctlData* data) const { umockdev_ioctl_data_unref(data); }
};

/// A copy of a piece of the client's memory. umockdev writes it back when the ioctl that it belongs
/// to completes.
using IoctlData = std::unique_ptr<UMockdevIoctlData, IoctlDataUnref>;

/// The `size` bytes that the pointer at `offset` of `data` points to in the client; null: there is
/// no such memory.
IoctlData follow(UMockdevIoctlData* data, std::size_t offset, std::size_t size);

/// One request that a client has submitted: its usbfs record and its buffer. Both are copies, and
/// reach the client's memory when it reaps the request.
class Urb {
public:
    /// From the argument of the submitting ioctl; false in a bool context when it cannot be read.
    explicit Urb(UMockdevIoctlData* argument);
    explicit operator bool() const { return valid_; }

    std::uint8_t type() const { return record().type; }
    std::uint8_t endpoint() const { return record().endpoint; }
    bool isIn() const { return (endpoint() & 0x80U) != 0; }
    std::span<const std::uint8_t> buffer() const;
    std::chrono::steady_clock::time_point submitted() const { return submitted_; }

    /// Where the record lies in the client: how the client names this request.
    unsigned long clientAddress() const { return record_->client_addr; }

    /// Ends the request: `status` is 0 or a negative errno, `length` what was transferred.
    void finish(int status, std::size_t length);

    /// Stores received bytes at `offset` of the buffer; they fit.
    void store(std::size_t offset, std::span<const std::uint8_t> bytes);

    /// Makes `place`, a pointer of the client's, point to this request, and so hands it back.
    void handBack(UMockdevIoctlData* place) {
        umockdev_ioctl_data_set_ptr(place, 0, record_.get());
    }

private:
    usbdevfs_urb& record() const { return *reinterpret_cast<usbdevfs_urb*>(record_->data); }

    IoctlData record_;
    IoctlData buffer_;  // Null for a request without data.
    bool valid_ = false;
    std::chrono::steady_clock::time_point submitted_ = std::chrono::steady_clock::now();
};

}  // namespace support

#endif
