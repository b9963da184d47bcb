// Connections: who gets the device, and how they end.

#include "simulator/server/session.h"

#include <gmock/gmock.h>

#include "tests/simulator/server/client.h"

namespace {

using simulator::Session;
using simulator::usbip::Bytes;
using support::byteText;

const std::string List = "01 11 80 05 00 00 00 00";
const std::string Import = "01 11 80 03 00 00 00 00 31 2D 31 00*29";
// "/sys/devices/platform/lumadot-simulator/usb1/1-1" and "1-1", bus 1, device 2, high speed,
// 0314:e457, 1.00, class 0, configuration 1 of 1, one interface.
const std::string Device =
    "2F 73 79 73 2F 64 65 76 69 63 65 73 2F 70 6C 61 74 66 6F 72 6D 2F 6C 75 6D 61 64 6F 74 2D "
    "73 69 6D 75 6C 61 74 6F 72 2F 75 73 62 31 2F 31 2D 31 00*208 31 2D 31 00*29 00 00 00 01 "
    "00 00 00 02 00 00 00 03 03 14 E4 57 01 00 00 00 00 01 01 01";

class SessionTest : public testing::Test {
protected:
    static simulator::ControllerOptions board() { return {}; }

    std::string answer(Session& session, const std::string& bytes) {
        session.receive(hex(bytes));
        return byteText(session.takeOutput());
    }

    simulator::UsbDevice device{board()};
};

TEST_F(SessionTest, ListShowsTheVersionOfADeviceThatDescribesItselfToWindows) {
    device.replace({.windowsDescriptors = true});
    Session session(device);
    EXPECT_THAT(answer(session, List), testing::HasSubstr("03 14 E4 57 01 01 00 00 00 01 01 01"));
}

TEST_F(SessionTest, ListShowsTheDeviceAndEndsTheSession) {
    Session session(device);
    EXPECT_EQ(answer(session, List),
              byteText(hex("01 11 00 05 00 00 00 00 00 00 00 01 " + Device + " FF 00 00 00")));
    EXPECT_TRUE(session.over());
    EXPECT_EQ(session.problem(), "");
    EXPECT_EQ(answer(session, List), "");
}

TEST_F(SessionTest, ListIsEmptyWithoutTheDevice) {
    device.unplug();
    Session session(device);
    EXPECT_EQ(answer(session, List), "01 11 00 05 00*8");
}

TEST_F(SessionTest, ImportGivesTheDeviceToOneClientAtATime) {
    auto first = std::make_unique<Session>(device);
    Session second(device);
    Session third(device);
    EXPECT_EQ(answer(*first, Import), byteText(hex("01 11 00 03 00 00 00 00 " + Device)));
    EXPECT_TRUE(first->attached());
    EXPECT_EQ(answer(second, Import), "01 11 00 03 00 00 00 02");
    EXPECT_TRUE(second.over());
    EXPECT_EQ(second.problem(), "import of the device that another client has");
    first.reset();
    answer(third, Import);
    EXPECT_TRUE(third.attached());
}

TEST_F(SessionTest, ListIsThereWhileAClientHasTheDevice) {
    Session first(device);
    answer(first, Import);
    Session second(device);
    EXPECT_EQ(answer(second, List).substr(0, 35), "01 11 00 05 00 00 00 00 00 00 00 01");
}

TEST_F(SessionTest, ImportOfAnotherDeviceIsRefused) {
    Session session(device);
    EXPECT_EQ(answer(session, "01 11 80 03 00 00 00 00 31 2D 32 00*29"), "01 11 00 03 00 00 00 04");
    EXPECT_TRUE(session.over());
    device.unplug();
    Session late(device);
    EXPECT_EQ(answer(late, Import), "01 11 00 03 00 00 00 04");
}

TEST_F(SessionTest, WrongBytesEndTheSessionAndFreeTheDevice) {
    Session session(device);
    answer(session, Import);
    EXPECT_EQ(answer(session, "00 00 00 09 00*44"), "");
    EXPECT_TRUE(session.over());
    EXPECT_EQ(session.problem(), "request for another device, 0");
    EXPECT_FALSE(device.attached());
}

TEST_F(SessionTest, UnpluggedDeviceEndsTheSessionThatHasIt) {
    Session session(device);
    answer(session, Import);
    device.unplug();
    device.plugIn();
    session.update();
    EXPECT_TRUE(session.over());
    Session next(device);
    answer(next, Import);
    EXPECT_TRUE(next.attached());
}

class FloodTest : public ClientTest {};

TEST_F(FloodTest, OfReadsEndsTheSession) {
    for (std::uint32_t sequence = 1; sequence <= 1024; ++sequence) {
        session->receive(read(sequence, 63));
    }
    EXPECT_FALSE(session->over());
    session->receive(read(1025, 63));
    EXPECT_TRUE(session->over());
    EXPECT_EQ(session->problem(), "too much waits already");
    EXPECT_EQ(device.waiting(), 0U);
}

TEST_F(FloodTest, OfBytesForARestartingBoardEndsTheSession) {
    ask(write(1, packets::command({0x00})));
    const simulator::Packet bytes(16U << 20U);
    session->receive(write(2, bytes));
    session->receive(write(3, bytes));
    EXPECT_FALSE(session->over());
    session->receive(write(4, {0}));
    EXPECT_TRUE(session->over());
}

}  // namespace
