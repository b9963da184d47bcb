// Other operations of the device link in the middle of a capture, as a handler of the window starts
// them while the capture lets events run. Each of them, two in one yield, and what comes of their
// failing calls and of the capture's own is in faults/.

#include <libusb.h>

#include <string>
#include <vector>

#include "tests/device/capture/capture_link.h"

namespace {

using capture::CaptureLink;
using capture::Frame;

class NestedOperation : public CaptureLink {
protected:
    /// The frames that came are in the file, the capture left nothing open, and no call was made
    /// with a handle that is not open, as the real library would not survive it.
    void expectFrames(std::size_t count) const {
        const std::vector<Frame> frames = repliedFrames();
        EXPECT_EQ(frames.size(), count);
        expectText(1, false, frames, startOf(frames));
        EXPECT_EQ(bus.openHandles(), 0);
        EXPECT_EQ(bus.claimedInterfaces(), 0);
        EXPECT_EQ(MyLibusbDeviceHandle, nullptr);
        EXPECT_THAT(support::callLines(),
                    testing::Not(testing::Contains(testing::HasSubstr("stale"))));
    }
};

TEST_F(NestedOperation, TakesTheConnectionOverAndTheCaptureOpensANewOne) {
    plug(1);
    rounds.after(2, [] { EXPECT_TRUE(usb.sendConfigCmd(0x03, 8)); });
    run(1, 4);
    const support::Lines twoRounds = {
        "out 0x01 64 2000ms #0: 02 C3 E8 03 00*60", "in 0x81 1541 10000ms #0",
        "out 0x01 64 2000ms #0: 02 C3 E8 03 00*60", "in 0x81 1541 10000ms #0"};
    const support::Lines command = {"out 0x01 2052 1000ms #0: 81 C3 E7 FF 03 08 00*2046"};
    EXPECT_EQ(support::callLines(),
              support::joined({support::connection(twoRounds), support::connection(command),
                               support::connection(twoRounds)}));
    expectFrames(4);
}

TEST_F(NestedOperation, InEveryRoundIsServed) {
    plug(1);
    for (int frame = 1; frame <= 20; ++frame) {
        rounds.after(frame, [] {
            usb.sendConfigCmd(0x02, 1);
            usb.sendConfigCmd(0x03, 2);
        });
    }
    run(1, 20);
    expectFrames(20);
}

TEST_F(NestedOperation, WithoutControllerIsFollowedByEnumerationsUntilThereIsOne) {
    plug(1);
    rounds.after(2, [&] {
        bus.unplug(0);
        EXPECT_FALSE(usb.sendConfigCmd(0x03, 8));
    });
    // The first enumeration is the capture's, the second the command's.
    rounds.afterEnumeration(4, [&] { plug(1); });
    run(1, 4);
    EXPECT_GE(rounds.enumerations(), 5);
    expectFrames(4);
}

TEST_F(NestedOperation, WhileTheCaptureLooksForItsControllerIsSafe) {
    plug(1);
    rounds.after(1, [&] {
        bus.unplug(0);
        usb.sendConfigCmd(0x03, 8);
    });
    rounds.afterEnumeration(3, [] { usb.sendConfigCmd(0x03, 8); });
    rounds.afterEnumeration(4, [&] { plug(1); });
    run(1, 3);
    expectFrames(3);
}

/// Why the capture's first attempt to connect again fails, though the board is there.
struct Obstacle {
    std::string what;
    const char* function;
    int result;
};

void PrintTo(const Obstacle& each, std::ostream* out) { *out << each.what; }

class ObstructedAttempt : public NestedOperation, public testing::WithParamInterface<Obstacle> {};

/// Nothing of the attempt may be left that the operation could take for a connection.
TEST_P(ObstructedAttempt, IsFollowedByAnOperationAsEver) {
    plug(1);
    rounds.after(2, [&] {
        usb.sendConfigCmd(0x03, 7);
        fail(GetParam().function, GetParam().result);
    });
    rounds.afterEnumeration(3, [] { EXPECT_TRUE(usb.sendConfigCmd(0x03, 8)); });
    run(1, 4);
    EXPECT_EQ(rounds.enumerations(), 5);
    expectFrames(4);
}

INSTANTIATE_TEST_SUITE_P(
    By, ObstructedAttempt,
    testing::Values(Obstacle{"AFailedEnumeration", "libusb_get_device_list", LIBUSB_ERROR_NO_MEM},
                    Obstacle{"AnOpenThatIsRefused", "libusb_open", LIBUSB_ERROR_ACCESS},
                    Obstacle{"AnEmptyProductString", "libusb_get_string_descriptor_ascii", 0},
                    Obstacle{"AnInterfaceThatIsBusy", "libusb_claim_interface", LIBUSB_ERROR_BUSY}),
    [](const auto& test) { return test.param.what; });

TEST_F(NestedOperation, GivesTheNextFrameAReplyOfItsOwn) {
    const auto controller = plug(1);
    rounds.after(1, [] { usb.getUniqueId(UIDString); });
    run(1, 3);
    EXPECT_STREQ(UIDString, "3A7F00C21D5E9B64");
    const std::vector<Frame> frames = repliedFrames();
    ASSERT_EQ(frames.size(), 3U);
    for (std::uint32_t i = 0; i < 3; ++i) {
        capture::Bytes planes = controller->capturedPlanes(i, 3);
        planes.push_back(0);
        EXPECT_EQ(support::byteText(frames[i].planes), support::byteText(planes));
    }
    expectFrames(3);
}

TEST_F(NestedOperation, OnAnotherBoardAfterwardsIsSurvived) {
    plug(1);
    rounds.after(2, [&] {
        bus.unplug(0);
        plug(1, Board::Xl);
        usb.sendConfigCmd(0x03, 8);
    });
    run(1, 4);
    EXPECT_EQ(text().size() % (12 + 32 * 130 + 2U), 0U);
    EXPECT_EQ(bus.openHandles(), 0);
}

}  // namespace
