#include "control/bus.h"

#include <array>
#include <utility>

#include "control/findings.h"
#include "device/wire.h"

namespace control {

Bus::Bus() {
    libusb_context* context = nullptr;
    if (const int error = libusb_init(&context); error < 0) {
        throw usbFailure(Step::Start, error);
    }
    context_.reset(context);
    libusb_device** list = nullptr;
    const auto count = libusb_get_device_list(context, &list);
    if (count < 0) {
        throw usbFailure(Step::Search, static_cast<int>(count));
    }
    list_.reset(list);
    for (libusb_device* const* entry = list; *entry != nullptr; ++entry) {
        Found found{*entry, {}};
        if (libusb_get_device_descriptor(found.device, &found.descriptor) == LIBUSB_SUCCESS &&
            connection::isController(found.descriptor)) {
            controllers_.push_back(found);
        }
    }
}

DeviceInfo placeOf(libusb_device* device) {
    constexpr int MostHubs = 7;
    std::array<std::uint8_t, MostHubs> ports{};
    const int count = libusb_get_port_numbers(device, ports.data(), MostHubs);
    DeviceInfo info;
    info.bus = libusb_get_bus_number(device);
    info.address = libusb_get_device_address(device);
    for (int i = 0; i < count; ++i) {
        info.port += (i > 0 ? "." : "") + std::to_string(ports.at(static_cast<std::size_t>(i)));
    }
    return info;
}

OpenDevice::OpenDevice(OpenDevice&& other) noexcept
    : found_(other.found_),
      handle_(std::exchange(other.handle_, nullptr)),
      claimed_(std::exchange(other.claimed_, false)) {}

OpenDevice::~OpenDevice() {
    if (claimed_) {
        connection::close(handle_);
    } else if (handle_ != nullptr) {
        libusb_close(handle_);
    }
}

int OpenDevice::claim() {
    const int result = connection::claim(handle_);
    claimed_ = result >= 0;
    return result;
}

bool OpenDevice::hasKernelDriver() const {
    return libusb_kernel_driver_active(handle_, wire::Interface) == 1;
}

}  // namespace control
