#include "tests/simulator/bus_fixture.h"

using packets::command;
using packets::dumpRequest;
using simulator::Packet;

namespace {

struct BusTransferTest : BusFixture {
    int read(libusb_device_handle* handle, int length, unsigned int timeout = 1000) {
        std::fill(std::begin(buffer), std::end(buffer), 0xEE);
        transferred = 77;
        return libusb_bulk_transfer(handle, 0x81, buffer, length, &transferred, timeout);
    }

    unsigned char buffer[4096];
    int transferred = 77;
};

}  // namespace

TEST_F(BusTransferTest, FrameReachesTheControllerWhole) {
    const auto controller = bus.plugController();
    libusb_device_handle* handle = openAndClaim();
    EXPECT_EQ(send(handle, command({0x02, 12}), &transferred), 0);
    EXPECT_EQ(transferred, 2052);
    EXPECT_EQ(controller->working()[0], 12);
    EXPECT_EQ(last().function, "libusb_bulk_transfer");
    EXPECT_EQ(last().device, 0);
    EXPECT_EQ(last().endpoint, 0x01);
    EXPECT_EQ(last().length, 2052);
    EXPECT_EQ(last().timeout, 1000);
    EXPECT_TRUE(last().countAsked);
    EXPECT_EQ(last().data, command({0x02, 12}));
    send(handle, command({0x02, 3}));
    EXPECT_FALSE(last().countAsked);
}

TEST_F(BusTransferTest, ReplyArrivesOnce) {
    bus.plugController();
    libusb_device_handle* handle = openAndClaim();
    send(handle, command({0x11}));
    EXPECT_EQ(read(handle, 64), 0);
    EXPECT_EQ(transferred, 63);
    EXPECT_STREQ(reinterpret_cast<char*>(buffer), "3A7F00C21D5E9B64");
    EXPECT_EQ(buffer[63], 0xEE);
    EXPECT_EQ(last().data.size(), 63U);
    EXPECT_EQ(read(handle, 64), LIBUSB_ERROR_TIMEOUT);
    EXPECT_EQ(transferred, 0);
}

TEST_F(BusTransferTest, ReplyLongerThanAskedForOverflowsButStaysInTheBuffer) {
    bus.plugController();
    libusb_device_handle* handle = openAndClaim();
    send(handle, command({0x11}));
    EXPECT_EQ(read(handle, 3), LIBUSB_ERROR_OVERFLOW);
    EXPECT_EQ(transferred, 3);
    EXPECT_EQ(Packet(buffer, buffer + 4), Packet({'3', 'A', '7', 0xEE}));
}

TEST_F(BusTransferTest, ControllersDoNotMixTheirReplies) {
    bus.plugController({.uniqueId = "first"});
    bus.plugController({.uniqueId = "second"});
    libusb_device_handle* first = openAndClaim(0);
    libusb_device_handle* second = openAndClaim(1);
    send(first, command({0x11}));
    send(second, command({0x11}));
    read(first, 63);
    EXPECT_STREQ(reinterpret_cast<char*>(buffer), "first");
    read(second, 63);
    EXPECT_STREQ(reinterpret_cast<char*>(buffer), "second");
}

TEST_F(BusTransferTest, UnclaimedInterfaceAndWrongParametersFail) {
    const auto controller = bus.plugController();
    libusb_device_handle* handle = open();
    EXPECT_EQ(send(handle, command({0x02, 12}), &transferred), LIBUSB_ERROR_IO);
    openAndClaim();
    EXPECT_EQ(send(handle, command({0x02, 12}), &transferred), LIBUSB_ERROR_IO);
    EXPECT_EQ(controller->working()[0], 0);
    EXPECT_EQ(transferred, 77);
    EXPECT_EQ(libusb_bulk_transfer(handle, 0x81, nullptr, 1, nullptr, 5),
              LIBUSB_ERROR_INVALID_PARAM);
    EXPECT_EQ(libusb_bulk_transfer(handle, 0x81, buffer, -1, nullptr, 5),
              LIBUSB_ERROR_INVALID_PARAM);
}

