// The server on real sockets: several clients, and clients that misbehave.

#include "simulator/server/server.h"

#include <gmock/gmock.h>

#include <system_error>

#include "tests/simulator/packets.h"
#include "tests/simulator/server/running_server.h"
#include "tests/simulator/server/tcp_client.h"

namespace {

using simulator::UsbDevice;
using simulator::usbip::Bytes;
using support::byteText;
using testing::ElementsAre;
using testing::IsEmpty;

const auto isFree = [](const UsbDevice& device) { return !device.attached(); };

const std::string Start = "00 00 00 01 00 00 00 05 00 01 00 02 ";
const std::string ReadUniqueId =
    Start + "00 00 00 01 00 00 00 01 00 00 00 00 00 00 00 3F 00 00 00 00 FF FF FF FF 00*12";
const std::string ReadDeviceStatus =
    Start +
    "00 00 00 01 00 00 00 00 00 00 00 00 00 00 00 02 00 00 00 00 FF FF FF FF 00 00 00 00 "
    "80 00 00 00 00 00 02 00";
const std::string DeviceStatus =
    "00 00 00 03 00 00 00 05 00*19 02 00 00 00 00 FF FF FF FF 00*12 01 00";

TEST(Server, ListsTheDeviceAndCloses) {
    RunningServer server;
    const TcpClient client(server.port());
    client.send(ListBytes);
    EXPECT_EQ(client.receive(1000).size(), 12U + 312U + 4U);
    EXPECT_THAT(server.complaints(), IsEmpty());
}

TEST(Server, HasItsPortAlone) {
    const RunningServer server;
    EXPECT_THROW(simulator::Server({}, {.port = server.port()}), std::system_error);
}

TEST(Server, CarriesUrbs) {
    RunningServer server({.uniqueId = "3A7"});
    const TcpClient client(server.port());
    ASSERT_EQ(client.import(), 0);
    client.send(ReadUniqueId);
    client.send(ReadDeviceStatus);
    EXPECT_EQ(byteText(client.receive(50)), byteText(hex(DeviceStatus)));
    client.send(
        "00 00 00 01 00 00 00 06 00 01 00 02 00 00 00 00 00 00 00 01 00 00 00 00 "
        "00 00 08 04 00 00 00 00 FF FF FF FF 00*12 81 C3 E7 FF 11 00*2047");
    EXPECT_EQ(byteText(client.receive(48)),
              "00 00 00 03 00 00 00 06 00*18 08 04 00 00 00 00 FF FF FF FF 00*12");
    EXPECT_EQ(byteText(client.receive(48 + 63)),
              "00 00 00 03 00 00 00 05 00*19 3F 00 00 00 00 FF FF FF FF 00*12 33 41 37 00*60");
}

TEST(Server, TellsTimeToUrbsThatWait) {
    RunningServer server({.uniqueId = "3A7", .restartTime = 50});
    const TcpClient client(server.port());
    ASSERT_EQ(client.import(), 0);
    const std::string write =
        "00 00 00 01 00 00 00 06 00 01 00 02 00 00 00 00 00 00 00 01 00 00 00 00 "
        "00 00 08 04 00 00 00 00 FF FF FF FF 00*12 ";
    client.send(write + "81 C3 E7 FF 00*2048");
    EXPECT_EQ(client.receive(48).size(), 48U);
    client.send(write + "81 C3 E7 FF 02 09 00*2046");
    EXPECT_EQ(client.receive(48).size(), 48U);
    server.withDevice([](UsbDevice& device) { EXPECT_EQ(device.controller().working()[0], 9); });
}

TEST(Server, RefusesASecondClientUntilTheFirstIsGone) {
    RunningServer server;
    TcpClient first(server.port());
    ASSERT_EQ(first.import(), 0);
    EXPECT_EQ(TcpClient(server.port()).import(), 2);
    const TcpClient lister(server.port());
    lister.send(ListBytes);
    EXPECT_EQ(lister.receive(1000).size(), 328U);
    first.cut();
    EXPECT_TRUE(server.becomes(isFree));
    EXPECT_EQ(TcpClient(server.port()).import(), 0);
}

TEST(Server, SurvivesConnectionsThatAreCutAnywhere) {
    RunningServer server;
    const Bytes bytes = hex(ImportBytes + " " + ReadUniqueId + " " + ReadDeviceStatus);
    for (std::size_t length = 0; length < bytes.size(); length += 5) {
        TcpClient client(server.port());
        client.send(Bytes(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(length)));
        client.cut();
        ASSERT_TRUE(server.becomes(isFree));
    }
    EXPECT_EQ(TcpClient(server.port()).import(), 0);
}

TEST(Server, ClosesConnectionsThatDoNotSpeakTheProtocol) {
    RunningServer server;
    for (const char* bytes : {"47 45 54 20 2F 20 48 54 54 50", "01 11 80 09 00 00 00 00"}) {
        const TcpClient client(server.port());
        client.send(bytes);
        EXPECT_TRUE(client.isClosed());
    }
    const TcpClient client(server.port());
    ASSERT_EQ(client.import(), 0);
    client.send(Start + "00 00 00 00 00 00 00 01 00 00 00 00 7F FF FF FF 00*20");
    EXPECT_TRUE(client.isClosed());
    EXPECT_TRUE(server.becomes(isFree));
    EXPECT_THAT(server.complaints(),
                ElementsAre("unknown protocol version 18245", "unknown operation 32777",
                            "transfer too long, bytes 2147483647"));
}

TEST(Server, ClosesClientsThatAskForNothingButNotThoseThatHaveTheDevice) {
    RunningServer server({}, 0, 50);
    const TcpClient attached(server.port());
    ASSERT_EQ(attached.import(), 0);
    for (const char* bytes : {"", "01 11 80"}) {
        const TcpClient client(server.port());
        client.send(bytes);
        EXPECT_TRUE(client.isClosed());
    }
    EXPECT_THAT(server.complaints(),
                ElementsAre("nothing asked for in time", "nothing asked for in time"));
    attached.send(ReadDeviceStatus);
    EXPECT_EQ(attached.receive(50).size(), 50U);
}

/// The server stops reading from a client that does not read; neither loses anything.
TEST(Server, AnswersAFloodWhenTheClientReads) {
    RunningServer server;
    const TcpClient client(server.port());
    ASSERT_EQ(client.import(), 0);
    constexpr std::size_t Count = 200000;
    Bytes flood;
    const Bytes request = hex(ReadDeviceStatus);
    for (std::size_t i = 0; i < Count; ++i) {
        flood.insert(flood.end(), request.begin(), request.end());
    }
    std::size_t sent = 0;
    std::size_t received = 0;
    const Bytes reply = hex(DeviceStatus);
    while (received < Count) {
        // Sends until the server takes no more, and only then reads.
        while (sent < flood.size()) {
            const std::size_t part = client.sendWhatFits(flood, sent);
            if (part == 0) {
                break;
            }
            sent += part;
        }
        const std::size_t whole = sent / request.size();
        for (; received < whole; ++received) {
            ASSERT_EQ(client.receive(reply.size()), reply) << received;
        }
    }
}

TEST(Server, StopsReadingFromAClientThatDoesNotRead) {
    RunningServer server;
    const TcpClient client(server.port());
    ASSERT_EQ(client.import(), 0);
    constexpr std::size_t MoreThanAnySocketHolds = std::size_t{64} << 20U;
    const Bytes request = hex(ReadDeviceStatus);
    Bytes flood;
    while (flood.size() < MoreThanAnySocketHolds) {
        flood.insert(flood.end(), request.begin(), request.end());
    }
    EXPECT_LT(client.sendUntilStuck(flood), flood.size());
}

TEST(Server, LetsClientsWaitWhenTheyAreTooMany) {
    RunningServer server({}, 0, 200);
    std::vector<TcpClient> silent;
    for (int i = 0; i < 100; ++i) {
        silent.emplace_back(server.port());
    }
    const TcpClient client(server.port());
    client.send(ListBytes);
    EXPECT_EQ(client.receive(328).size(), 328U);
}

TEST(Server, ClosesTheConnectionWhenTheDeviceIsUnplugged) {
    RunningServer server;
    const TcpClient client(server.port());
    ASSERT_EQ(client.import(), 0);
    client.send(ReadUniqueId);
    server.withDevice([](UsbDevice& device) { device.unplug(); });
    EXPECT_TRUE(client.isClosed());
    EXPECT_THAT(server.complaints(), ElementsAre("unplugged"));
    EXPECT_EQ(TcpClient(server.port()).import(), 4);
    server.withDevice([](UsbDevice& device) { device.plugIn(); });
    EXPECT_EQ(TcpClient(server.port()).import(), 0);
}

TEST(Server, EndsWithClientsAttached) {
    auto server = std::make_unique<RunningServer>();
    const TcpClient client(server->port());
    ASSERT_EQ(client.import(), 0);
    client.send(ReadUniqueId);
    server.reset();
    EXPECT_TRUE(client.isClosed());
}

TEST(Server, SaysWhenThePortIsTaken) {
    const RunningServer server;
    EXPECT_THROW(RunningServer({}, server.port()), std::system_error);
}

}  // namespace
