// Arguments that the log of the simulated bus leaves out, and a name as the bus never gives one.
// The linker sends these calls through here (--wrap) before they reach the bus.

#include <algorithm>

#include "device/connection.h"
#include "tests/support/device_link.h"

namespace {

/// What the calls were last made with.
struct Arguments {
    libusb_context** initialised;
    libusb_context* listed;
    libusb_device*** list;
    libusb_device** freed;
    int unreference;
} seen;

/// The next name fills the buffer to its last byte, without a terminating zero.
bool fillName = false;

}  // namespace

// NOLINTBEGIN(bugprone-reserved-identifier): the linker gives these names.
extern "C" {
int __real_libusb_init(libusb_context** context);
ssize_t __real_libusb_get_device_list(libusb_context* context, libusb_device*** list);
void __real_libusb_free_device_list(libusb_device** list, int unreference);
int __real_libusb_get_string_descriptor_ascii(libusb_device_handle* handle, std::uint8_t index,
                                              unsigned char* data, int length);

int __wrap_libusb_init(libusb_context** context);
ssize_t __wrap_libusb_get_device_list(libusb_context* context, libusb_device*** list);
void __wrap_libusb_free_device_list(libusb_device** list, int unreference);
int __wrap_libusb_get_string_descriptor_ascii(libusb_device_handle* handle, std::uint8_t index,
                                              unsigned char* data, int length);

int __wrap_libusb_init(libusb_context** context) {
    seen.initialised = context;
    return __real_libusb_init(context);
}

ssize_t __wrap_libusb_get_device_list(libusb_context* context, libusb_device*** list) {
    seen.listed = context;
    seen.list = list;
    return __real_libusb_get_device_list(context, list);
}

void __wrap_libusb_free_device_list(libusb_device** list, int unreference) {
    seen.freed = list;
    seen.unreference = unreference;
    __real_libusb_free_device_list(list, unreference);
}

int __wrap_libusb_get_string_descriptor_ascii(libusb_device_handle* handle, std::uint8_t index,
                                              unsigned char* data, int length) {
    if (!fillName) {
        return __real_libusb_get_string_descriptor_ascii(handle, index, data, length);
    }
    fillName = false;
    std::fill(data, data + length, 'L');
    return length;
}
}
// NOLINTEND(bugprone-reserved-identifier)

namespace {

class LibraryArguments : public support::DeviceLink {
protected:
    LibraryArguments() {
        static libusb_context* someContext;
        seen = {&someContext, reinterpret_cast<libusb_context*>(&seen), nullptr, nullptr, -1};
        bus.plugController();
        usb.setup();
    }
};

TEST_F(LibraryArguments, AreTheDefaultContext) {
    EXPECT_EQ(seen.initialised, nullptr);
    EXPECT_EQ(seen.listed, nullptr);
}

TEST_F(LibraryArguments, ListTheDevicesIntoTheGlobal) { EXPECT_EQ(seen.list, &devs); }

TEST_F(LibraryArguments, FreeThatListAndUnreferenceItsDevices) {
    EXPECT_NE(seen.freed, nullptr);
    EXPECT_EQ(seen.freed, devs);
    EXPECT_EQ(seen.unreference, 1);
}

/// Under the address sanitizer, reading on behind it would be an error, too.
TEST_F(LibraryArguments, OfANameThatFillsItsBufferEndThere) {
    fillName = true;
    EXPECT_EQ(connection::readProduct(MyLibusbDeviceHandle, desc).name, std::string(256, 'L'));
}

}  // namespace
