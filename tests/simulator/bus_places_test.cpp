#include <algorithm>
#include <array>

#include "tests/simulator/bus_fixture.h"

namespace {

struct BusPlaces : BusFixture {
    static std::vector<int> portsOf(libusb_device* device) {
        std::array<std::uint8_t, 7> ports{};
        const int count = libusb_get_port_numbers(device, ports.data(), 7);
        return {ports.begin(), ports.begin() + std::max(count, 0)};
    }
};

TEST_F(BusPlaces, DevicesSitSideBySideUnlessSaidOtherwise) {
    bus.plug({});
    bus.plug({});
    const auto found = devices();
    EXPECT_EQ(libusb_get_bus_number(found[0]), 1);
    EXPECT_EQ(libusb_get_bus_number(found[1]), 1);
    EXPECT_EQ(portsOf(found[0]), std::vector<int>({1}));
    EXPECT_EQ(portsOf(found[1]), std::vector<int>({2}));
    EXPECT_EQ(libusb_get_device_address(found[0]), 2);
    EXPECT_EQ(libusb_get_device_address(found[1]), 3);
}

TEST_F(BusPlaces, ADeviceSitsWhereItIsPut) {
    bus.plug({.bus = 3, .ports = {2, 4, 1}, .address = 17});
    auto* const device = devices()[0];
    EXPECT_EQ(libusb_get_bus_number(device), 3);
    EXPECT_EQ(portsOf(device), std::vector<int>({2, 4, 1}));
    EXPECT_EQ(libusb_get_device_address(device), 17);
    std::array<std::uint8_t, 2> tooFew{};
    EXPECT_EQ(libusb_get_port_numbers(device, tooFew.data(), 2), LIBUSB_ERROR_OVERFLOW);
}

TEST_F(BusPlaces, AnInterfaceThatADriverHoldsCannotBeClaimed) {
    bus.plug({.kernelDriver = true});
    bus.plug({});
    auto* const held = open(0);
    auto* const vacant = open(1);
    EXPECT_EQ(libusb_kernel_driver_active(held, 0), 1);
    EXPECT_EQ(libusb_kernel_driver_active(vacant, 0), 0);
    EXPECT_EQ(libusb_claim_interface(held, 0), LIBUSB_ERROR_BUSY);
    EXPECT_EQ(libusb_claim_interface(vacant, 0), 0);
    bus.unplug(0);
    EXPECT_EQ(libusb_kernel_driver_active(held, 0), LIBUSB_ERROR_NO_DEVICE);
}

TEST_F(BusPlaces, SomethingElseHappensWhenTheCallComes) {
    bus.plug({});
    int before = 0;
    bus.inject({.nth = 2, .meanwhile = [&] { before = static_cast<int>(bus.calls().size()); }});
    openAndClaim();
    EXPECT_EQ(before, 1);
    EXPECT_EQ(bus.claimedInterfaces(), 1);
}

}  // namespace
