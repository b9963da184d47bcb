#ifndef LUMADOT_CONTROL_BUS_H
#define LUMADOT_CONTROL_BUS_H

#include <libusb.h>

#include <memory>
#include <vector>

#include "control/channel.h"
#include "device/connection.h"

namespace control {

/// The USB library with a context of its own, and the controllers that are on the bus now. Gives
/// both back.
class Bus {
public:
    struct Found {
        libusb_device* device;
        libusb_device_descriptor descriptor;
    };

    /// Throws Failure when the library or the enumeration fails.
    Bus();

    /// In the order of enumeration; the window takes the first.
    const std::vector<Found>& controllers() const { return controllers_; }

private:
    struct Exit {
        void operator()(libusb_context* context) const { libusb_exit(context); }
    };
    struct FreeList {
        void operator()(libusb_device** list) const { libusb_free_device_list(list, 1); }
    };

    std::unique_ptr<libusb_context, Exit> context_;
    std::unique_ptr<libusb_device*, FreeList> list_;
    std::vector<Found> controllers_;
};

/// Bus, port and address; nothing is opened.
DeviceInfo placeOf(libusb_device* device);

/// One controller, step by step; gives back what it has opened and claimed. Results are the USB
/// library's, as in device/connection.h.
class OpenDevice {
public:
    explicit OpenDevice(const Bus::Found& found) : found_(&found) {}
    ~OpenDevice();
    OpenDevice(OpenDevice&& other) noexcept;
    OpenDevice(const OpenDevice&) = delete;
    OpenDevice& operator=(const OpenDevice&) = delete;
    OpenDevice& operator=(OpenDevice&&) = delete;

    int open() { return libusb_open(found_->device, &handle_); }
    // From here on it has to be open.
    connection::Product readProduct() const {
        return connection::readProduct(handle_, found_->descriptor);
    }
    int claim();
    /// Whether a driver of the system holds the interface.
    bool hasKernelDriver() const;

    libusb_device_handle* handle() const { return handle_; }

private:
    const Bus::Found* found_;
    libusb_device_handle* handle_ = nullptr;
    bool claimed_ = false;
};

}  // namespace control

#endif
