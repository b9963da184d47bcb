// The bulk endpoints, URB by URB.

#include <gmock/gmock.h>

#include "tests/simulator/server/client.h"

namespace {

using packets::command;
using packets::dumpRequest;
using simulator::Packet;
using testing::ElementsAre;
using testing::IsEmpty;

class BulkTest : public ClientTest {
protected:
    void inject(std::uint8_t endpoint, simulator::TransferFault::What what, int nth = 1,
                std::size_t bytes = 0) {
        device.inject({endpoint, nth, what, bytes});
    }
    using What = simulator::TransferFault::What;
};

/// A frame that switches to mode 9, in pieces.
std::vector<Packet> pieces(const std::vector<std::size_t>& sizes) {
    const Packet frame = command({0x02, 9});
    std::vector<Packet> result;
    std::size_t at = 0;
    for (const std::size_t size : sizes) {
        const auto from = frame.begin() + static_cast<std::ptrdiff_t>(at);
        result.emplace_back(from, from + static_cast<std::ptrdiff_t>(size));
        at += size;
    }
    EXPECT_EQ(at, 2052U);
    return result;
}

// To the board

TEST_F(BulkTest, FrameInOneUrbReachesTheBoard) {
    EXPECT_THAT(ask(write(5, command({0x02, 9}))), ElementsAre("5: 0, 2052"));
    EXPECT_EQ(device.controller().working()[0], 9);
    EXPECT_THAT(transfers, ElementsAre(" 1 2052"));
}

class SplitFrame : public BulkTest, public testing::WithParamInterface<std::vector<std::size_t>> {};

TEST_P(SplitFrame, ReachesTheBoardWhole) {
    std::uint32_t sequence = 1;
    for (const Packet& piece : pieces(GetParam())) {
        EXPECT_EQ(device.controller().working()[0], 0);
        EXPECT_THAT(ask(write(sequence, piece)), testing::SizeIs(1));
        ++sequence;
    }
    EXPECT_EQ(device.controller().working()[0], 9);
    EXPECT_EQ(device.controller().ignoredPackets(), 0);
    EXPECT_THAT(transfers, ElementsAre(" 1 2052"));
}

INSTANTIATE_TEST_SUITE_P(
    Sizes, SplitFrame,
    testing::Values(std::vector<std::size_t>{512, 512, 512, 512, 4},
                    std::vector<std::size_t>{1024, 1028}, std::vector<std::size_t>{2048, 4},
                    std::vector<std::size_t>{1536, 0, 516}, std::vector<std::size_t>{100, 1952},
                    std::vector<std::size_t>{1, 1, 1, 2049}, std::vector<std::size_t>(2052, 1)));

TEST_F(BulkTest, FrameThatBreaksOffIsDroppedForTheNextOne) {
    Packet start = command({0x02, 9});
    start.resize(600);
    ask(write(1, start));
    ask(write(2, command({0x02, 4})));
    EXPECT_EQ(device.controller().working()[0], 4);
    EXPECT_EQ(device.controller().ignoredPackets(), 1);
    ask(write(3, start));
    ask(write(4, dumpRequest(0)));
    EXPECT_THAT(ask(read(5, 5)), testing::SizeIs(1));
    EXPECT_THAT(transfers, ElementsAre(" 1 600", " 1 2052", " 1 600", " 1 64", " 129 5"));
}

TEST_F(BulkTest, UnknownPacketsEndWithAShortOneOrAnEmptyOne) {
    constexpr std::uint32_t ZeroPacket = 0x40;
    ask(write(1, Packet(512, 0xAA)));
    EXPECT_THAT(transfers, IsEmpty());
    ask(write(2, Packet(10, 0xAA)));
    ask(write(3, Packet(1024, 0xBB), ZeroPacket));
    ask(write(4, {}));
    EXPECT_THAT(transfers, ElementsAre(" 1 522", " 1 1024", " 1 0"));
    EXPECT_EQ(device.controller().ignoredPackets(), 3);
    ask(write(5, command({0x02, 9})));
    EXPECT_EQ(device.controller().working()[0], 9);
}

TEST_F(BulkTest, EndlessPacketFillsNoMemory) {
    for (std::uint32_t sequence = 1; sequence <= 100; ++sequence) {
        ask(write(sequence, Packet(4096, 0xAA)));
    }
    ask(write(101, {1}));
    EXPECT_THAT(transfers, ElementsAre(" 1 65536"));
}

TEST_F(BulkTest, FramesWaitWhileTheBoardRestarts) {
    ask(write(1, command({0x00})));
    EXPECT_THAT(ask(write(2, command({0x02, 9}))), IsEmpty());
    EXPECT_THAT(ask(read(3, 63)), IsEmpty());
    EXPECT_EQ(device.nextChange(), 1000U);
    *clock += 400;
    session->update();
    EXPECT_THAT(replies(), IsEmpty());
    EXPECT_EQ(device.nextChange(), 600U);
    *clock += 600;
    session->update();
    EXPECT_THAT(replies(), ElementsAre("2: 0, 2052"));
    EXPECT_EQ(device.controller().working()[0], 9);
    EXPECT_EQ(device.nextChange(), std::nullopt);
}

// From the board

TEST_F(BulkTest, ReplyCompletesTheReadThatWaitsForIt) {
    EXPECT_THAT(ask(read(4, 63)), IsEmpty());
    EXPECT_THAT(ask(write(5, command({0x11}))),
                ElementsAre("5: 0, 2052", "4: 0, 63: 33 41 37 00*60"));
}

TEST_F(BulkTest, ReplyWaitsForTheReadThatCompletes) {
    ask(write(4, command({0x11})));
    EXPECT_THAT(ask(read(5, 4096)), ElementsAre("5: 0, 63: 33 41 37 00*60"));
    EXPECT_THAT(ask(read(6, 4096)), IsEmpty());
}

TEST_F(BulkTest, ReadsAreServedInTheOrderOfTheirComing) {
    ask(read(1, 63));
    ask(read(2, 64));
    EXPECT_THAT(ask(write(3, command({0x11}))),
                ElementsAre("3: 0, 2052", "1: 0, 63: 33 41 37 00*60"));
    EXPECT_THAT(ask(write(4, command({0x11}))),
                ElementsAre("4: 0, 2052", "2: 0, 63: 33 41 37 00*60"));
}

TEST_F(BulkTest, LongReplyFillsReadsOfFullPackets) {
    ask(write(1, dumpRequest(2)));
    const Lines first = ask(read(2, 512));
    ASSERT_EQ(first.size(), 1U);
    EXPECT_TRUE(first[0].starts_with("2: 0, 512: E8 03 00 00 "));
    EXPECT_THAT(transfers, ElementsAre(" 1 64"));
    EXPECT_THAT(ask(read(3, 1024)), ElementsAre(testing::StartsWith("3: 0, 517: ")));
    EXPECT_THAT(transfers, ElementsAre(" 1 64", " 129 1029"));
}

TEST_F(BulkTest, MoreThanAskedForWithinAPacketIsAnOverflow) {
    ask(write(1, command({0x11})));
    EXPECT_THAT(ask(read(2, 3)), ElementsAre("2: -75, 3: 33 41 37"));
    EXPECT_THAT(ask(read(3, 63)), IsEmpty());  // The reply is lost.
    EXPECT_THAT(transfers, ElementsAre(" 1 2052", "overflow 129 3"));
    ask(unlink(4, 3));
    ask(write(5, dumpRequest(2)));
    EXPECT_THAT(ask(read(6, 600)), ElementsAre(testing::StartsWith("6: -75, 600: ")));
    ask(write(7, command({0x11})));
    EXPECT_THAT(ask(read(8, 0)), ElementsAre("8: -75, 0"));
}

TEST_F(BulkTest, FullLastPacketIsFollowedByAnEmptyOne) {
    inject(0x81, What::Short, 0, 1024);
    ask(write(1, dumpRequest(2)));
    EXPECT_THAT(ask(read(2, 2048)), ElementsAre(testing::StartsWith("2: 0, 1024: ")));
    ask(write(3, dumpRequest(2)));
    EXPECT_THAT(ask(read(4, 1024)), ElementsAre(testing::StartsWith("4: 0, 1024: ")));
    EXPECT_THAT(ask(read(5, 1024)), ElementsAre("5: 0, 0"));
}

TEST_F(BulkTest, ShortReplyIsAnErrorWhenTheClientSaysSo) {
    constexpr std::uint32_t ShortIsError = 0x01;
    ask(write(1, command({0x11})));
    EXPECT_THAT(ask(read(2, 64, ShortIsError)), ElementsAre("2: -121, 63: 33 41 37 00*60"));
    ask(write(3, command({0x11})));
    EXPECT_THAT(ask(read(4, 63, ShortIsError)), ElementsAre("4: 0, 63: 33 41 37 00*60"));
}

TEST_F(BulkTest, NewerReplyDropsWhatIsLeftOfTheOlderOne) {
    ask(write(1, dumpRequest(2)));
    ask(read(2, 512));
    ask(write(3, command({0x02, 9})));
    ask(write(4, command({0x11})));
    EXPECT_THAT(ask(read(5, 512)), ElementsAre("5: 0, 63: 33 41 37 00*60"));
    EXPECT_THAT(transfers,
                ElementsAre(" 1 64", " 1 2052", " 1 2052", "replaced 129 512", " 129 63"));
    ask(write(6, dumpRequest(2)));
    ask(read(7, 512));
    ask(write(8, command({0x00})));
    EXPECT_THAT(ask(read(9, 512)), IsEmpty());
}

TEST_F(BulkTest, CapturedFrameComesWhenItIsTime) {
    device.controller().setFrameInterval(16);
    ask(write(1, dumpRequest(0)));
    EXPECT_THAT(ask(read(2, 5)), ElementsAre("2: 0, 5: E8 03 00 00 00"));
    ask(write(3, dumpRequest(0)));
    EXPECT_THAT(ask(read(4, 5)), IsEmpty());
    EXPECT_EQ(device.nextChange(), 16U);
    *clock += 16;
    session->update();
    EXPECT_THAT(replies(), ElementsAre("4: 0, 5: F8 03 00 00 00"));
}

TEST_F(BulkTest, WithNothingToWaitForTimeChangesNothing) {
    EXPECT_EQ(device.nextChange(), std::nullopt);
    ask(read(1, 63));
    EXPECT_EQ(device.nextChange(), std::nullopt);
}

TEST_F(BulkTest, SlowBoardTakesItsTimeForEachUrb) {
    device.slowDown(50);
    EXPECT_THAT(ask(write(1, command({0x11}))), IsEmpty());
    EXPECT_THAT(ask(read(2, 63)), IsEmpty());
    EXPECT_EQ(device.nextChange(), 50U);
    *clock += 50;
    session->update();
    EXPECT_THAT(replies(), ElementsAre("1: 0, 2052", "2: 0, 63: 33 41 37 00*60"));
}

// Other endpoints

TEST_F(BulkTest, EndpointsThatAreNotThereDoNotAnswer) {
    simulator::usbip::Submit urb = {.sequence = 1,
                                    .device = 0x00010002,
                                    .direction = simulator::usbip::Direction::In,
                                    .endpoint = 2,
                                    .length = 8};
    EXPECT_THAT(ask(encode(urb)), ElementsAre("1: -71, 0"));
}

// Unlinking

TEST_F(BulkTest, UnlinkedReadIsAnsweredOnceAndItsReplyStays) {
    ask(read(1, 63));
    EXPECT_THAT(ask(unlink(2, 1)), ElementsAre("2: unlinked"));
    EXPECT_THAT(ask(unlink(3, 1)), ElementsAre("3: 0"));
    EXPECT_THAT(ask(write(4, command({0x11}))), ElementsAre("4: 0, 2052"));
    EXPECT_THAT(ask(read(5, 63)), ElementsAre("5: 0, 63: 33 41 37 00*60"));
    EXPECT_THAT(transfers, ElementsAre("unlinked 129 0", " 1 2052", " 129 63"));
}

TEST_F(BulkTest, UnlinkingWhatHasCompletedOrNeverWasDoesNothing) {
    ask(write(1, command({0x11})));
    EXPECT_THAT(ask(unlink(2, 1)), ElementsAre("2: 0"));
    EXPECT_THAT(ask(unlink(3, 77)), ElementsAre("3: 0"));
    EXPECT_THAT(ask(read(4, 63)), ElementsAre("4: 0, 63: 33 41 37 00*60"));
    EXPECT_THAT(ask(unlink(5, 4)), ElementsAre("5: 0"));
}

TEST_F(BulkTest, ReadBehindAnUnlinkedOneIsServed) {
    ask(read(1, 63));
    ask(read(2, 63));
    ask(read(3, 63));
    EXPECT_THAT(ask(unlink(4, 2)), ElementsAre("4: unlinked"));
    EXPECT_THAT(ask(unlink(5, 1)), ElementsAre("5: unlinked"));
    EXPECT_THAT(ask(write(6, command({0x11}))),
                ElementsAre("6: 0, 2052", "3: 0, 63: 33 41 37 00*60"));
}

TEST_F(BulkTest, UnlinkedWriteNeverReachesTheBoard) {
    ask(write(1, command({0x00})));
    ask(write(2, command({0x02, 9})));
    EXPECT_THAT(ask(unlink(3, 2)), ElementsAre("3: unlinked"));
    *clock += 1000;
    session->update();
    EXPECT_THAT(replies(), IsEmpty());
    EXPECT_EQ(device.controller().working()[0], 0);
}

// Faults

TEST_F(BulkTest, StallHaltsTheEndpointUntilItIsCleared) {
    inject(0x01, What::Stall, 2);
    EXPECT_THAT(ask(write(1, command({0x02, 9}))), ElementsAre("1: 0, 2052"));
    EXPECT_THAT(ask(write(2, command({0x02, 4}))), ElementsAre("2: -32, 0"));
    EXPECT_THAT(ask(write(3, command({0x02, 4}))), ElementsAre("3: -32, 0"));
    EXPECT_THAT(ask(control(4, "02 01 00 00 01 00 00 00")), ElementsAre("4: 0, 0"));
    EXPECT_EQ(device.controller().working()[0], 9);
    EXPECT_THAT(ask(write(5, command({0x02, 5}))), ElementsAre("5: 0, 2052"));
    EXPECT_EQ(device.controller().working()[0], 5);
    EXPECT_THAT(transfers, ElementsAre(" 1 2052", "stall 1 0", "stall 1 0", " 1 2052"));
}

TEST_F(BulkTest, StallStallsEveryReadThatWaits) {
    inject(0x81, What::Stall, 2);
    ask(write(1, command({0x11})));
    ask(read(2, 63));
    EXPECT_THAT(ask(read(3, 63)), ElementsAre("3: -32, 0"));
    EXPECT_THAT(ask(read(4, 63)), ElementsAre("4: -32, 0"));
}

TEST_F(BulkTest, TransferThatTimesOutIsNeverAnsweredAndTheNextOneIs) {
    inject(0x81, What::Timeout);
    inject(0x01, What::Timeout, 2);
    ask(write(1, command({0x11})));
    EXPECT_THAT(ask(read(2, 63)), IsEmpty());
    EXPECT_THAT(ask(write(3, command({0x02, 9}))), IsEmpty());
    EXPECT_EQ(device.nextChange(), std::nullopt);
    EXPECT_THAT(ask(unlink(4, 2)), ElementsAre("4: unlinked"));
    EXPECT_THAT(ask(unlink(5, 3)), ElementsAre("5: unlinked"));
    EXPECT_EQ(device.controller().working()[0], 0);
    EXPECT_THAT(ask(read(6, 63)), ElementsAre("6: 0, 63: 33 41 37 00*60"));
    EXPECT_THAT(ask(write(7, command({0x02, 9}))), ElementsAre("7: 0, 2052"));
}

TEST_F(BulkTest, ShortTransferMovesThatManyBytes) {
    inject(0x01, What::Short, 1, 100);
    inject(0x81, What::Short, 1, 2);
    EXPECT_THAT(ask(write(1, command({0x02, 9}))), ElementsAre("1: 0, 100"));
    EXPECT_EQ(device.controller().working()[0], 0);
    EXPECT_THAT(ask(write(2, command({0x11}))), ElementsAre("2: 0, 2052"));
    EXPECT_THAT(ask(read(3, 63)), ElementsAre("3: 0, 2: 33 41"));
    EXPECT_THAT(transfers, ElementsAre(" 1 100", " 1 2052", " 129 2"));
}

TEST_F(BulkTest, FaultOfEveryTransferStays) {
    inject(0x81, What::Short, 0, 1);
    for (std::uint32_t round = 1; round <= 3; ++round) {
        ask(write(10 * round, command({0x11})));
        EXPECT_THAT(ask(read(10 * round + 1, 63)), ElementsAre(testing::EndsWith(": 0, 1: 33")));
    }
    device.clearFaults();
    ask(write(1, command({0x11})));
    EXPECT_THAT(ask(read(2, 63)), ElementsAre("2: 0, 63: 33 41 37 00*60"));
}

TEST_F(BulkTest, UnpluggingEndsTheSessionWithoutAnAnswer) {
    inject(0x81, What::Unplug, 2);
    ask(write(1, command({0x11})));
    ask(read(2, 63));
    EXPECT_THAT(ask(read(3, 63)), IsEmpty());
    EXPECT_TRUE(session->over());
    EXPECT_EQ(session->problem(), "unplugged");
    EXPECT_FALSE(device.pluggedIn());
    EXPECT_THAT(transfers, ElementsAre(" 1 2052", " 129 63", "unplugged 129 0"));
    device.plugIn();
    attach();
    EXPECT_THAT(ask(write(4, command({0x02, 9}))), ElementsAre("4: 0, 2052"));
}

TEST_F(BulkTest, NextClientGetsNothingOfWhatCompletedWhenItWasUnplugged) {
    inject(0x81, What::Unplug, 2);
    ask(read(1, 63));
    ask(read(2, 63));
    EXPECT_THAT(ask(write(3, command({0x11}))), IsEmpty());
    EXPECT_EQ(session->problem(), "unplugged");
    device.plugIn();
    attach();
    EXPECT_THAT(ask(control(4, "80 08 00 00 00 00 01 00")), ElementsAre("4: 0, 1: 01"));
}

TEST_F(BulkTest, NextClientFindsTheDeviceAsNew) {
    inject(0x01, What::Stall, 2);
    Packet start = command({0x02, 9});
    start.resize(512);
    ask(write(1, start));
    ask(read(2, 63));
    ask(control(3, "02 03 00 00 01 00 00 00"));
    session.reset();
    EXPECT_FALSE(device.attached());
    EXPECT_EQ(device.waiting(), 0U);
    EXPECT_THAT(transfers, ElementsAre("disconnected 1 512", "disconnected 129 0"));
    device.clearFaults();
    attach();
    EXPECT_THAT(ask(write(5, command({0x02, 9}))), ElementsAre("5: 0, 2052"));
    EXPECT_EQ(device.controller().working()[0], 9);
}

}  // namespace
