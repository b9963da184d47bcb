#ifndef LUMADOT_TESTS_SUPPORT_DEVICE_LINK_H
#define LUMADOT_TESTS_SUPPORT_DEVICE_LINK_H

#include <gmock/gmock.h>
#include <libusb.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <iterator>

#include "device/interfaceUSB.h"
#include "simulator/bus.h"
#include "tests/support/bus_log.h"
#include "tests/support/byte_text.h"
#include "tests/support/dialogs.h"

namespace support {

using RecordBytes = std::array<std::uint8_t, 23>;

inline RecordBytes bytesOf(const configDescriptor& record) {
    RecordBytes bytes;
    std::memcpy(bytes.data(), &record, bytes.size());
    return bytes;
}

inline configDescriptor recordOf(const RecordBytes& bytes) {
    configDescriptor record;
    std::memcpy(&record, bytes.data(), bytes.size());
    return record;
}

/// A test of the device link: an empty bus, the globals as at the program's start, and no dialog
/// that the test does not announce.
class DeviceLink : public testing::Test {
protected:
    DeviceLink() {
        startLibraryOnce();
        bus.reset();
        devs = nullptr;
        MyLibusbDeviceHandle = nullptr;
        desc = {};
        config =
            recordOf({0, 0, 15, 10, 15, 12, 15, 0, 15, 15, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 30});
        std::fill(std::begin(versionString), std::end(versionString), '\0');
        std::fill(std::begin(UIDString), std::end(UIDString), '\0');
    }

    /// Injects "the next such call returns this".
    void fail(const std::string& function, int result) {
        bus.inject({.function = function, .result = result});
    }
    /// "The next transfer on this endpoint returns this."
    void failTransfer(int endpoint, int result) {
        bus.inject({.function = "libusb_bulk_transfer", .result = result, .endpoint = endpoint});
    }
    /// "The next read brings these bytes."
    void answer(simulator::Packet bytes) {
        bus.inject(
            {.function = "libusb_bulk_transfer", .reply = std::move(bytes), .endpoint = 0x81});
    }

    /// Whatever was opened and claimed has been given back, and the handle is cleared.
    void expectReleased() const {
        EXPECT_EQ(bus.openHandles(), 0);
        EXPECT_EQ(bus.claimedInterfaces(), 0);
        EXPECT_EQ(bus.deviceLists(), 0);
        EXPECT_EQ(MyLibusbDeviceHandle, nullptr);
    }

    simulator::Bus& bus = simulator::Bus::instance();
    Dialogs dialogs;

private:
    /// Whichever test comes first: none of them is about the library's first initialisation.
    void startLibraryOnce() {
        static const int nothing = [this] {
            fail("libusb_get_device_list", LIBUSB_ERROR_OTHER);
            return usb.setup();
        }();
        EXPECT_EQ(nothing, 0);
    }
};

}  // namespace support

#endif
