#ifndef LUMADOT_DEVICE_CONNECTION_H
#define LUMADOT_DEVICE_CONNECTION_H

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "device/variant.h"

struct libusb_device;
struct libusb_device_handle;
struct libusb_device_descriptor;

/// The steps of a connection to the controller. Results are the USB library's: negative is one of
/// its errors.
namespace connection {

bool isController(const libusb_device_descriptor& descriptor);

/// A controller's product string, empty when it cannot be read, and the variant that follows from
/// it.
struct Product {
    int variant;  ///< not positive: the result of the read
    std::string name;
};
Product readProduct(libusb_device_handle* handle, const libusb_device_descriptor& descriptor);

int claim(libusb_device_handle* handle);
/// Releases interface 0, whether it is claimed or not, and closes.
void close(libusb_device_handle* handle);

/// One bulk transfer to the controller, `timeout` in ms; `sent` takes the number of bytes that
/// left.
int send(libusb_device_handle* handle, std::span<const std::uint8_t> bytes, unsigned int timeout,
         int* sent = nullptr);
/// One bulk transfer from the controller; `received` takes the number of bytes that arrived.
int receive(libusb_device_handle* handle, std::span<std::uint8_t> bytes, unsigned int timeout,
            int* received = nullptr);

/// What `open` works on; all of it belongs to the caller and stays as `open` leaves it.
struct Place {
    bool& started;  ///< the library has been initialised at least once
    libusb_device**& list;
    libusb_device_descriptor& descriptor;  ///< of the device that was looked at last
    libusb_device_handle*& handle;
};

/// What came of each step of `open`, as far as it got: null where a step was not taken.
struct Opened {
    int variant = variant::None;  ///< None: no controller, or it could not be claimed
    int started = 0;
    std::optional<int> listed = {};
    std::optional<int> opened = {};
    std::optional<int> product = {};
    std::optional<int> claimed = {};
};

/// Initialises the library's default context once more (a failure matters only as long as it has
/// never succeeded: there is no controller then), enumerates the bus, opens the first
/// controller on it (later ones are never considered), reads its product string and claims
/// interface 0. Kept for compatibility: a handle that the caller has left in its place is used when
/// no controller could be opened, without a handle the list stays allocated, and a controller that
/// cannot be claimed is closed without clearing the handle.
Opened open(Place place);

}  // namespace connection

#endif
