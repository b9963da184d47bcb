#include "simulator/capture.h"

#include <gtest/gtest.h>

#include <set>

#include "tests/simulator/packets.h"

using packets::command;
using packets::dumpRequest;
using simulator::Board;
using simulator::Controller;
using simulator::ControllerOptions;
using simulator::Packet;

namespace {

struct CaptureTest : testing::Test {
    Controller make(Board kind, std::uint32_t frameInterval = 0) {
        ControllerOptions options;
        options.board = kind;
        options.frameInterval = frameInterval;
        options.clock = [this] { return clock; };
        return Controller(options);
    }

    std::uint64_t clock = 0;
    Controller board = make(Board::Standard);
};

/// The bits of one dot of a 128 x 32 frame, plane 0 in bit 0.
int dotBits(const Packet& planes, std::size_t dot) {
    int bits = 0;
    for (std::size_t plane = 0; plane < planes.size() / 512; ++plane) {
        bits |= (planes[plane * 512 + dot / 8] >> (dot % 8) & 1) << plane;
    }
    return bits;
}

std::set<int> dotsOf(const Packet& planes) {
    std::set<int> values;
    for (std::size_t dot = 0; dot < 4096; ++dot) {
        values.insert(dotBits(planes, dot));
    }
    return values;
}

Packet bottomRow(const Packet& planes, std::size_t plane) {
    const auto start = planes.begin() + static_cast<std::ptrdiff_t>(plane * 512 + 31 * 16);
    return Packet(start, start + 16);
}

}  // namespace

TEST_F(CaptureTest, ReplyIsTimeStampPlanesAndOneByte) {
    clock = 0x0501020304;
    board.receive(dumpRequest(2));
    const Packet reply = board.takeReply().value();
    ASSERT_EQ(reply.size(), 1029U);
    EXPECT_EQ(Packet(reply.begin(), reply.begin() + 4), Packet({0x04, 0x03, 0x02, 0x01}));
    EXPECT_EQ(Packet(reply.begin() + 4, reply.end() - 1), board.capturedPlanes(0, 2));
}

TEST_F(CaptureTest, ReplyIsAsLongAsThePlanesAskedFor) {
    const std::pair<std::uint8_t, std::size_t> sizes[] = {
        {0, 5}, {2, 1029}, {3, 1541}, {4, 2053}, {6, 3077}, {8, 4101}, {12, 6149}, {255, 130565}};
    for (const auto& [planes, size] : sizes) {
        board.receive(dumpRequest(planes));
        EXPECT_EQ(board.takeReply().value().size(), size) << int{planes};
    }
}

TEST_F(CaptureTest, XlReplyHasTwoLargePlanesWhateverIsAskedFor) {
    Controller xl = make(Board::Xl);
    for (const std::uint8_t planes : Packet{0, 2, 12, 255}) {
        xl.receive(dumpRequest(planes));
        EXPECT_EQ(xl.takeReply().value().size(), 3077U);
    }
    EXPECT_EQ(xl.capturedPlanes(5, 12), xl.capturedPlanes(5, 2));
}

TEST_F(CaptureTest, RampMovesLeftWithTheLeftmostDotInTheLowestBit) {
    const Packet still = board.capturedPlanes(0, 4);
    EXPECT_EQ(bottomRow(still, 0), Packet({0x00, 0xFF, 0x00, 0xFF, 0x00, 0xFF, 0x00, 0xFF, 0x00,
                                           0xFF, 0x00, 0xFF, 0x00, 0xFF, 0x00, 0xFF}));
    EXPECT_EQ(bottomRow(still, 3), Packet({0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xFF,
                                           0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}));
    const Packet moved = board.capturedPlanes(1, 4);
    EXPECT_EQ(bottomRow(moved, 0), Packet({0xC0, 0x3F, 0xC0, 0x3F, 0xC0, 0x3F, 0xC0, 0x3F, 0xC0,
                                           0x3F, 0xC0, 0x3F, 0xC0, 0x3F, 0xC0, 0x3F}));
}

