// What each operation sends and receives.

#include "tests/device/real_library/real_library.h"

#include <gmock/gmock.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <vector>

namespace {

using namespace support;
using testing::ElementsAre;
using testing::IsEmpty;
using namespace std::chrono_literals;

// Settings and unique id

TEST_F(RealLibrary, SettingsOfTheNewerLayoutAreReadWithTheFirmwareVersion) {
    const MockedUsbfs controller({.board = {.firmware = "V3.17b", .settings = OtherRecord}});
    std::array<char, 9> version{};
    EXPECT_EQ(bytesOf(usb_.getSettings({}, version.data())), bytesOf(record(OtherRecord)));
    EXPECT_STREQ(version.data(), "V3.17b");

    const auto transfers = controller->transfers();
    ASSERT_EQ(transfers.size(), 2U);
    EXPECT_EQ(transfers[0].endpoint, 0x01);
    EXPECT_EQ(transfers[0].bytes, frame({0x81, 0xC3, 0xE7, 0xFF, 0x10}));
    EXPECT_EQ(transfers[1].endpoint, 0x81);
    EXPECT_EQ(transfers[1].length, 63U);
    EXPECT_EQ(transfers[1].bytes.size(), 63U);
    EXPECT_EQ(claimByAnotherProgram(), 0);
}

TEST_F(RealLibrary, SettingsThatDidNotArriveAreZero) {
    const MockedUsbfs controller({.board = {.settings = OtherRecord}});
    controller->setFaults({.replyLimit = 20});
    std::array<char, 9> version{};
    const auto settings = usb_.getSettings(record(OtherRecord), version.data());
    EXPECT_THAT(bytesOf(settings),
                ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0));
    EXPECT_STREQ(version.data(), "V4.02b");
}

TEST_F(RealLibrary, SettingsThatNeverComeAreReportedAfterOneSecond) {
    const MockedUsbfs controller;
    controller->setFaults({.holdReplies = true});
    dialogs_.expectMessage("Firmware version not supported ! Please upgrade !", "Error");
    std::array<char, 9> version = {"kept"};

    const auto start = std::chrono::steady_clock::now();
    const auto settings = usb_.getSettings(record(OtherRecord), version.data());
    const auto time = std::chrono::steady_clock::now() - start;

    EXPECT_GE(time, 1000ms);
    EXPECT_LT(time, 5000ms);  // A busy machine may take its time.
    EXPECT_EQ(bytesOf(settings), bytesOf(record(OtherRecord)));
    EXPECT_STREQ(version.data(), "kept");
    const auto transfers = controller->transfers();
    ASSERT_EQ(transfers.size(), 2U);
    EXPECT_EQ(transfers[1].status, -ENOENT);
    EXPECT_EQ(claimByAnotherProgram(), 0);
}

TEST_F(RealLibrary, ControllerAnswersAgainAfterAReadThatFailed) {
    const MockedUsbfs controller({.board = {.settings = OtherRecord}});
    controller->setFaults({.holdReplies = true});
    dialogs_.expectMessage("Firmware version not supported ! Please upgrade !", "Error");
    std::array<char, 9> version{};
    usb_.getSettings({}, version.data());

    controller->setFaults({});
    EXPECT_EQ(bytesOf(usb_.getSettings({}, version.data())), bytesOf(record(OtherRecord)));
    EXPECT_EQ(MyLibusbDeviceHandle, nullptr);
}

TEST_F(RealLibrary, UniqueIdIsRead) {
    const MockedUsbfs controller({.board = {.uniqueId = "3A7F00C21D5E9B64"}});
    std::array<char, 64> uid{};
    usb_.getUniqueId(uid.data());
    EXPECT_STREQ(uid.data(), "3A7F00C21D5E9B64");
    EXPECT_THAT(controller->received(), ElementsAre(frame({0x81, 0xC3, 0xE7, 0xFF, 0x11})));
}

// Sending

TEST_F(RealLibrary, SettingsArriveWhole) {
    const MockedUsbfs controller;
    usb_.sendConfig(record(OtherRecord));
    EXPECT_THAT(
        controller->received(),
        ElementsAre(frame({0x81, 0xC3, 0xE7, 0xFF, 0x20, 1,  2,  3,  4,  5,  6,  7,  8, 9,
                           10,   11,   12,   13,   14,   15, 16, 17, 18, 19, 20, 21, 0, 200})));
    EXPECT_EQ(controller->board([](auto& board) { return board.working(); }), OtherRecord);
}

