// The libusb stand-in as a client of a running simulator.

// First: on Windows libusb's header brings older sockets.
#include "tests/simulator/server/sockets.h"

#include <gmock/gmock.h>

#include <chrono>

#include "simulator/remote_connection.h"
#include "tests/simulator/bus_fixture.h"
#include "tests/simulator/server/running_server.h"
#include "tests/simulator/server/tcp_client.h"

namespace {

using packets::command;
using packets::dumpRequest;
using simulator::Packet;
using simulator::UsbDevice;
using What = simulator::TransferFault::What;

class JoinedBus : public BusFixture {
protected:
    void join(const RunningServer& server) { ASSERT_TRUE(bus.join(server.place())); }

    int read(libusb_device_handle* handle, int length, unsigned timeout = 10000) {
        buffer.assign(static_cast<std::size_t>(length) + 1, 0xEE);
        transferred = 77;
        return libusb_bulk_transfer(handle, 0x81, buffer.data(), length, &transferred, timeout);
    }
    static int readName(libusb_device_handle* handle, std::string& name, int size = 256) {
        unsigned char text[256] = {};
        const int result = libusb_get_string_descriptor_ascii(handle, 2, text, size);
        name = reinterpret_cast<char*>(text);
        return result;
    }

    std::vector<unsigned char> buffer;
    int transferred = 77;
};

TEST_F(JoinedBus, HasTheSimulatorsDevice) {
    const RunningServer server;
    join(server);
    const auto found = devices();
    ASSERT_EQ(found.size(), 1U);
    libusb_device_descriptor descriptor = {};
    EXPECT_EQ(libusb_get_device_descriptor(found[0], &descriptor), 0);
    EXPECT_EQ(descriptor.idVendor, 0x0314);
    EXPECT_EQ(descriptor.idProduct, 0xE457);
    EXPECT_EQ(descriptor.iProduct, 2);
    EXPECT_EQ(devices(), found);
}

TEST_F(JoinedBus, ReadsTheProductStringOfTheSimulator) {
    const RunningServer server({.board = simulator::Board::Xl});
    join(server);
    libusb_device_handle* handle = open();
    std::string name;
    EXPECT_EQ(readName(handle, name), 10);
    EXPECT_EQ(name, "LUMADOT XL");
    EXPECT_EQ(readName(handle, name, 5), 4);
    EXPECT_EQ(name, "LUMA");
    unsigned char text[8];
    EXPECT_EQ(libusb_get_string_descriptor_ascii(handle, 1, text, 8), LIBUSB_ERROR_PIPE);
    libusb_close(handle);
}

TEST_F(JoinedBus, CarriesTransfersBothWays) {
    RunningServer server({.uniqueId = "3A7"});
    join(server);
    libusb_device_handle* handle = openAndClaim();
    EXPECT_EQ(send(handle, command({0x02, 12}), &transferred), 0);
    EXPECT_EQ(transferred, 2052);
    EXPECT_EQ(last().data, command({0x02, 12}));
    server.withDevice([](UsbDevice& device) { EXPECT_EQ(device.controller().working()[0], 12); });
    send(handle, command({0x11}));
    EXPECT_EQ(read(handle, 100), 0);
    EXPECT_EQ(transferred, 63);
    EXPECT_STREQ(reinterpret_cast<char*>(buffer.data()), "3A7");
    EXPECT_EQ(buffer[63], 0xEE);
    EXPECT_EQ(last().data.size(), 63U);
    EXPECT_EQ(last().function, "libusb_bulk_transfer");
}

TEST_F(JoinedBus, WaitsForFramesAsLongAsItIsTold) {
    const RunningServer server({.frameInterval = 60});
    join(server);
    libusb_device_handle* handle = openAndClaim();
    send(handle, dumpRequest(12));
    EXPECT_EQ(read(handle, 12 * 512 + 5), 0);
    send(handle, dumpRequest(12));
    EXPECT_EQ(read(handle, 12 * 512 + 5, 1), LIBUSB_ERROR_TIMEOUT);
    EXPECT_EQ(transferred, 0);
    EXPECT_EQ(read(handle, 12 * 512 + 5, 0), 0);
    EXPECT_EQ(transferred, 12 * 512 + 5);
}

TEST_F(JoinedBus, TellsHowTransfersEnd) {
    RunningServer server({.uniqueId = "3A7"});
    join(server);
    libusb_device_handle* handle = openAndClaim();
    send(handle, command({0x11}));
    EXPECT_EQ(read(handle, 3), LIBUSB_ERROR_OVERFLOW);
    EXPECT_EQ(transferred, 3);
    EXPECT_EQ(buffer, Packet({'3', 'A', '7', 0xEE}));
    server.withDevice([](UsbDevice& device) { device.inject({0x81, 1, What::Stall, 0}); });
    EXPECT_EQ(read(handle, 63), LIBUSB_ERROR_PIPE);
    EXPECT_EQ(transferred, 0);
    server.withDevice([](UsbDevice& device) { device.inject({0x01, 1, What::Timeout, 0}); });
    const Packet frame = command({0x02, 9});
    EXPECT_EQ(libusb_bulk_transfer(handle, 0x01, const_cast<unsigned char*>(frame.data()), 2052,
                                   &transferred, 1),
              LIBUSB_ERROR_TIMEOUT);
    EXPECT_EQ(transferred, 0);
    server.withDevice([](UsbDevice& device) { EXPECT_EQ(device.controller().working()[0], 0); });
}

TEST_F(JoinedBus, DeviceThatAnotherClientHasIsBusy) {
    RunningServer server;
    join(server);
    TcpClient other(server.port());
    ASSERT_EQ(other.import(), 0);
    libusb_device_handle* handle = open();
    std::string name;
    EXPECT_EQ(readName(handle, name), LIBUSB_ERROR_BUSY);
    EXPECT_EQ(libusb_claim_interface(handle, 0), LIBUSB_ERROR_BUSY);
    EXPECT_EQ(bus.claimedInterfaces(), 0);
    EXPECT_EQ(devices().size(), 1U);
    other.cut();
    EXPECT_TRUE(server.becomes([](UsbDevice& device) { return !device.attached(); }));
    EXPECT_EQ(libusb_claim_interface(handle, 0), 0);
}

TEST_F(JoinedBus, DeviceIsFreeForOthersWhenItsLastHandleIsClosed) {
    RunningServer server;
    join(server);
    libusb_device_handle* first = openAndClaim();
    libusb_device_handle* second = open();
    EXPECT_EQ(TcpClient(server.port()).import(), 2);
    libusb_release_interface(first, 0);
    libusb_close(first);
    EXPECT_EQ(TcpClient(server.port()).import(), 2);
    libusb_close(second);
    EXPECT_TRUE(server.becomes([](UsbDevice& device) { return !device.attached(); }));
    EXPECT_EQ(TcpClient(server.port()).import(), 0);
}

TEST_F(JoinedBus, UnpluggedDeviceHasGone) {
    RunningServer server;
    join(server);
    libusb_device_handle* handle = openAndClaim();
    server.withDevice([](UsbDevice& device) { device.inject({0x81, 1, What::Unplug, 0}); });
    EXPECT_EQ(send(handle, command({0x11})), 0);
    EXPECT_EQ(read(handle, 63), LIBUSB_ERROR_NO_DEVICE);
    EXPECT_EQ(read(handle, 63), LIBUSB_ERROR_NO_DEVICE);
    EXPECT_TRUE(devices().empty());
    libusb_close(handle);
    server.withDevice([](UsbDevice& device) { device.plugIn(); });
    EXPECT_EQ(devices().size(), 1U);
    EXPECT_EQ(send(openAndClaim(), command({0x02, 9})), 0);
}

TEST_F(JoinedBus, SimulatorThatEndsTakesItsDeviceAlongAndBringsItBack) {
    auto server = std::make_unique<RunningServer>();
    const std::uint16_t port = server->port();
    join(*server);
    libusb_device_handle* handle = openAndClaim();
    libusb_device_handle* closed = open();
    server.reset();
    EXPECT_EQ(send(handle, command({0x11})), LIBUSB_ERROR_NO_DEVICE);
    EXPECT_TRUE(devices().empty());
    libusb_close(handle);
    libusb_close(closed);
    const RunningServer again({}, port);
    EXPECT_EQ(send(openAndClaim(), command({0x11})), 0);
}

TEST_F(JoinedBus, SimulatorThatWasNeverThereIsAnEmptyBus) {
    auto server = std::make_unique<RunningServer>();
    join(*server);
    server.reset();
    EXPECT_TRUE(devices().empty());
}

TEST_F(JoinedBus, FrozenSimulatorDoesNotFreezeTheCaller) {
    const sockets::Socket listener = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    ASSERT_EQ(bind(listener, reinterpret_cast<sockaddr*>(&address), size), 0);
    ASSERT_EQ(listen(listener, 5), 0);
    ASSERT_EQ(getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size), 0);
    ASSERT_TRUE(bus.join("127.0.0.1:" + std::to_string(ntohs(address.sin_port))));
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(devices().empty());
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
    sockets::close(listener);
}