TEST_F(CaptureTest, EveryFrameUsesAllShadesOfTheMachine) {
    const std::pair<std::uint8_t, std::set<int>> shades[] = {
        {1, {0, 1}},
        {2, {0, 1, 2, 3}},
        {4, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15}},
        {3, {0, 0b1, 0b11, 0b111}},
        {6, {0, 0b1, 0b11, 0b111, 0b1111, 0b11111, 0b111111}},
    };
    for (const auto& [planes, values] : shades) {
        for (std::uint32_t index = 0; index < 64; ++index) {
            ASSERT_EQ(dotsOf(board.capturedPlanes(index, planes)), values) << int{planes};
        }
    }
}

TEST_F(CaptureTest, MachinesThatCountPlanesLightThemInOrder) {
    for (const std::uint8_t inputMode : Packet{9, 10}) {
        board.receive(command({0x02, inputMode}));
        EXPECT_EQ(dotsOf(board.capturedPlanes(0, 4)), std::set<int>({0, 1, 3, 7, 15}));
    }
}

TEST_F(CaptureTest, EachFrameDiffersFromTheOneBefore) {
    const Controller xl = make(Board::Xl);
    for (std::uint32_t index = 0; index < 130; ++index) {
        EXPECT_NE(board.capturedPlanes(index, 2), board.capturedPlanes(index + 1, 2)) << index;
        EXPECT_NE(xl.capturedPlanes(index, 2), xl.capturedPlanes(index + 1, 2)) << index;
    }
}

TEST_F(CaptureTest, AFrameOfOneIndexIsAlwaysTheSame) {
    const Packet first = board.capturedPlanes(7, 4);
    board.capturedPlanes(8, 4);
    board.capturedPlanes(7, 3);
    EXPECT_EQ(board.capturedPlanes(7, 4), first);
    EXPECT_EQ(make(Board::Standard).capturedPlanes(7, 4), first);
}

TEST_F(CaptureTest, RequestsGetOneFrameAfterTheOther) {
    for (std::uint32_t index = 0; index < 70; ++index) {
        board.receive(dumpRequest(4));
        const Packet reply = board.takeReply().value();
        ASSERT_EQ(Packet(reply.begin() + 4, reply.end() - 1), board.capturedPlanes(index, 4));
    }
}

TEST_F(CaptureTest, EarlyRequestWaitsForTheNextFrame) {
    clock = 1000;
    Controller paced = make(Board::Standard, 16);
    paced.receive(dumpRequest(0));
    EXPECT_EQ(paced.replyDelay(), 0U);
    EXPECT_EQ(paced.takeReply(), Packet({0xE8, 0x03, 0, 0, 0}));
    clock = 1006;
    paced.receive(dumpRequest(0));
    EXPECT_EQ(paced.replyDelay(), 10U);
    clock = 1016;
    EXPECT_EQ(paced.replyDelay(), 0U);
    EXPECT_EQ(paced.takeReply(), Packet({0xF8, 0x03, 0, 0, 0}));
    clock = 1500;
    paced.receive(dumpRequest(0));
    EXPECT_EQ(paced.replyDelay(), 0U);
}

TEST_F(CaptureTest, AskingAgainDoesNotPutTheFrameOff) {
    Controller slow = make(Board::Standard, 20000);
    slow.receive(dumpRequest(0));
    slow.takeReply();
    slow.receive(dumpRequest(0));
    EXPECT_EQ(slow.replyDelay(), 20000U);
    clock = 10000;
    slow.receive(dumpRequest(0));
    EXPECT_EQ(slow.replyDelay(), 10000U);
}

TEST_F(CaptureTest, OtherRepliesDoNotWait) {
    Controller slow = make(Board::Standard, 20000);
    slow.receive(dumpRequest(0));
    slow.receive(dumpRequest(0));
    slow.receive(command({0x10}));
    EXPECT_EQ(slow.replyDelay(), 0U);
    EXPECT_EQ(slow.takeReply().value().size(), 63U);
}
