#include "tests/simulator/bus_fixture.h"

using packets::command;
using simulator::Packet;

namespace {

struct BusFaultTest : BusFixture {
    BusFaultTest() {
        controller = bus.plugController();
        handle = openAndClaim();
    }

    int read(int length) {
        std::fill(std::begin(buffer), std::end(buffer), 0xEE);
        return libusb_bulk_transfer(handle, 0x81, buffer, length, &transferred, 1000);
    }

    std::shared_ptr<simulator::Controller> controller;
    libusb_device_handle* handle = nullptr;
    unsigned char buffer[128];
    int transferred = 77;
};

}  // namespace

TEST_F(BusFaultTest, FailedOpenHasNoEffect) {
    bus.inject({.function = "libusb_open", .result = LIBUSB_ERROR_IO});
    libusb_device_handle* opened = handle;
    EXPECT_EQ(libusb_open(devices().at(0), &opened), LIBUSB_ERROR_IO);
    EXPECT_EQ(last().result, LIBUSB_ERROR_IO);
    EXPECT_EQ(opened, handle);
    EXPECT_EQ(bus.openHandles(), 1);
}

TEST_F(BusFaultTest, FailedClaimHasNoEffect) {
    libusb_release_interface(handle, 0);
    bus.inject({.function = "libusb_claim_interface", .result = LIBUSB_ERROR_OTHER});
    EXPECT_EQ(libusb_claim_interface(handle, 0), LIBUSB_ERROR_OTHER);
    EXPECT_EQ(bus.claimedInterfaces(), 0);
    EXPECT_EQ(libusb_claim_interface(handle, 0), 0);
}

TEST_F(BusFaultTest, FailedListGivesNoList) {
    bus.inject({.function = "libusb_get_device_list", .result = LIBUSB_ERROR_NO_MEM});
    libusb_device** list = nullptr;
    EXPECT_EQ(libusb_get_device_list(nullptr, &list), LIBUSB_ERROR_NO_MEM);
    EXPECT_EQ(list, nullptr);
    EXPECT_EQ(bus.deviceLists(), 0);
}

TEST_F(BusFaultTest, ListThatClaimsTooManyDevicesIsFilledUpWithNull) {
    bus.inject({.function = "libusb_get_device_list", .result = 3});
    libusb_device** list = nullptr;
    EXPECT_EQ(libusb_get_device_list(nullptr, &list), 3);
    EXPECT_NE(list[0], nullptr);
    EXPECT_EQ(list[1], nullptr);
    EXPECT_EQ(list[2], nullptr);
    libusb_free_device_list(list, 1);
}

TEST_F(BusFaultTest, FailedFreeLeavesTheList) {
    libusb_device** list = nullptr;
    libusb_get_device_list(nullptr, &list);
    bus.inject({.function = "libusb_free_device_list", .result = LIBUSB_ERROR_OTHER});
    libusb_free_device_list(list, 1);
    EXPECT_EQ(bus.deviceLists(), 1);
    libusb_free_device_list(list, 1);
    EXPECT_EQ(bus.deviceLists(), 0);
}

TEST_F(BusFaultTest, FailedDescriptorReadLeavesTheDescriptor) {
    bus.inject({.function = "libusb_get_device_descriptor", .result = LIBUSB_ERROR_IO});
    libusb_device_descriptor descriptor = {};
    EXPECT_EQ(libusb_get_device_descriptor(devices().at(0), &descriptor), LIBUSB_ERROR_IO);
    EXPECT_EQ(descriptor.idVendor, 0);
}

TEST_F(BusFaultTest, StringReadReturnsTheFaultsResult) {
    for (const int result : {-9, 0, 2}) {
        bus.inject({.function = "libusb_get_string_descriptor_ascii", .result = result});
        buffer[0] = 0xEE;
        EXPECT_EQ(libusb_get_string_descriptor_ascii(handle, 2, buffer, 128), result);
        EXPECT_EQ(buffer[0], result > 0 ? 'L' : 0xEE);
    }
}

TEST_F(BusFaultTest, FailedSendDoesNotReachTheController) {
    bus.inject({.function = "libusb_bulk_transfer", .result = LIBUSB_ERROR_PIPE});
    EXPECT_EQ(send(handle, command({0x02, 9}), &transferred), LIBUSB_ERROR_PIPE);
    EXPECT_EQ(controller->working()[0], 0);
    EXPECT_EQ(transferred, 77);
    EXPECT_TRUE(last().data.empty());
}

TEST_F(BusFaultTest, FailedReadLeavesTheReplyPending) {
    send(handle, command({0x11}));
    bus.inject({.function = "libusb_bulk_transfer", .result = LIBUSB_ERROR_TIMEOUT});
    EXPECT_EQ(read(63), LIBUSB_ERROR_TIMEOUT);
    EXPECT_EQ(buffer[0], 0xEE);
    EXPECT_EQ(read(63), 0);
    EXPECT_EQ(buffer[0], '3');
}

TEST_F(BusFaultTest, ForgedReplyArrivesInPlaceOfTheControllers) {
    send(handle, command({0x11}));
    bus.inject({.reply = Packet{0x56, 0x57}, .endpoint = 0x81});
    EXPECT_EQ(read(63), 0);
    EXPECT_EQ(transferred, 2);
    EXPECT_EQ(Packet(buffer, buffer + 3), Packet({0x56, 0x57, 0xEE}));
    EXPECT_EQ(read(63), LIBUSB_ERROR_TIMEOUT);
}

