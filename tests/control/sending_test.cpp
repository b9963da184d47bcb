// The commands that only send: their frames byte for byte and nothing else, what they say, and the
// same as JSON.

#include <csignal>

#include "tests/control/control_run.h"
#include "tests/control/pauses.h"

namespace {

using support::Arguments;
using support::ControlTest;
using support::Lines;
using support::lumadotctl;
using support::Ran;
using support::wire;

struct Sent {
    const char* name;
    Arguments arguments;
    Lines frames;
    std::string message;
    std::string json;  ///< behind the device
    std::vector<std::int64_t> pauses = {};
};

std::ostream& operator<<(std::ostream& stream, const Sent& row) { return stream << row.name; }

class Sending : public ControlTest, public testing::WithParamInterface<Sent> {
protected:
    Sending() {
        bus.plugController();
        support::takePauses();
    }
};

TEST_P(Sending, SendsItsFramesAndNothingElse) {
    EXPECT_EQ(lumadotctl(GetParam().arguments), (Ran{0, "", GetParam().message + "\n"}));
    EXPECT_EQ(wire(), GetParam().frames);
    EXPECT_EQ(support::takePauses(), GetParam().pauses);
}

TEST_P(Sending, TellsItAsJson) {
    Arguments arguments = GetParam().arguments;
    arguments.insert(arguments.begin(), {"--json", "--quiet"});
    EXPECT_EQ(lumadotctl(arguments), (Ran{0,
                                          "{\n"
                                          "  \"device\": {\n"
                                          "    \"bus\": 1,\n"
                                          "    \"port\": \"1\",\n"
                                          "    \"variant\": \"standard\",\n"
                                          "    \"product\": \"LUMADOT\"\n"
                                          "  },\n" +
                                              GetParam().json + "\n}\n",
                                          ""}));
}

const char* const ModeJson =
    "  \"mode\": {\n    \"number\": 2,\n    \"name\": \"Stern S.A.M.\"\n  }";
const char* const PresetJson =
    "  \"preset\": {\n    \"number\": 8,\n    \"name\": \"Palette 8 (Orange)\"\n  }";

INSTANTIATE_TEST_SUITE_P(
    Every, Sending,
    testing::Values(Sent{"mode_by_number",
                         {"mode", "2"},
                         {"81 C3 E7 FF 02 02 00*2046"},
                         "Selected input mode 2 \"Stern S.A.M.\".",
                         ModeJson},
                    Sent{"mode_by_name",
                         {"mode", "STERN s.a.m."},
                         {"81 C3 E7 FF 02 02 00*2046"},
                         "Selected input mode 2 \"Stern S.A.M.\".",
                         ModeJson},
                    Sent{"mode_by_a_part_of_its_name",
                         {"mode", "s.a.m"},
                         {"81 C3 E7 FF 02 02 00*2046"},
                         "Selected input mode 2 \"Stern S.A.M.\".",
                         ModeJson},
                    Sent{"mode_0",
                         {"mode", "PinMame"},
                         {"81 C3 E7 FF 02 00*2047"},
                         "Selected input mode 0 \"USB port\".",
                         "  \"mode\": {\n    \"number\": 0,\n    \"name\": \"USB port\"\n  }"},
                    Sent{
                        "mode_1_of_the_large_board",
                        {"mode", "Sega192x64"},
                        {"81 C3 E7 FF 02 01 00*2046"},
                        "Selected input mode 1 \"Bally/Williams\".",
                        "  \"mode\": {\n    \"number\": 1,\n    \"name\": \"Bally/Williams\"\n  }"},
                    Sent{"preset",
                         {"preset", "orange"},
                         {"81 C3 E7 FF 03 08 00*2046"},
                         "Selected palette preset 8 \"Palette 8 (Orange)\".",
                         PresetJson},
                    Sent{"brightness",
                         {"brightness", "200"},
                         {"81 C3 E7 FF 08 00*12 C8 00*2034"},
                         "Set the brightness to 200.",
                         "  \"brightness\": 200",
                         {50}},
                    Sent{"least_brightness",
                         {"brightness", "10"},
                         {"81 C3 E7 FF 08 00*12 0A 00*2034"},
                         "Set the brightness to 10.",
                         "  \"brightness\": 10",
                         {50}},
                    Sent{"store",
                         {"store"},
                         {"81 C3 E7 FF 01 00*2047"},
                         "Stored the working settings on the controller.",
                         "  \"sent\": \"store\""},
                    Sent{"reset",
                         {"reset"},
                         {"81 C3 E7 FF 00*2048"},
                         "Reset the controller.",
                         "  \"sent\": \"reset\""}),
    [](const auto& row) { return row.param.name; });

using SendingMore = ControlTest;

TEST_F(SendingMore, LogoIsTheImageFrame) {
    const auto board = bus.plugController();
    EXPECT_EQ(lumadotctl({"logo"}), (Ran{0, "", "Sent the built-in logo.\n"}));
    ASSERT_TRUE(board->image());
    EXPECT_EQ(board->image()->size(), 2052U);
    EXPECT_EQ(support::byteText(std::span(*board->image()).first(8)), "81 C3 E7 00 00 7F 00 7F");
}

TEST_F(SendingMore, MakesTheCallsOfOneConnectionAndGivesAllBack) {
    bus.plugController();
    lumadotctl({"mode", "2"});
    EXPECT_EQ(support::callLines(),
              (Lines{"libusb_init", "libusb_get_device_list", "libusb_get_device_descriptor #0",
                     "libusb_get_port_numbers #0", "libusb_get_bus_number #0",
                     "libusb_get_device_address #0", "libusb_open #0",
                     "libusb_get_string_descriptor_ascii index 2 length 256 #0",
                     "libusb_claim_interface 0 #0",
                     "out 0x01 2052 1000ms counted #0: 81 C3 E7 FF 02 02 00*2046",
                     "libusb_release_interface 0 #0", "libusb_close #0", "libusb_free_device_list",
                     "libusb_exit"}));
}

TEST_F(SendingMore, ATimeoutThatIsAskedForHoldsForTheTransfer) {
    bus.plugController();
    lumadotctl({"--timeout", "250", "mode", "2"});
    EXPECT_THAT(support::callLines(),
                testing::Contains("out 0x01 2052 250ms counted #0: 81 C3 E7 FF 02 02 00*2046"));
}

TEST_F(SendingMore, ResetWaitsUntilTheControllerAnswers) {
    bus.plugController();
    support::takePauses();
    const Ran ran = lumadotctl({"reset", "--wait"});
    EXPECT_EQ(ran.code, 0);
    EXPECT_THAT(ran.err, testing::ContainsRegex("^Reset the controller\\.\nIt answers again after "
                                                ".+\\.. s\\.\n$"));
    EXPECT_EQ(wire(), (Lines{"81 C3 E7 FF 00*2048",
                             "",  // It is restarting, and takes nothing.
                             "81 C3 E7 FF 10 00*2047", "(63 asked for)"}));
    EXPECT_EQ(support::takePauses(), (std::vector<std::int64_t>{100, 100}));
}

TEST_F(SendingMore, ResetWaitsForTheControllerThatWasResetAndNoOther) {
    bus.plugController();
    const auto other = bus.plugController();
    support::onPause([this] { bus.unplug(0); });
    bus.inject(
        {.function = "libusb_get_device_list", .nth = 4, .meanwhile = [] { std::raise(SIGTERM); }});
    EXPECT_EQ(lumadotctl({"reset", "--wait"}).code, 1);
    support::onPause({});
    EXPECT_EQ(wire(), (Lines{"81 C3 E7 FF 00*2048"}));
}

TEST_F(SendingMore, QuietSaysNothingAndStillSends) {
    bus.plugController();
    EXPECT_EQ(lumadotctl({"--quiet", "store"}), (Ran{0, "", ""}));
    EXPECT_EQ(wire(), (Lines{"81 C3 E7 FF 01 00*2047"}));
}

TEST_F(SendingMore, VerboseTellsEachTransfer) {
    bus.plugController();
    EXPECT_EQ(lumadotctl({"--verbose", "mode", "2"}),
              (Ran{0, "",
                   "out 0x01 2052 of 2052 bytes, 1000 ms, ok: 81 C3 E7 FF 02 02 00*2046\n"
                   "Selected input mode 2 \"Stern S.A.M.\".\n"}));
    bus.inject({.function = "libusb_bulk_transfer", .result = -7, .endpoint = 0x81});
    EXPECT_THAT(
        lumadotctl({"--verbose", "mode"}).err,
        testing::StartsWith("out 0x01 2052 of 2052 bytes, 1000 ms, ok: 81 C3 E7 FF 10 00*2047\n"
                            "in 0x81 0 of 63 bytes, 1000 ms, LIBUSB_ERROR_TIMEOUT\n"));
}

TEST_F(SendingMore, EnhancerIsSwitchedInTheRecordThatTheControllerHas) {
    const auto board =
        bus.plugController({.settings = {7,  3,  32, 33, 34, 35, 36, 37, 38, 39, 40, 41,
                                         42, 43, 44, 45, 46, 47, 48, 49, 50, 0,  77}});
    EXPECT_EQ(lumadotctl({"enhancer", "on"}), (Ran{0, "", "Switched the signal enhancer on.\n"}));
    EXPECT_EQ(wire(), (Lines{"81 C3 E7 FF 10 00*2047", "(63 asked for)",
                             "81 C3 E7 FF 20 07 03 20 21 22 23 24 25 26 27 28 29 2A 2B 2C 2D 2E 2F "
                             "30 31 32 01 4D 00*2024"}));
    EXPECT_EQ(lumadotctl({"enhancer", "off"}).code, 0);
    EXPECT_EQ(board->working()[21], 0);
}

TEST_F(SendingMore, EnhancerCannotBeSwitchedOnOlderFirmware) {
    bus.plugController({.layout = simulator::SettingsLayout::Older});
    const Ran ran = lumadotctl({"enhancer", "off"});
    EXPECT_EQ(ran, (Ran{1, "",
                        "lumadotctl: This controller's firmware does not tell bytes 2 to 20 of its "
                        "settings, without which they cannot be written back.\n"
                        "Update the controller's firmware.\n"}));
    EXPECT_EQ(wire(), support::SettingsRead);
}

}  // namespace