TEST_F(JoinedBus, LogAndFaultsOfTheStandInGoOnWorking) {
    RunningServer server({.uniqueId = "3A7"});
    join(server);
    libusb_device_handle* handle = openAndClaim();
    bus.inject({.function = "libusb_bulk_transfer", .result = LIBUSB_ERROR_IO});
    EXPECT_EQ(send(handle, command({0x02, 9})), LIBUSB_ERROR_IO);
    server.withDevice([](UsbDevice& device) { EXPECT_EQ(device.controller().working()[0], 0); });
    bus.inject({.reply = Packet{0x22}, .endpoint = 0x81});
    EXPECT_EQ(read(handle, 63), 0);
    EXPECT_EQ(buffer[0], 0x22);
    bus.inject({.function = "libusb_claim_interface", .unplug = true});
    EXPECT_EQ(libusb_claim_interface(handle, 0), LIBUSB_ERROR_NO_DEVICE);
    EXPECT_EQ(last().result, LIBUSB_ERROR_NO_DEVICE);
}

TEST_F(JoinedBus, DevicesOfTheBusItselfStayBesideIt) {
    const RunningServer server;
    bus.plugController({.uniqueId = "here"});
    join(server);
    EXPECT_EQ(devices().size(), 2U);
    bus.reset();
    EXPECT_TRUE(devices().empty());
}

