#include "tests/device/real_library/urb.h"

#include <cstddef>

namespace support {

IoctlData follow(UMockdevIoctlData* data, std::size_t offset, std::size_t size) {
    return IoctlData(umockdev_ioctl_data_resolve(data, offset, size, nullptr));
}

Urb::Urb(UMockdevIoctlData* argument) : record_(follow(argument, 0, sizeof(usbdevfs_urb))) {
    if (!record_ || record().buffer_length < 0) {
        return;
    }
    const auto length = static_cast<std::size_t>(record().buffer_length);
    if (length > 0) {
        buffer_ = follow(record_.get(), offsetof(usbdevfs_urb, buffer), length);
    }
    valid_ = length == 0 || buffer_;
}

std::span<const std::uint8_t> Urb::buffer() const {
    if (!buffer_) {
        return {};
    }
    return {buffer_->data, static_cast<std::size_t>(buffer_->data_len)};
}

void Urb::finish(int status, std::size_t length) {
    record().status = status;
    record().actual_length = static_cast<int>(length);
}

void Urb::store(std::size_t offset, std::span<const std::uint8_t> bytes) {
    if (!bytes.empty()) {
        // Only reads the bytes, whatever its signature says.
        umockdev_ioctl_data_update(buffer_.get(), offset, const_cast<std::uint8_t*>(bytes.data()),
                                   static_cast<int>(bytes.size()));
    }
}

}  // namespace support
