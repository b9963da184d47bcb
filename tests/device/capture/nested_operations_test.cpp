// Other operations of the device link in the middle of a capture, as a handler of the window starts
// them while the capture lets events run.

#include <libusb.h>

#include <algorithm>
#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

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

TEST_F(NestedOperation, TakesTheConnectionOverAndTheCaptureOpensANewOne) {
    plug(1);
    rounds.after(2, [] { EXPECT_TRUE(usb.sendConfigCmd(0x03, 8)); });
    run(1, 4);
    EXPECT_EQ(support::callLines(), interruptedCapture());
    expectFrames(4);
}

enum class Handle { Cleared, Stale };

/// What the interrupted capture comes to.
struct Ending {
    int asked;  ///< rounds that asked for a frame
    int came;   ///< of those frames
    int commands;
    int searches;
    int listsLeft;
    Handle handle = Handle::Cleared;
};

/// The search for a controller that has gone is ended with this one, all before it counted.
constexpr int LastSearch = 6;

// clang-format off
//                               asked came commands searches    lists
const Ending AsUsual          = {4,    4,   1,       3,          0};
// The capture's own search comes to nothing.
const Ending NotListed        = {0,    0,   0,       1,          0};
const Ending NotFound         = {0,    0,   0,       1,          1};
const Ending NotClaimed       = {0,    0,   0,       1,          0, Handle::Stale};
const Ending FrameLost        = {4,    3,   1,       3,          0};
const Ending CommandNotFound  = {4,    4,   0,       3,          1};
const Ending CommandLost      = {4,    4,   0,       3,          0};
const Ending SearchedTwice    = {4,    4,   1,       4,          0};
// The controller has gone; the command's search for it keeps its list.
const Ending GoneInFrame1     = {2,    0,   0,       LastSearch, 1};
const Ending GoneInFrame2     = {2,    1,   0,       LastSearch, 1};
const Ending GoneAfterFrame2  = {2,    2,   0,       LastSearch, 1};
const Ending GoneAtTheCommand = {2,    2,   0,       LastSearch, 0};
const Ending GoneAfterIt      = {2,    2,   1,       LastSearch, 0};
const Ending GoneInFrame3     = {4,    2,   1,       3,          0};
const Ending GoneInFrame4     = {4,    3,   1,       3,          0};

/// A call of the interrupted capture: what comes of an error, and of a controller that leaves with
/// it. Null: the call has no result, or is about no controller; leaving there is leaving with the
/// one after it.
struct CallRow {
    const char* call;
    const Ending* error;
    const Ending* unplugged;
};

const CallRow CallRows[] = {
    {"init",                  &AsUsual,          &NotFound},
    {"get_device_list",       &NotListed,        &NotFound},
    {"get_device_descriptor", &NotFound,         &NotFound},
    {"open",                  &NotFound,         &NotFound},
    {"get_string_descriptor", &AsUsual,          &NotClaimed},
    {"free_device_list",      nullptr,           nullptr},
    {"claim_interface",       &NotClaimed,       &NotClaimed},
    {"out 0x01 64 ",          &FrameLost,        &GoneInFrame1},
    {"in 0x81 ",              &FrameLost,        &GoneInFrame1},
    {"out 0x01 64 ",          &FrameLost,        &GoneInFrame2},
    {"in 0x81 ",              &FrameLost,        &GoneInFrame2},
    {"release_interface",     &AsUsual,          &GoneAfterFrame2},
    {"close",                 nullptr,           &GoneAfterFrame2},
    // The command.
    {"init",                  &AsUsual,          nullptr},
    {"get_device_list",       &CommandLost,      nullptr},
    {"get_device_descriptor", &AsUsual,          &GoneAfterFrame2},  // The one before is still there.
    {"open",                  &CommandNotFound,  &GoneAfterFrame2},
    {"get_string_descriptor", &AsUsual,          &GoneAtTheCommand},
    {"free_device_list",      nullptr,           nullptr},
    {"claim_interface",       &CommandLost,      &GoneAtTheCommand},
    {"out 0x01 2052 ",        &CommandLost,      &GoneAtTheCommand},
    {"release_interface",     &AsUsual,          &GoneAfterIt},
    {"close",                 nullptr,           &GoneAfterIt},
    // The capture again.
    {"init",                  &AsUsual,          nullptr},
    {"get_device_list",       &SearchedTwice,    nullptr},
    {"get_device_descriptor", &AsUsual,          &GoneAfterIt},
    {"open",                  &SearchedTwice,    &GoneAfterIt},
    {"get_string_descriptor", &AsUsual,          &GoneAfterIt},
    {"free_device_list",      nullptr,           nullptr},
    {"claim_interface",       &SearchedTwice,    &GoneAfterIt},
    {"out 0x01 64 ",          &FrameLost,        &GoneInFrame3},
    {"in 0x81 ",              &FrameLost,        &GoneInFrame3},
    {"out 0x01 64 ",          &FrameLost,        &GoneInFrame4},
    {"in 0x81 ",              &FrameLost,        &GoneInFrame4},
    {"release_interface",     &AsUsual,          &AsUsual},
    {"close",                 nullptr,           &AsUsual},
};
// clang-format on

