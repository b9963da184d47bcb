// Other operations of the device link in the middle of a capture, as a handler of the window starts
// them while the capture lets events run.

#include <libusb.h>

#include <functional>
#include <ostream>
#include <string>
#include <tuple>

#include "tests/device/capture/capture_link.h"

namespace {

using capture::CaptureLink;
using capture::Frame;
using testing::Contains;
using testing::Not;

const wxString Unsupported = "Firmware version not supported ! Please upgrade !";

class NestedOperation : public CaptureLink {
protected:
    /// No call was made with a handle that is not open, as the real library would not survive it.
    void expectNoStaleHandle() const {
        EXPECT_THAT(support::callLines(), Not(Contains(testing::HasSubstr("stale"))));
    }
    /// The frames that came are in the file, and the capture left nothing open.
    void expectFrames(std::size_t count) const {
        const std::vector<Frame> frames = repliedFrames();
        EXPECT_EQ(frames.size(), count);
        expectText(1, false, frames, startOf(frames));
        expectReleased();
        expectNoStaleHandle();
    }
};

/// The calls of a capture of four frames with a command after the second one.
support::Lines interruptedCapture() {
    const support::Lines round = {"out 0x01 64 2000ms #0: 02 C3 E8 03 00*60",
                                  "in 0x81 1541 10000ms #0"};
    return support::joined({support::setupLines(),
                            round,
                            round,
                            support::releaseLines(),
                            support::setupLines(),
                            {"out 0x01 2052 1000ms #0: 81 C3 E7 FF 03 08 00*2046"},
                            support::releaseLines(),
                            support::setupLines(),
                            round,
                            round,
                            support::releaseLines()});
}
constexpr int InterruptedCalls = 36;

TEST_F(NestedOperation, TakesTheConnectionOverAndTheCaptureOpensANewOne) {
    plug(1);
    rounds.after(2, [] { EXPECT_TRUE(usb.sendConfigCmd(0x03, 8)); });
    run(1, 4);
    EXPECT_EQ(support::callLines(), interruptedCapture());
    EXPECT_EQ(interruptedCapture().size(), std::size_t{InterruptedCalls});
    expectFrames(4);
}

/// The number of a call in the interrupted capture, 1 = the first, and its error or `Unplugged`.
class FailingInterruptedCapture : public NestedOperation,
                                  public testing::WithParamInterface<std::tuple<int, int>> {
protected:
    static constexpr int Unplugged = 0;
    const int call = std::get<0>(GetParam());
    const int error = std::get<1>(GetParam());

    void injectFailure() {
        const std::string line = interruptedCapture()[static_cast<std::size_t>(call) - 1];
        const bool hasResult =
            !line.starts_with("libusb_free_device_list") && !line.starts_with("libusb_close");
        if (error == Unplugged) {
            bus.inject({.nth = call, .unplug = true});
        } else if (hasResult) {
            bus.inject({.nth = call, .result = error});
        }
    }
    /// Whether the capture's own search comes to nothing.
    bool keepsItFromStarting() const {
        constexpr int List = 2, Descriptor = 3, Open = 4, Name = 5, Claim = 7;
        return call == Descriptor || call == Open || call == Claim ||
               call == (error == Unplugged ? Name : List);
    }
};

TEST_P(FailingInterruptedCapture, GoesOnAndLeavesNothingOpen) {
    plug(1);
    rounds.after(2, [] { usb.sendConfigCmd(0x03, 8); });
    rounds.afterSearch(6, [] { dump_running = false; });  // Of a controller that has gone.
    injectFailure();
    run(1, 4);
    if (keepsItFromStarting()) {
        EXPECT_EQ(rounds.frames(), 0);
    } else if (error == Unplugged) {
        EXPECT_GE(rounds.frames(), 1);
    } else {
        EXPECT_EQ(rounds.frames(), 4);
    }
    EXPECT_EQ(bus.openHandles(), 0);
    EXPECT_EQ(bus.claimedInterfaces(), 0);
    EXPECT_EQ(capture::openFilesIn(folder.path()), 0);
    expectNoStaleHandle();
}

INSTANTIATE_TEST_SUITE_P(
    InEachCall, FailingInterruptedCapture,
    testing::Combine(testing::Range(1, InterruptedCalls + 1),
                     testing::Values(0, LIBUSB_ERROR_IO, LIBUSB_ERROR_NO_DEVICE, LIBUSB_ERROR_BUSY,
                                     LIBUSB_ERROR_TIMEOUT, LIBUSB_ERROR_PIPE, LIBUSB_ERROR_NO_MEM,
                                     LIBUSB_ERROR_OTHER)));

TEST_F(NestedOperation, InTheLastRoundLeavesNothingOpen) {
    plug(1);
    rounds.after(2, [] { usb.sendConfigCmd(0x03, 8); });
    run(1, 2);
    expectFrames(2);
    EXPECT_EQ(rounds.searches(), 2);
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

TEST_F(NestedOperation, ThatFailsToReadTheSettingsDoesNotEndTheCapture) {
    plug(1);
    dialogs.expectMessage(Unsupported, "Error");
    rounds.after(2, [&] {
        failTransfer(0x81, LIBUSB_ERROR_TIMEOUT);
        config = usb.getSettings(config, versionString);
    });
    run(1, 4);
    expectFrames(4);
}

TEST_F(NestedOperation, ThatFailsToReadTheSettingsInTheLastRoundLeavesItsHandleBehindAsEver) {
    plug(1);
    dialogs.expectMessage(Unsupported, "Error");
    rounds.after(2, [&] {
        failTransfer(0x81, LIBUSB_ERROR_TIMEOUT);
        config = usb.getSettings(config, versionString);
    });
    run(1, 2);
    EXPECT_NE(MyLibusbDeviceHandle, nullptr);
    EXPECT_EQ(bus.openHandles(), 0);
    EXPECT_EQ(bus.claimedInterfaces(), 0);
    expectNoStaleHandle();
    MyLibusbDeviceHandle = nullptr;
}

TEST_F(NestedOperation, WithoutControllerIsFollowedByASearchUntilThereIsOne) {
    plug(1);
    rounds.after(2, [&] {
        bus.unplug(0);
        EXPECT_FALSE(usb.sendConfigCmd(0x03, 8));
    });
    // The first search is the capture's, the second the command's.
    rounds.afterSearch(4, [&] { plug(1); });
    run(1, 4);
    EXPECT_EQ(repliedFrames().size(), 4U);
    EXPECT_GE(rounds.searches(), 5);
    EXPECT_EQ(bus.openHandles(), 0);
    EXPECT_EQ(MyLibusbDeviceHandle, nullptr);
    expectNoStaleHandle();
}

TEST_F(NestedOperation, ThatIsUnpluggedAtTheFailingReadDoesNotUseItsHandleAgain) {
    plug(1);
    dialogs.expectMessage(Unsupported, "Error");
    rounds.after(2, [&] {
        bus.inject({.function = "libusb_bulk_transfer", .unplug = true, .endpoint = 0x81});
        config = usb.getSettings(config, versionString);
        EXPECT_NE(MyLibusbDeviceHandle, nullptr);
    });
    rounds.afterSearch(4, [&] { plug(1); });
    run(1, 4);
    EXPECT_EQ(repliedFrames().size(), 4U);
    EXPECT_EQ(bus.openHandles(), 0);
    expectNoStaleHandle();
}

TEST_F(NestedOperation, WithoutControllerLetsTheCaptureBeStoppedWhileItSearches) {
    plug(1);
    rounds.after(1, [&] {
        bus.unplug(0);
        usb.sendConfigCmd(0x03, 8);
    });
    rounds.afterSearch(4, [] { dump_running = false; });
    run(1);
    EXPECT_EQ(rounds.searches(), 4);
    EXPECT_EQ(rounds.frames(), 1);
    EXPECT_EQ(bus.openHandles(), 0);
    expectNoStaleHandle();
}

TEST_F(NestedOperation, InTheSearchForAControllerIsSafe) {
    plug(1);
    rounds.after(1, [&] {
        bus.unplug(0);
        usb.sendConfigCmd(0x03, 8);
    });
    rounds.afterSearch(3, [] { usb.sendConfigCmd(0x03, 8); });
    rounds.afterSearch(4, [&] { plug(1); });
    run(1, 3);
    EXPECT_EQ(repliedFrames().size(), 3U);
    EXPECT_EQ(bus.openHandles(), 0);
    expectNoStaleHandle();
}

TEST_F(NestedOperation, ThatKeepsTheControllerClaimedOnPurposeLetsTheCaptureGoOn) {
    plug(1);
    dialogs.expectMessage("File Error", "Message");
    rounds.after(2, [&] { usb.uploadFile((folder.path() / "missing").c_str(), "name"); });
    run(1, 4);
    EXPECT_EQ(repliedFrames().size(), 4U);
    EXPECT_EQ(bus.openHandles(), 0);
    EXPECT_EQ(bus.claimedInterfaces(), 0);
    EXPECT_EQ(capture::openFilesIn(folder.path()), 0);
    expectNoStaleHandle();
}

/// Why neither the nested operation nor the search after it connects, though the board is there.
struct Obstacle {
    std::string what;
    const char* function;
    int result;
    int listsLeft = 0;  ///< kept on purpose by the nested operation; the search adds none
};

void PrintTo(const Obstacle& each, std::ostream* out) { *out << each.what; }

class ObstructedSearch : public NestedOperation, public testing::WithParamInterface<Obstacle> {};

TEST_P(ObstructedSearch, IsRepeatedUntilItConnects) {
    plug(1);
    rounds.after(2, [&] {
        for (const int nth : {1, 2}) {
            bus.inject({.function = GetParam().function, .nth = nth, .result = GetParam().result});
        }
        EXPECT_FALSE(usb.sendConfigCmd(0x03, 8));
    });
    run(1, 4);
    EXPECT_EQ(rounds.searches(), 4);
    EXPECT_EQ(repliedFrames().size(), 4U);
    EXPECT_EQ(bus.openHandles(), 0);
    EXPECT_EQ(bus.claimedInterfaces(), 0);
    EXPECT_EQ(bus.deviceLists(), GetParam().listsLeft);
    expectNoStaleHandle();
}

INSTANTIATE_TEST_SUITE_P(
    By, ObstructedSearch,
    testing::Values(Obstacle{"AFailedEnumeration", "libusb_get_device_list", LIBUSB_ERROR_NO_MEM},
                    Obstacle{"AnOpenThatIsRefused", "libusb_open", LIBUSB_ERROR_ACCESS, 1},
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
