// Where a device is plugged in, and what the system does with it.

#include <libusb.h>

#include <algorithm>

#include "simulator/call_in_progress.h"

namespace simulator {

namespace {

std::vector<std::uint8_t> portsOf(const CallInProgress& progress) {
    const auto& ports = progress.slot().device.ports;
    if (!ports.empty()) {
        return ports;
    }
    return {static_cast<std::uint8_t>(progress.call.device + 1)};
}

}  // namespace

}  // namespace simulator

using simulator::CallInProgress;

uint8_t libusb_get_bus_number(libusb_device* device) {
    CallInProgress progress("libusb_get_bus_number", device);
    return static_cast<uint8_t>(progress.run([&]() -> int { return progress.slot().device.bus; }));
}

uint8_t libusb_get_device_address(libusb_device* device) {
    CallInProgress progress("libusb_get_device_address", device);
    return static_cast<uint8_t>(progress.run([&]() -> int {
        const auto address = progress.slot().device.address;
        return address != 0 ? address : progress.call.device + 2;
    }));
}

int libusb_get_port_numbers(libusb_device* device, uint8_t* numbers, int room) {
    CallInProgress progress("libusb_get_port_numbers", device);
    progress.call.length = room;
    return progress.run([&]() -> int {
        const auto ports = simulator::portsOf(progress);
        if (room < static_cast<int>(ports.size())) {
            return LIBUSB_ERROR_OVERFLOW;
        }
        std::ranges::copy(ports, numbers);
        return static_cast<int>(ports.size());
    });
}

int libusb_kernel_driver_active(libusb_device_handle* handle, int number) {
    CallInProgress progress("libusb_kernel_driver_active", handle);
    progress.call.endpoint = number;
    return progress.run([&] {
        if (!progress.slot().present) {
            return static_cast<int>(LIBUSB_ERROR_NO_DEVICE);
        }
        return progress.slot().device.kernelDriver ? 1 : 0;
    });
}
