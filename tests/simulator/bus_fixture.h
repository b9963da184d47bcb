#ifndef LUMADOT_TESTS_SIMULATOR_BUS_FIXTURE_H
#define LUMADOT_TESTS_SIMULATOR_BUS_FIXTURE_H

#include <gtest/gtest.h>
#include <libusb.h>

#include "simulator/bus.h"
#include "tests/simulator/packets.h"

/// Starts from an empty bus and talks to it through the library calls.
struct BusFixture : testing::Test {
    BusFixture() {
        bus.reset();
        EXPECT_EQ(libusb_init(nullptr), 0);
        bus.clearCalls();
    }
    ~BusFixture() override {
        libusb_exit(nullptr);
        bus.reset();
    }

    /// The devices on the bus; the list itself is freed.
    static std::vector<libusb_device*> devices() {
        libusb_device** list = nullptr;
        const ssize_t count = libusb_get_device_list(nullptr, &list);
        std::vector<libusb_device*> found(list, list + count);
        libusb_free_device_list(list, 1);
        return found;
    }

    static libusb_device_handle* open(std::size_t index = 0) {
        libusb_device_handle* handle = nullptr;
        EXPECT_EQ(libusb_open(devices().at(index), &handle), 0);
        return handle;
    }

    static libusb_device_handle* openAndClaim(std::size_t index = 0) {
        libusb_device_handle* handle = open(index);
        EXPECT_EQ(libusb_claim_interface(handle, 0), 0);
        return handle;
    }

    static int send(libusb_device_handle* handle, simulator::Packet packet,
                    int* transferred = nullptr) {
        return libusb_bulk_transfer(handle, 0x01, packet.data(), static_cast<int>(packet.size()),
                                    transferred, 1000);
    }

    /// The last call in the log.
    const simulator::Call& last() const { return bus.calls().back(); }

    simulator::Bus& bus = simulator::Bus::instance();
};

#endif
