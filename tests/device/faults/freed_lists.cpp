// Every device list that the tool frees passes through here (--wrap) first.

#include <gtest/gtest.h>
#include <libusb.h>

extern "C" {
void __real_libusb_free_device_list(libusb_device** list, int unreference);

void __wrap_libusb_free_device_list(libusb_device** list, int unreference);

void __wrap_libusb_free_device_list(libusb_device** list, int unreference) {
    EXPECT_EQ(unreference, 1) << "the devices of the list would never be freed";
    __real_libusb_free_device_list(list, unreference);
}
}