TEST_F(BusTransferTest, UnknownEndpointFails) {
    bus.plugController();
    libusb_device_handle* handle = openAndClaim();
    EXPECT_EQ(libusb_bulk_transfer(handle, 0x02, buffer, 8, nullptr, 5), LIBUSB_ERROR_IO);
}

TEST_F(BusTransferTest, TransferOfNothingIsAnIgnoredPacket) {
    const auto controller = bus.plugController();
    EXPECT_EQ(libusb_bulk_transfer(openAndClaim(), 0x01, nullptr, 0, nullptr, 5), 0);
    EXPECT_EQ(controller->ignoredPackets(), 1);
}

TEST_F(BusTransferTest, DeviceWithoutControllerTimesOutAndMovesTheClock) {
    bus.plug({});
    libusb_device_handle* handle = openAndClaim();
    const std::uint64_t before = bus.now();
    EXPECT_EQ(send(handle, command({0x00}), &transferred), LIBUSB_ERROR_TIMEOUT);
    EXPECT_EQ(transferred, 0);
    EXPECT_TRUE(last().data.empty());
    EXPECT_GE(bus.now(), before + 1000);
    EXPECT_EQ(read(handle, 63, 10000), LIBUSB_ERROR_TIMEOUT);
    EXPECT_GE(bus.now(), before + 11000);
    EXPECT_EQ(read(handle, 63, 0), LIBUSB_ERROR_TIMEOUT);
}

TEST_F(BusTransferTest, RestartingControllerTimesOutUntilItIsBack) {
    const auto controller = bus.plugController({.restartTime = 1500});
    libusb_device_handle* handle = openAndClaim();
    EXPECT_EQ(send(handle, command({0x00})), 0);
    EXPECT_EQ(send(handle, command({0x02, 4})), LIBUSB_ERROR_TIMEOUT);
    EXPECT_EQ(read(handle, 63), LIBUSB_ERROR_TIMEOUT);
    EXPECT_EQ(send(handle, command({0x02, 5})), 0);
    EXPECT_EQ(controller->working()[0], 5);
}

TEST_F(BusTransferTest, FrameIsWaitedForWithinTheTimeout) {
    bus.plugController({.frameInterval = 500});
    libusb_device_handle* handle = openAndClaim();
    send(handle, dumpRequest(0));
    EXPECT_EQ(read(handle, 5), 0);
    const std::uint64_t before = bus.now();
    send(handle, dumpRequest(0));
    EXPECT_EQ(read(handle, 5, 600), 0);
    EXPECT_EQ(transferred, 5);
    EXPECT_GT(bus.now(), before);
}

TEST_F(BusTransferTest, FrameThatComesTooLateStaysPending) {
    bus.plugController({.frameInterval = 60000});
    libusb_device_handle* handle = openAndClaim();
    send(handle, dumpRequest(0));
    read(handle, 5);
    send(handle, dumpRequest(0));
    EXPECT_EQ(read(handle, 5, 10000), LIBUSB_ERROR_TIMEOUT);
    EXPECT_EQ(transferred, 0);
    EXPECT_EQ(read(handle, 5, 55000), 0);
    EXPECT_EQ(transferred, 5);
}

TEST_F(BusTransferTest, EndlessTimeoutWaitsForTheFrame) {
    bus.plugController({.frameInterval = 60000});
    libusb_device_handle* handle = openAndClaim();
    send(handle, dumpRequest(0));
    read(handle, 5);
    send(handle, dumpRequest(0));
    EXPECT_EQ(read(handle, 5, 0), 0);
}

TEST_F(BusTransferTest, RealTimeIsRealAndSimulatedTimeIsNot) {
    bus.plug({});
    libusb_device_handle* handle = openAndClaim();
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(read(handle, 5, 3600000), LIBUSB_ERROR_TIMEOUT);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::minutes(1));
    bus.setRealTime(true);
    const auto realStart = std::chrono::steady_clock::now();
    EXPECT_EQ(read(handle, 5, 20), LIBUSB_ERROR_TIMEOUT);
    EXPECT_GE(std::chrono::steady_clock::now() - realStart, std::chrono::milliseconds(20));
}