/// A call, 1 = the first, and the error that it returns; 0: the controller leaves with it.
struct FailingCall {
    int call;
    int error;
    const Ending* ending;
};

std::vector<FailingCall> failingCalls() {
    std::vector<FailingCall> all;
    int call = 0;
    for (const CallRow& row : CallRows) {
        ++call;
        if (row.unplugged != nullptr) {
            all.push_back({call, 0, row.unplugged});
        }
        for (const int error :
             {LIBUSB_ERROR_IO, LIBUSB_ERROR_NO_DEVICE, LIBUSB_ERROR_BUSY, LIBUSB_ERROR_TIMEOUT,
              LIBUSB_ERROR_PIPE, LIBUSB_ERROR_NO_MEM, LIBUSB_ERROR_OTHER}) {
            if (row.error != nullptr) {
                all.push_back({call, error, row.error});
            }
        }
    }
    return all;
}

std::string nameOf(const FailingCall& each) {
    const std::string call = "Call" + std::to_string(each.call);
    return call + (each.error == 0 ? "Unplugged" : "Error" + std::to_string(-each.error));
}

void PrintTo(const FailingCall& each, std::ostream* out) { *out << nameOf(each); }

class FailingInterruptedCapture : public NestedOperation,
                                  public testing::WithParamInterface<FailingCall> {
protected:
    void injectFailure() {
        constexpr int FirstCallAboutADevice = 3;
        const int call = GetParam().call;
        if (GetParam().error != 0) {
            bus.inject({.nth = call, .result = GetParam().error});
        } else if (call < FirstCallAboutADevice) {
            bus.unplug(0);
        } else {
            bus.inject({.nth = call, .unplug = true});
        }
    }
    static std::ptrdiff_t commandsSent() {
        return std::ranges::count(support::callLines(),
                                  "out 0x01 2052 1000ms #0: 81 C3 E7 FF 03 08 00*2046");
    }
    /// The frames that came, whole, and nothing else; no text file if none was asked for.
    void expectFiles() const {
        const std::vector<Frame> frames = repliedFrames();
        EXPECT_EQ(frames.size(), static_cast<std::size_t>(GetParam().ending->came));
        const std::uint32_t start = frames.empty() ? 0 : startOf(frames);
        expectRaw(1, frames, start);
        if (GetParam().ending->asked > 0) {
            expectText(1, false, frames, start);
        } else {
            EXPECT_THAT(fileNames(), testing::ElementsAre(testing::EndsWith(".raw")));
        }
        EXPECT_EQ(capture::openFilesIn(folder.path()), 0);
    }
};

TEST_P(FailingInterruptedCapture, EndsAsItsRowSays) {
    const Ending& ending = *GetParam().ending;
    plug(1);
    rounds.after(2, [] { usb.sendConfigCmd(0x03, 8); });
    rounds.afterSearch(LastSearch, [] { dump_running = false; });
    injectFailure();
    run(1, 4);
    EXPECT_EQ(rounds.frames(), ending.asked);
    EXPECT_EQ(commandsSent(), ending.commands);
    EXPECT_EQ(rounds.searches(), ending.searches);
    EXPECT_EQ(bus.openHandles(), 0);
    EXPECT_EQ(bus.claimedInterfaces(), 0);
    EXPECT_EQ(bus.deviceLists(), ending.listsLeft);
    EXPECT_EQ(MyLibusbDeviceHandle == nullptr, ending.handle == Handle::Cleared);
    expectFiles();
    expectNoStaleHandle();
}

INSTANTIATE_TEST_SUITE_P(In, FailingInterruptedCapture, testing::ValuesIn(failingCalls()),
                         [](const auto& test) { return nameOf(test.param); });

TEST_F(NestedOperation, HasARowForEachCallOfTheInterruptedCapture) {
    const support::Lines calls = interruptedCapture();
    ASSERT_EQ(calls.size(), std::size(CallRows));
    for (std::size_t i = 0; i < calls.size(); ++i) {
        EXPECT_THAT(calls[i], testing::HasSubstr(CallRows[i].call));
    }
}

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

TEST_F(NestedOperation, AfterOneThatKeepsTheControllerClaimedInTheSameRoundIsServed) {
    plug(1);
    dialogs.expectMessage("File Error", "Message");
    rounds.after(2, [&] {
        usb.uploadFile((folder.path() / "missing").c_str(), "name");
        EXPECT_TRUE(usb.sendConfigCmd(0x03, 8));
    });
    run(1, 4);
    expectFrames(4);
}

TEST_F(NestedOperation, AfterOneThatFoundNoNameInTheSameRoundIsServed) {
    plug(1);
    rounds.after(2, [&] {
        fail("libusb_get_string_descriptor_ascii", 0);
        EXPECT_FALSE(usb.sendConfigCmd(0x03, 7));
        EXPECT_TRUE(usb.sendConfigCmd(0x03, 8));
    });
    run(1, 4);
    expectFrames(4);
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
