// A capture on the real libusb: its transfers are long, and while one of its handles is open and
// holds the interface, no other one can.

#include <gmock/gmock.h>
#include <libusb.h>
#include <wx/string.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <vector>

#include "device/interfaceUSB.h"
#include "tests/device/capture/naive_decoder.h"
#include "tests/device/real_library/mocked_usbfs.h"
#include "tests/support/capture_rounds.h"
#include "tests/support/dialogs.h"
#include "tests/support/temporary_folder.h"

namespace {

using naive::Bytes;
using support::MockedUsbfs;

constexpr std::size_t TextFrame = 12 + 32 * 130 + 2;

class RealCapture : public testing::Test {
protected:
    void SetUp() override {
        if (!MockedUsbfs::unavailable().empty()) {
            GTEST_SKIP() << MockedUsbfs::unavailable();
        }
    }
    void TearDown() override {
        dump_running = false;
        MyLibusbDeviceHandle = nullptr;
    }

    void run(int mode) {
        dump_running = true;
        usb.receiveDump(static_cast<unsigned char>(mode),
                        wxString::FromUTF8(folder.path().string()));
        EXPECT_EQ(MyLibusbDeviceHandle, nullptr);
    }
    Bytes content(const char* ending) const {
        for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
            if (entry.path().extension() == ending) {
                return support::readFile(entry.path());
            }
        }
        ADD_FAILURE() << "no file *" << ending;
        return {};
    }
    std::size_t textFrames() const {
        const std::size_t size = content(".txt").size();
        EXPECT_EQ(size % TextFrame, 0U);
        return size / TextFrame;
    }
    static long requests(const MockedUsbfs& controller) {
        const auto packets = controller->received();
        return std::ranges::count_if(packets,
                                     [](const Bytes& bytes) { return bytes.size() == 64; });
    }

    support::TemporaryFolder folder;
    support::CaptureRounds rounds;
};

TEST_F(RealCapture, OfTwelvePlanesBringsTheControllersFrames) {
    const MockedUsbfs controller;
    rounds.stopAfter(5);
    run(6);

    EXPECT_EQ(requests(controller), 5);
    const Bytes text = content(".txt");
    const Bytes raw = content(".raw");
    ASSERT_EQ(text.size(), 5 * TextFrame);
    ASSERT_EQ(raw.size(), 8 + 5 * (4 + 12 * 512U));
    const simulator::Controller sameBoard;
    for (std::size_t i = 0; i < 5; ++i) {
        const Bytes planes = sameBoard.capturedPlanes(static_cast<std::uint32_t>(i), 12);
        const std::string found(reinterpret_cast<const char*>(&text[i * TextFrame]), TextFrame);
        const auto stamp = static_cast<std::uint32_t>(std::stoul(found.substr(2, 8), nullptr, 16));
        EXPECT_EQ(found, naive::text(6, false, stamp, planes)) << i;
        const auto block = raw.begin() + static_cast<std::ptrdiff_t>(8 + i * (4 + 12 * 512));
        EXPECT_EQ(Bytes(block, block + 4 + 12 * 512), naive::raw(6, stamp, planes)) << i;
    }
}

TEST_F(RealCapture, GoesOnAfterACommandThatReachesTheController) {
    const MockedUsbfs controller;
    rounds.after(2, [] { EXPECT_TRUE(usb.sendConfigCmd(0x02, 7)); });
    rounds.stopAfter(5);
    run(6);

    Bytes command = {0x81, 0xC3, 0xE7, 0xFF, 0x02, 7};
    command.resize(2052);
    const auto packets = controller->received();
    ASSERT_EQ(packets.size(), 6U);
    EXPECT_EQ(packets[2], command);
    EXPECT_EQ(textFrames(), 5U);
}

TEST_F(RealCapture, HoldsTheInterfaceAgainstEveryOtherHandle) {
    const MockedUsbfs controller;
    rounds.after(2, [] {
        libusb_context* context = nullptr;
        libusb_init(&context);
        auto* const other = libusb_open_device_with_vid_pid(context, 0x0314, 0xE457);
        ASSERT_NE(other, nullptr);
        EXPECT_EQ(libusb_claim_interface(other, 0), LIBUSB_ERROR_BUSY);
        libusb_close(other);
        libusb_exit(context);
    });
    rounds.stopAfter(3);
    run(2);
    EXPECT_EQ(textFrames(), 3U);
}

TEST_F(RealCapture, GoesOnAfterACommandInEachOfItsRounds) {
    const MockedUsbfs controller;
    for (int frame = 1; frame <= 5; ++frame) {
        rounds.after(frame, [] { EXPECT_TRUE(usb.sendConfigCmd(0x03, 1)); });
    }
    rounds.stopAfter(5);
    run(2);
    EXPECT_EQ(controller->received().size(), 10U);
    EXPECT_EQ(textFrames(), 5U);
}

TEST_F(RealCapture, GoesOnAfterASettingsReadThatWasNotAnswered) {
    const MockedUsbfs controller;
    support::Dialogs dialogs;
    dialogs.expectMessage("Firmware version not supported ! Please upgrade !", "Error");
    rounds.after(2, [&] {
        controller->setFaults({.holdReplies = true});
        config = usb.getSettings(config, versionString);
        controller->setFaults({});
    });
    rounds.stopAfter(4);
    run(2);
    EXPECT_EQ(requests(controller), 4);
    EXPECT_EQ(textFrames(), 4U);
}

TEST_F(RealCapture, IsSafeFromCommandsWhileItLooksForAControllerThatIsGone) {
    MockedUsbfs controller;
    rounds.after(2, [&] {
        controller.unplug();
        EXPECT_FALSE(usb.sendConfigCmd(0x03, 1));
        for (int later = 1; later < 4; ++later) {
            rounds.afterEnumeration(rounds.enumerations() + later,
                                    [] { EXPECT_FALSE(usb.sendConfigCmd(0x03, 1)); });
        }
        rounds.afterEnumeration(rounds.enumerations() + 8, [] { dump_running = false; });
    });
    run(2);
    EXPECT_EQ(textFrames(), 2U);
}

/// Takes the 10 seconds that a read waits.
TEST_F(RealCapture, ReadThatTimesOutWritesNothingAndTheNextFrameComes) {
    const MockedUsbfs controller;
    rounds.onRead([&](int frame) { controller->setFaults({.holdReplies = frame == 2}); });
    rounds.stopAfter(3);
    const auto start = std::chrono::steady_clock::now();
    run(2);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
    EXPECT_EQ(requests(controller), 3);
    EXPECT_EQ(textFrames(), 2U);
}

}  // namespace
