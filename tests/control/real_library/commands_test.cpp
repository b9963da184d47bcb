// The commands on the real USB library: that it takes the calls, what reaches the board, and what
// it says when it lets nobody in. Every fault of every call is tested on the simulated bus.

#include <gmock/gmock.h>
#include <libusb.h>

#include <cerrno>
#include <filesystem>
#include <initializer_list>

#include "tests/control/ran.h"
#include "tests/device/real_library/mocked_usbfs.h"
#include "tests/support/odd_files.h"
#include "tests/support/temporary_folder.h"

namespace {

using support::lumadotctl;
using support::MockedUsbfs;
using support::Ran;
using testing::ContainsRegex;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;
using Bytes = std::vector<std::uint8_t>;

/// A packet of this length that starts with `head` and is zero behind it.
Bytes packet(std::initializer_list<std::uint8_t> head, std::size_t length = 2052) {
    Bytes bytes(head);
    bytes.resize(length);
    return bytes;
}

const Bytes SettingsRequest = packet({0x81, 0xC3, 0xE7, 0xFF, 0x10});
const Bytes IdRequest = packet({0x81, 0xC3, 0xE7, 0xFF, 0x11});

class RealControl : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(MockedUsbfs::unavailable(), ""); }

    static std::string place(const MockedUsbfs& controller) {
        return "1-" + std::to_string(controller.address());
    }
    std::string file(const std::string& name) const { return (folder.path() / name).string(); }

    support::TemporaryFolder folder;
};

TEST_F(RealControl, WithoutControllerSaysSo) {
    EXPECT_EQ(lumadotctl({"list"}).code, 3);
    EXPECT_EQ(lumadotctl({"check"}).code, 3);
    EXPECT_EQ(lumadotctl({"mode", "2"}).code, 3);
}

TEST_F(RealControl, ListTellsEveryController) {
    const MockedUsbfs controller;
    EXPECT_EQ(lumadotctl({"list"}).code, 0);
    EXPECT_THAT(lumadotctl({"list"}).out,
                ContainsRegex("\\* " + place(controller) +
                              " +standard +LUMADOT +V4.02b +3A7F00C21D5E9B64 +yes +-\n"));
    EXPECT_THAT(controller->received(),
                ElementsAre(SettingsRequest, IdRequest, SettingsRequest, IdRequest));
    const MockedUsbfs other({.product = "LUMADOT XL"});
    EXPECT_THAT(lumadotctl({"list"}).out, ContainsRegex(place(other) + " +xl +LUMADOT XL +V4.02b"));
}

TEST_F(RealControl, CheckFindsThatItWorks) {
    const MockedUsbfs controller;
    EXPECT_EQ(lumadotctl({"check"}),
              (Ran{0, "The controller answers. There is nothing to do.\n", ""}));
    EXPECT_THAT(controller->received(), ElementsAre(SettingsRequest));
}

TEST_F(RealControl, InfoTellsTheSettings) {
    const MockedUsbfs controller({.product = "LUMADOT XL"});
    const Ran ran = lumadotctl({"info"});
    EXPECT_THAT(ran.out, StartsWith("Device       bus 1, port " +
                                    std::to_string(controller.address()) + ", xl (LUMADOT XL)\n" +
                                    "Firmware     V4.02b\nUnique id    3A7F00C21D5E9B64\n"));
    EXPECT_EQ(ran.code, 0);
}

TEST_F(RealControl, ModeReachesTheBoardThatIsMeant) {
    const MockedUsbfs one;
    const MockedUsbfs two({.board = {.uniqueId = "SECOND"}});
    EXPECT_EQ(lumadotctl({"--device", place(two), "mode", "2"}).code, 0);
    EXPECT_EQ(lumadotctl({"--device", "SECOND", "mode"}).out, "2 Stern S.A.M.\n");
    EXPECT_EQ(lumadotctl({"--device", place(one), "mode"}).out, "0 USB port\n");
    EXPECT_EQ(two->received().front(), packet({0x81, 0xC3, 0xE7, 0xFF, 0x02, 2}));
}

TEST_F(RealControl, UploadArrivesWhole) {
    const MockedUsbfs controller;
    const Bytes content = support::pattern(1100);
    support::writeFile(file("a.bin"), content);
    EXPECT_EQ(lumadotctl({"upload", file("a.bin")}).code, 0);
    EXPECT_EQ(controller->board([](auto& board) { return board.files().at("a.bin"); }), content);
    EXPECT_EQ(controller->received().size(), 5U);
}

