#include "device/connection.h"

#include <libusb.h>

#include <array>

#include "device/wire.h"

namespace connection {

namespace {

int transfer(libusb_device_handle* handle, std::uint8_t endpoint, unsigned char* bytes,
             std::size_t length, int* transferred, unsigned int timeout) {
    return libusb_bulk_transfer(handle, endpoint, bytes, static_cast<int>(length), transferred,
                                timeout);
}

/// Room for the longest product string and its terminating zero.
using Name = std::array<char, 257>;

/// The library's result; a name has been read if it is positive.
int readName(libusb_device_handle* handle, const libusb_device_descriptor& descriptor, Name& name) {
    return libusb_get_string_descriptor_ascii(handle, descriptor.iProduct,
                                              reinterpret_cast<unsigned char*>(name.data()),
                                              static_cast<int>(name.size()) - 1);
}

int variantOf(int result, const Name& name) {
    return result > 0 ? variant::named(name.data()) : result;
}

/// Opens the first controller in the order of enumeration.
void openFirst(Place& place, Opened& opened) {
    place.list = nullptr;  // A failed enumeration leaves it alone, and the old list is gone.
    opened.listed = static_cast<std::int32_t>(libusb_get_device_list(nullptr, &place.list));
    for (std::int32_t i = 0; i < *opened.listed; ++i) {
        libusb_get_device_descriptor(place.list[i], &place.descriptor);
        if (isController(place.descriptor)) {
            opened.opened = libusb_open(place.list[i], &place.handle);
            return;
        }
    }
}

}  // namespace

bool isController(const libusb_device_descriptor& descriptor) {
    return descriptor.idVendor == wire::VendorId && descriptor.idProduct == wire::ProductId;
}

Product readProduct(libusb_device_handle* handle, const libusb_device_descriptor& descriptor) {
    Name name{};
    const int result = readName(handle, descriptor, name);
    return {variantOf(result, name), result > 0 ? name.data() : ""};
}

int claim(libusb_device_handle* handle) { return libusb_claim_interface(handle, wire::Interface); }

void close(libusb_device_handle* handle) {
    libusb_release_interface(handle, wire::Interface);
    libusb_close(handle);
}

int send(libusb_device_handle* handle, std::span<const std::uint8_t> bytes, unsigned int timeout,
         int* sent) {
    // The library takes one type for both directions; what it sends it does not change.
    return transfer(handle, wire::EndpointOut, const_cast<unsigned char*>(bytes.data()),
                    bytes.size(), sent, timeout);
}

int receive(libusb_device_handle* handle, std::span<std::uint8_t> bytes, unsigned int timeout,
            int* received) {
    return transfer(handle, wire::EndpointIn, bytes.data(), bytes.size(), received, timeout);
}

Opened open(Place place) {
    Opened opened;
    opened.started = libusb_init(nullptr);  // Each time, and never undone: the library counts.
    place.started = place.started || opened.started == LIBUSB_SUCCESS;
    if (!place.started) {
        return opened;  // There is no default context to enumerate with.
    }
    openFirst(place, opened);
    if (place.handle == nullptr) {
        return opened;
    }
    Name name{};  // No string: nothing here takes memory, so nothing is left open for want of it.
    const int found = variantOf(readName(place.handle, place.descriptor, name), name);
    opened.product = found;
    libusb_free_device_list(place.list, 1);
    opened.claimed = claim(place.handle);
    if (*opened.claimed < 0) {
        libusb_close(place.handle);
        return opened;
    }
    opened.variant = found;
    return opened;
}

}  // namespace connection
