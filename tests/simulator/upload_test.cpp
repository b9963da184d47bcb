#include <gtest/gtest.h>

#include "tests/simulator/packets.h"

using packets::block;
using packets::closeUpload;
using packets::command;
using packets::openUpload;
using simulator::Controller;
using simulator::Packet;

namespace {

const Packet Accepted = {0x00};
const Packet Refused = {0x01};

struct UploadTest : testing::Test {
    Packet answer(const Packet& packet) {
        board.receive(packet);
        return board.takeReply().value_or(Packet());
    }

    Controller board;
};

Packet textBytes(const std::string& text) { return Packet(text.begin(), text.end()); }

}  // namespace

TEST_F(UploadTest, BlocksAreJoinedAndKeptOnClosing) {
    EXPECT_EQ(answer(openUpload("logo.bin")), Accepted);
    EXPECT_EQ(answer(block(std::string(512, 'a'))), Accepted);
    EXPECT_EQ(answer(block("end")), Accepted);
    EXPECT_TRUE(board.files().empty());
    EXPECT_EQ(answer(closeUpload()), Accepted);
    ASSERT_EQ(board.files().size(), 1U);
    EXPECT_EQ(board.files().at("logo.bin"), textBytes(std::string(512, 'a') + "end"));
}

TEST_F(UploadTest, EmptyFileAndEmptyNameAreAccepted) {
    EXPECT_EQ(answer(openUpload("")), Accepted);
    EXPECT_EQ(answer(block("")), Accepted);
    EXPECT_EQ(answer(closeUpload()), Accepted);
    EXPECT_EQ(board.files().at(""), Packet());
}

TEST_F(UploadTest, NameMayFillTheWholeFrame) {
    const std::string name(2046, 'n');
    EXPECT_EQ(answer(openUpload(name)), Accepted);
    EXPECT_EQ(answer(closeUpload()), Accepted);
    EXPECT_EQ(board.files().count(name), 1U);
}

TEST_F(UploadTest, SecondUploadOfANameReplacesTheFirst) {
    for (const std::string text : {"first", "second"}) {
        answer(openUpload("a"));
        answer(block(text));
        answer(closeUpload());
    }
    EXPECT_EQ(board.files().at("a"), textBytes("second"));
}

TEST_F(UploadTest, WithoutOpenDataAndCloseAreRefused) {
    EXPECT_EQ(answer(block("data")), Refused);
    EXPECT_EQ(answer(closeUpload()), Refused);
    answer(openUpload("a"));
    answer(closeUpload());
    EXPECT_EQ(answer(closeUpload()), Refused);
    EXPECT_EQ(board.files().size(), 1U);
}

TEST_F(UploadTest, BlockLongerThan512BytesIsRefusedAndEndsTheUpload) {
    for (const Packet& tooLong :
         {command({0x0A, 0x01, 0x02, 0x01}), command({0x0A, 1, 255, 255})}) {
        answer(openUpload("a"));
        EXPECT_EQ(answer(tooLong), Refused);
        EXPECT_EQ(answer(closeUpload()), Refused);
    }
    EXPECT_TRUE(board.files().empty());
}

TEST_F(UploadTest, UnknownPhaseIsRefused) {
    answer(openUpload("a"));
    EXPECT_EQ(answer(command({0x0A, 0x02})), Refused);
    EXPECT_EQ(board.ignoredPackets(), 0);
}

TEST_F(UploadTest, EachFrameCanBeRefusedOnDemand) {
    const Packet frames[] = {openUpload("a"), block("x"), closeUpload()};
    for (int nth = 1; nth <= 3; ++nth) {
        board.refuseUploadFrame(nth);
        for (int frame = 1; frame <= nth; ++frame) {
            EXPECT_EQ(answer(frames[frame - 1]), frame == nth ? Refused : Accepted) << nth;
        }
        EXPECT_TRUE(board.files().empty()) << nth;
    }
    for (const Packet& frame : frames) {
        EXPECT_EQ(answer(frame), Accepted);
    }
}

TEST_F(UploadTest, AcceptanceIsTheByteAskedFor) {
    board.acceptUploadsWith(0x7E);
    EXPECT_EQ(answer(openUpload("a")), Packet({0x7E}));
    EXPECT_EQ(answer(command({0x0A, 0x02})), Refused);
}

TEST_F(UploadTest, ResetDropsAnUploadThatIsNotClosed) {
    simulator::ControllerOptions options;
    options.restartTime = 0;
    Controller other(options);
    other.receive(openUpload("a"));
    other.receive(command({0x00}));
    other.receive(closeUpload());
    EXPECT_EQ(other.takeReply(), Refused);
    EXPECT_TRUE(other.files().empty());
}