TEST_F(RealLibrary, CommandArrivesWholeWithRawBytes) {
    const MockedUsbfs controller;
    EXPECT_TRUE(usb_.sendConfigCmd('\x81', '\xFE'));
    EXPECT_THAT(controller->received(), ElementsAre(frame({0x81, 0xC3, 0xE7, 0xFF, 0x81, 0xFE})));
}

TEST_F(RealLibrary, FrameThatIsNeverAcceptedIsGivenUpSilentlyAfterOneSecond) {
    const MockedUsbfs controller;
    controller->setFaults({.acceptNothing = true});
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(usb_.sendConfigCmd(0x01, 0));
    const auto time = std::chrono::steady_clock::now() - start;
    EXPECT_GE(time, 1000ms);
    EXPECT_LT(time, 5000ms);
    EXPECT_THAT(controller->received(), IsEmpty());
    EXPECT_EQ(claimByAnotherProgram(), 0);
}

TEST_F(RealLibrary, ControllerThatDisappearsDuringAReadIsReportedWithoutWaiting) {
    const MockedUsbfs controller;
    controller->setFaults({.pullOutAt = 2});
    dialogs_.expectMessage("Firmware version not supported ! Please upgrade !", "Error");
    std::array<char, 9> version{};
    EXPECT_EQ(bytesOf(usb_.getSettings(record(OtherRecord), version.data())),
              bytesOf(record(OtherRecord)));
    const auto transfers = controller->transfers();
    ASSERT_EQ(transfers.size(), 2U);
    EXPECT_EQ(transfers[0].status, 0);
    EXPECT_EQ(transfers[1].status, -ESHUTDOWN);
}

// Large replies: twelve planes in one read, and a reply that the library reads piece by piece

TEST_F(RealLibrary, FrameOfTwelvePlanesArrivesInOneRead) {
    const MockedUsbfs controller;
    ASSERT_EQ(usb_.setup(), 2);
    Bytes request = {0x02, 0xC3, 0xE8, 12};
    request.resize(64);
    Bytes reply(12 * 512 + 5, 0xEE);
    int received = 0;
    EXPECT_EQ(libusb_bulk_transfer(MyLibusbDeviceHandle, 0x01, request.data(), 64, nullptr, 2000),
              0);
    EXPECT_EQ(
        libusb_bulk_transfer(MyLibusbDeviceHandle, 0x81, reply.data(), 6149, &received, 10000), 0);
    usb_.release();

    EXPECT_EQ(received, 6149);
    const auto planes = controller->board([](auto& board) { return board.capturedPlanes(0, 12); });
    EXPECT_EQ(Bytes(reply.begin() + 4, reply.end() - 1), planes);
}

TEST_F(RealLibrary, LongReplyArrivesWholeThroughSeveralRequests) {
    const MockedUsbfs controller({.capabilities = USBDEVFS_CAP_BULK_CONTINUATION});
    ASSERT_EQ(usb_.setup(), 2);
    Bytes request = {0x02, 0xC3, 0xE8, 64};
    request.resize(64);
    Bytes reply(64 * 512 + 5, 0xEE);
    int received = 0;
    EXPECT_EQ(libusb_bulk_transfer(MyLibusbDeviceHandle, 0x01, request.data(), 64, nullptr, 2000),
              0);
    EXPECT_EQ(
        libusb_bulk_transfer(MyLibusbDeviceHandle, 0x81, reply.data(), 32773, &received, 10000), 0);
    usb_.release();

    EXPECT_EQ(received, 32773);
    std::vector<std::size_t> pieces;
    for (const auto& transfer : controller->transfers()) {
        pieces.push_back(transfer.bytes.size());
    }
    EXPECT_THAT(pieces, ElementsAre(64, 16384, 16384, 5));
    const auto planes = controller->board([](auto& board) { return board.capturedPlanes(0, 64); });
    EXPECT_EQ(Bytes(reply.begin() + 4, reply.end() - 1), planes);
}

}  // namespace