TEST_F(RealControl, RecordWritesWhatTheBoardCaptures) {
    const MockedUsbfs controller;
    EXPECT_EQ(lumadotctl({"record", folder.path().string(), "--frames", "4", "--mode", "6"}).code,
              0);
    EXPECT_THAT(
        controller->received(),
        ElementsAre(SettingsRequest, packet({0x81, 0xC3, 0xE7, 0xFF, 0x02, 6}),
                    packet({0x02, 0xC3, 0xE8, 12}, 64), packet({0x02, 0xC3, 0xE8, 12}, 64),
                    packet({0x02, 0xC3, 0xE8, 12}, 64), packet({0x02, 0xC3, 0xE8, 12}, 64)));
    const simulator::Controller sameBoard;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
        const Bytes bytes = support::readFile(entry.path());
        if (entry.path().extension() == ".txt") {
            EXPECT_EQ(bytes.size(), 4 * (12 + 32 * 130 + 2U));
            continue;
        }
        ASSERT_EQ(bytes.size(), 8 + 4 * (4 + 12 * 512U));
        for (std::uint32_t i = 0; i < 4; ++i) {
            const auto planes = bytes.begin() + 12 + i * (4 + 12 * 512);
            EXPECT_EQ(Bytes(planes, planes + 12 * 512), sameBoard.capturedPlanes(i, 12)) << i;
        }
    }
}

/// What a command says when it is not let in, and that it leaves the board alone.
void expectRefusal(const MockedUsbfs& controller, int code, const std::string& message,
                   const std::string& name) {
    for (const support::Arguments& arguments :
         {support::Arguments{"info"}, {"mode", "2"}, {"record", "/tmp"}}) {
        const Ran ran = lumadotctl(arguments);
        EXPECT_EQ(ran.code, code) << ran;
        EXPECT_THAT(ran.err, StartsWith("lumadotctl: " + message));
    }
    const Ran check = lumadotctl({"check", "--json"});
    EXPECT_EQ(check.code, code) << check;
    EXPECT_THAT(check.out, HasSubstr("\"name\": \"" + name + "\""));
    EXPECT_THAT(lumadotctl({"check"}).out, StartsWith(message));
    EXPECT_THAT(controller->transfers(), IsEmpty());
}

TEST_F(RealControl, WithoutPermissionSaysSo) {
    const MockedUsbfs controller;
    controller.forbid();
    // The mocked bus lets only its owner listen for events; the library listens once.
    libusb_context* listening = nullptr;
    ASSERT_EQ(libusb_init(&listening), 0);
    const support::WithoutPrivileges nobody;
    expectRefusal(controller, 4, "You may not open the controller, ", "LIBUSB_ERROR_ACCESS");
    const Ran ran = lumadotctl({"list"});
    EXPECT_EQ(ran.code, 0);
    EXPECT_THAT(ran.out, ContainsRegex("\\* " + place(controller) + " +unknown +- +- +- +no +-\n"));
    libusb_exit(listening);
}

TEST_F(RealControl, ControllerThatAnotherProgramHoldsIsBusy) {
    const MockedUsbfs controller;
    controller->setFaults({.claimError = EBUSY});
    expectRefusal(controller, 5, "Another program is using the controller.", "LIBUSB_ERROR_BUSY");
    EXPECT_THAT(lumadotctl({"list"}).out, HasSubstr("yes     another program\n"));
}

TEST_F(RealControl, ControllerThatADriverHoldsIsBusy) {
    const MockedUsbfs controller;
    controller->setFaults({.driver = "usbhid"});
    expectRefusal(controller, 5, "A driver of the system holds the controller's interface.",
                  "LIBUSB_ERROR_BUSY");
}

TEST_F(RealControl, ControllerThatDoesNotAnswerIsReported) {
    const MockedUsbfs controller;
    controller->setFaults({.holdReplies = true});
    const Ran ran = lumadotctl({"--timeout", "50", "mode"});
    EXPECT_EQ(ran.code, 6);
    EXPECT_THAT(ran.err, HasSubstr("(LIBUSB_ERROR_TIMEOUT)"));
    controller->setFaults({.stallStrings = true});
    EXPECT_EQ(lumadotctl({"check"}).code, 6);
    EXPECT_EQ(lumadotctl({"mode", "2"}).code, 0);
}

TEST_F(RealControl, ControllerThatIsPulledOutEndsARecording) {
    const MockedUsbfs controller;
    controller->setFaults({.pullOutAt = 7});
    EXPECT_EQ(lumadotctl({"record", folder.path().string()}).code, 3);
}

/// Nothing stays claimed.
TEST_F(RealControl, EveryCommandGivesTheControllerBack) {
    const MockedUsbfs controller;
    for (const char* const command : {"list", "check", "info", "mode", "store", "logo"}) {
        EXPECT_EQ(lumadotctl({command}).code, 0) << command;
    }
}

}  // namespace