TEST_F(BusFaultTest, ForgedReplyIsCutToTheLengthAskedFor) {
    bus.inject({.reply = Packet(100, 0x11), .endpoint = 0x81});
    EXPECT_EQ(read(3), 0);
    EXPECT_EQ(transferred, 3);
    EXPECT_EQ(Packet(buffer, buffer + 4), Packet({0x11, 0x11, 0x11, 0xEE}));
}

TEST_F(BusFaultTest, ForgedReplyAndErrorComeTogether) {
    bus.inject({.result = LIBUSB_ERROR_TIMEOUT, .reply = Packet{0x22}, .endpoint = 0x81});
    EXPECT_EQ(read(63), LIBUSB_ERROR_TIMEOUT);
    EXPECT_EQ(transferred, 1);
    EXPECT_EQ(buffer[0], 0x22);
}

TEST_F(BusFaultTest, ForgedReplyNeedsNoController) {
    bus.plug({});
    handle = openAndClaim(1);
    bus.inject({.reply = Packet{0x22}, .endpoint = 0x81});
    EXPECT_EQ(read(63), 0);
    EXPECT_EQ(buffer[0], 0x22);
}

TEST_F(BusFaultTest, ClaimedCountNeedNotBeTrue) {
    bus.inject({.transferred = 5, .endpoint = 0x01});
    EXPECT_EQ(send(handle, command({0x02, 9}), &transferred), 0);
    EXPECT_EQ(transferred, 5);
    EXPECT_EQ(controller->working()[0], 9);
    bus.inject({.result = LIBUSB_ERROR_IO, .transferred = -3, .endpoint = 0x01});
    send(handle, command({0x02, 8}), &transferred);
    EXPECT_EQ(transferred, -3);
    EXPECT_EQ(controller->working()[0], 9);
}

TEST_F(BusFaultTest, DeviceLeavesWithTheChosenCall) {
    bus.inject({.nth = 2, .unplug = true, .endpoint = 0x01});
    EXPECT_EQ(send(handle, command({0x02, 9})), 0);
    EXPECT_EQ(send(handle, command({0x02, 8})), LIBUSB_ERROR_NO_DEVICE);
    EXPECT_EQ(controller->working()[0], 9);
    EXPECT_TRUE(devices().empty());
}

TEST_F(BusFaultTest, UnplugWithoutADeviceDoesNothing) {
    bus.inject({.function = "libusb_init", .unplug = true});
    libusb_init(nullptr);
    EXPECT_EQ(devices().size(), 1U);
}

TEST_F(BusFaultTest, NthCountsMatchingCallsOnly) {
    bus.inject({.function = "libusb_bulk_transfer",
                .nth = 2,
                .result = LIBUSB_ERROR_OTHER,
                .endpoint = 0x81});
    EXPECT_EQ(read(63), LIBUSB_ERROR_TIMEOUT);
    EXPECT_EQ(send(handle, command({0x10})), 0);
    EXPECT_EQ(libusb_claim_interface(handle, 0), 0);
    EXPECT_EQ(read(63), LIBUSB_ERROR_OTHER);
    EXPECT_EQ(read(63), 0);
}

TEST_F(BusFaultTest, EndpointOfAFaultIsNoInterface) {
    bus.inject({.result = LIBUSB_ERROR_OTHER, .endpoint = 0});
    EXPECT_EQ(libusb_claim_interface(handle, 0), 0);
}

TEST_F(BusFaultTest, PermanentFaultStaysUntilCleared) {
    bus.inject({.function = "libusb_claim_interface", .nth = 0, .result = LIBUSB_ERROR_BUSY});
    for (int round = 0; round < 5; ++round) {
        EXPECT_EQ(libusb_claim_interface(handle, 0), LIBUSB_ERROR_BUSY);
    }
    bus.clearFaults();
    EXPECT_EQ(libusb_claim_interface(handle, 0), 0);
}

TEST_F(BusFaultTest, EachFaultCountsForItself) {
    bus.inject({.function = "libusb_claim_interface", .nth = 3, .result = LIBUSB_ERROR_IO});
    bus.inject({.function = "libusb_claim_interface", .nth = 1, .result = LIBUSB_ERROR_BUSY});
    bus.inject({.nth = 3, .result = LIBUSB_ERROR_OTHER});
    EXPECT_EQ(libusb_claim_interface(handle, 0), LIBUSB_ERROR_BUSY);
    EXPECT_EQ(libusb_claim_interface(handle, 0), 0);
    EXPECT_EQ(libusb_claim_interface(handle, 0), LIBUSB_ERROR_IO);
    EXPECT_EQ(libusb_claim_interface(handle, 0), 0);
}

TEST_F(BusFaultTest, StaleHandleTakesTheFaultsResultToo) {
    libusb_close(handle);
    bus.inject({.function = "libusb_claim_interface", .result = 0, .unplug = true});
    EXPECT_EQ(libusb_claim_interface(handle, 0), 0);
    EXPECT_TRUE(last().stale);
    EXPECT_EQ(bus.claimedInterfaces(), 0);
}