TEST_F(JoinedBus, FindsTheSimulatorByAName) {
    const RunningServer server;
    ASSERT_TRUE(bus.join("localhost:" + std::to_string(server.port())));
    EXPECT_EQ(devices().size(), 1U);
}

TEST(RemoteAddress, IsAnAddressAndAPort) {
    const auto text = [](const char* given) {
        const auto address = simulator::parseRemoteAddress(given);
        return address ? address->hosts.at(0) + " " + std::to_string(address->port) : "none";
    };
    EXPECT_EQ(text("127.0.0.1:3240"), "127.0.0.1 3240");
    EXPECT_EQ(text("[::1]:65535"), "::1 65535");
    for (const char* wrong :
         {"", ":", "127.0.0.1", "127.0.0.1:", ":3240", "127.0.0.1:0", "127.0.0.1:65536",
          "127.0.0.1:-1", "127.0.0.1:x", "localhost:0", "nobody.invalid:3240", "a host:3240",
          "127.0.0.1:3240 ", "[::1:3240", "[localhost:3240"}) {
        EXPECT_EQ(text(wrong), "none") << wrong;
    }
}

TEST(RemoteAddress, OfANameHasAllItsAddresses) {
    const auto address = simulator::parseRemoteAddress("localhost:1");
    ASSERT_TRUE(address.has_value());
    EXPECT_THAT(address->hosts, testing::Contains("127.0.0.1"));
    EXPECT_EQ(address->port, 1);
}

}  // namespace
