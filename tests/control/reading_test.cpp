// The commands that read: what they ask for, and what they make of every layout of the reply.

#include "tests/control/control_run.h"
#include "tests/support/odd_files.h"

namespace {

using support::Arguments;
using support::ControlTest;
using support::Lines;
using support::lumadotctl;
using support::Ran;
using support::SettingsRead;
using support::wire;

const simulator::Record OtherSettings = {2,  5,  32, 33, 34, 35, 36, 37, 38, 39, 40, 41,
                                         42, 43, 44, 45, 46, 47, 48, 49, 50, 0,  99};

struct Reading : ControlTest {
    std::shared_ptr<simulator::Controller> plug(simulator::SettingsLayout layout) {
        return bus.plugController({.layout = layout, .settings = OtherSettings});
    }
    /// The next read brings these bytes.
    void answer(simulator::Packet bytes, int nth = 1) {
        bus.inject({.function = "libusb_bulk_transfer",
                    .nth = nth,
                    .reply = std::move(bytes),
                    .endpoint = 0x81});
    }
};

constexpr auto Newer = simulator::SettingsLayout::Newer;
constexpr auto Older = simulator::SettingsLayout::Older;

TEST_F(Reading, InfoTellsTheSettingsInWords) {
    plug(Newer);
    EXPECT_EQ(lumadotctl({"info"}),
              (Ran{0,
                   "Device       bus 1, port 1, standard (LUMADOT)\n"
                   "Firmware     V4.02b\n"
                   "Unique id    3A7F00C21D5E9B64\n"
                   "Mode         2 Stern S.A.M.\n"
                   "Preset       5 Palette 5 (Cyan)\n"
                   "Enhancer     off\n"
                   "Brightness   99\n"
                   "Bytes 2-20   20 21 22 23 24 25 26 27 28 29 2A 2B 2C 2D 2E 2F 30 31 32\n",
                   ""}));
    EXPECT_EQ(wire(), (Lines{"81 C3 E7 FF 10 00*2047", "(63 asked for)", "81 C3 E7 FF 11 00*2047",
                             "(63 asked for)"}));
}

TEST_F(Reading, InfoAsJsonHasTheKeysThatScriptsRelyOn) {
    bus.plug({.productString = "LUMADOT XL",
              .controller = std::make_shared<simulator::Controller>(
                  simulator::ControllerOptions{.settings = OtherSettings}),
              .bus = 3,
              .ports = {1, 4}});
    EXPECT_EQ(lumadotctl({"info", "--json"}), (Ran{0,
                                                   R"doc({
  "device": {
    "bus": 3,
    "port": "1.4",
    "variant": "xl",
    "product": "LUMADOT XL"
  },
  "firmware": "V4.02b",
  "uniqueId": "3A7F00C21D5E9B64",
  "settings": {
    "mode": {
      "number": 2,
      "name": "Stern S.A.M."
    },
    "preset": {
      "number": 5,
      "name": "Palette 5 (Cyan)"
    },
    "enhancer": false,
    "brightness": 99,
    "record": "0205202122232425262728292A2B2C2D2E2F3031320063"
  }
}
)doc",
                                                   ""}));
}

TEST_F(Reading, OlderFirmwareTellsFourSettingsOnly) {
    plug(Older);
    EXPECT_EQ(lumadotctl({"info"}).out,
              "Device       bus 1, port 1, standard (LUMADOT)\n"
              "Firmware     unknown\n"
              "Unique id    3A7F00C21D5E9B64\n"
              "Mode         2 Stern S.A.M.\n"
              "Preset       5 Palette 5 (Cyan)\n"
              "Enhancer     off\n"
              "Brightness   99\n"
              "Bytes 2-20   not told by this firmware\n");
    bus.inject({.function = "libusb_bulk_transfer", .nth = 2, .result = -7, .endpoint = 0x81});
    const Ran ran = lumadotctl({"info", "--json"});
    EXPECT_EQ(ran.code, 0);
    EXPECT_THAT(ran.out, testing::HasSubstr("\"firmware\": null,\n  \"uniqueId\": null"));
    EXPECT_THAT(ran.out, testing::HasSubstr("\"record\": null"));
}

TEST_F(Reading, NewerFirmwareHasToTellItsId) {
    plug(Newer);
    bus.inject({.function = "libusb_bulk_transfer", .nth = 2, .result = -7, .endpoint = 0x81});
    EXPECT_EQ(lumadotctl({"info"}).code, 6);
}

TEST_F(Reading, ValuesThatNothingStandsForAreShownAsTheyAre) {
    simulator::Record record{};
    record.fill(200);
    bus.plugController({.settings = record});
    const Ran ran = lumadotctl({"info"});
    EXPECT_THAT(ran.out, testing::HasSubstr("Mode         200 (no name)\n"
                                            "Preset       200 (no name)\n"
                                            "Enhancer     on\n"
                                            "Brightness   200\n"));
    EXPECT_THAT(lumadotctl({"mode", "--json"}).out,
                testing::HasSubstr("\"number\": 200,\n    \"name\": null"));
}

TEST_F(Reading, TextsOfTheControllerCannotSpeakToTheTerminal) {
    bus.plugController({.firmware = "V\x1b[2J\xff", .uniqueId = "a\nb"}, "LUMADOT\a");
    const Ran ran = lumadotctl({"info"});
    EXPECT_THAT(ran.out, testing::HasSubstr("(LUMADOT\\x07)"));
    EXPECT_THAT(ran.out, testing::HasSubstr("V\\x1B[2J\\xFF\n"));
    EXPECT_THAT(ran.out, testing::HasSubstr("a\\x0Ab\n"));
    EXPECT_THAT(lumadotctl({"info", "--json"}).out,
                testing::HasSubstr("\"firmware\": \"V\\u001b[2J\xEF\xBF\xBD\""));
}

struct Shown {
    const char* name;
    Arguments arguments;
    std::string text;
    std::string json;
};

class ShowingOne : public Reading, public testing::WithParamInterface<Shown> {};

TEST_P(ShowingOne, ReadsTheSettingsAfresh) {
    plug(Newer);
    EXPECT_EQ(lumadotctl(GetParam().arguments), (Ran{0, GetParam().text + "\n", ""}));
    EXPECT_EQ(wire(), SettingsRead);
}

TEST_P(ShowingOne, KnowsItFromOlderFirmwareToo) {
    plug(Older);
    EXPECT_EQ(lumadotctl(GetParam().arguments), (Ran{0, GetParam().text + "\n", ""}));
}

TEST_P(ShowingOne, TellsItAsJson) {
    plug(Newer);
    Arguments arguments = GetParam().arguments;
    arguments.push_back("--json");
    EXPECT_THAT(lumadotctl(arguments).out, testing::EndsWith("  },\n" + GetParam().json + "\n}\n"));
}

INSTANTIATE_TEST_SUITE_P(
    Every, ShowingOne,
    testing::Values(Shown{"mode",
                          {"mode"},
                          "2 Stern S.A.M.",
                          "  \"mode\": {\n    \"number\": 2,\n    \"name\": \"Stern S.A.M.\"\n  }"},
                    Shown{"preset",
                          {"preset"},
                          "5 Palette 5 (Cyan)",
                          "  \"preset\": {\n    \"number\": 5,\n    \"name\": \"Palette 5 "
                          "(Cyan)\"\n  }"},
                    Shown{"brightness", {"brightness"}, "99", "  \"brightness\": 99"},
                    Shown{"enhancer", {"enhancer"}, "off", "  \"enhancer\": false"}),
    [](const auto& row) { return row.param.name; });

TEST_F(Reading, RepliesThatAreTooShortAreNoAnswer) {
    plug(Newer);
    const simulator::Packet whole = {0, 0, 0, 0, 0x56, 0x34, 0x2E, 0x30, 0x32, 0x62, 2,
                                     5, 1, 1, 1, 1,    1,    1,    1,    1,    1,    1,
                                     1, 1, 1, 1, 1,    1,    1,    1,    1,    0,    99};
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        SCOPED_TRACE(length);
        answer({whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length)});
        // What ends before the mark of the newer layout is read as the older one.
        const bool enough = length == 33 || length == 4;
        const Ran ran = lumadotctl({"mode"});
        EXPECT_EQ(ran.code, enough ? 0 : 6);
        if (length == 20) {
            EXPECT_EQ(ran.err,
                      "lumadotctl: The controller's settings reply is too short: 20 of 33 bytes.\n"
                      "Unplug the controller, plug it in again and try once more.\n");
        }
    }
}

TEST_F(Reading, ListShowsEveryControllerAndMarksTheFirst) {
    bus.plug({.vendor = 0x1111});
    bus.plugController({.uniqueId = "one"});
    bus.plugController({.board = simulator::Board::Xl, .firmware = "V9.99z", .uniqueId = "two"},
                       "LUMADOT XL");
    bus.plug({.refuseOpen = true, .bus = 2, .ports = {1, 3}});
    bus.plug({.refuseClaim = true, .ports = {9}});
    bus.plug({.productString = "another", .ports = {8}});
    EXPECT_EQ(lumadotctl({"list"}),
              (Ran{0,
                   "  PLACE  VARIANT   PRODUCT     FIRMWARE  UNIQUE ID  ACCESS  HELD BY\n"
                   "* 1-2    standard  LUMADOT     V4.02b    one        yes     -\n"
                   "  1-3    xl        LUMADOT XL  V9.99z    two        yes     -\n"
                   "  2-1.3  unknown   -           -         -          no      -\n"
                   "  1-9    standard  LUMADOT     -         -          yes     another program\n"
                   "  1-8    unknown   another     -         -          yes     -\n"
                   "* is the one that the window takes.\n",
                   ""}));
}

TEST_F(Reading, ListAsJsonHasNullForWhatCannotBeRead) {
    bus.plugController();
    bus.plug({.refuseOpen = true});
    bus.plug({.refuseClaim = true});
    EXPECT_EQ(lumadotctl({"list", "--json"}), (Ran{0,
                                                   R"doc({
  "controllers": [
    {
      "bus": 1,
      "port": "1",
      "variant": "standard",
      "product": "LUMADOT",
      "firmware": "V4.02b",
      "uniqueId": "3A7F00C21D5E9B64",
      "access": true,
      "holder": null,
      "takenByWindow": true
    },
    {
      "bus": 1,
      "port": "2",
      "variant": "unknown",
      "product": null,
      "firmware": null,
      "uniqueId": null,
      "access": false,
      "holder": null,
      "takenByWindow": false
    },
    {
      "bus": 1,
      "port": "3",
      "variant": "standard",
      "product": "LUMADOT",
      "firmware": null,
      "uniqueId": null,
      "access": true,
      "holder": {
        "program": null,
        "pid": null
      },
      "takenByWindow": false
    }
  ]
}
)doc",
                                                   ""}));
}

const char* const NothingOnTheBus = "There is no controller (0314:e457) on the USB bus.";
const char* const PlugItIn =
    "Plug it in and switch the machine on; if it is, try another cable and another port.";

TEST_F(Reading, ListOfAnEmptyBus) {
    EXPECT_EQ(lumadotctl({"list"}),
              (Ran{3, "", std::string("lumadotctl: ") + NothingOnTheBus + "\n" + PlugItIn + "\n"}));
    EXPECT_EQ(lumadotctl({"list", "--json"}).out, std::string(R"doc({
  "controllers": [],
  "error": {
    "code": 3,
    "name": null,
    "message": ")doc") + NothingOnTheBus + "\",\n    \"hint\": \"" +
                                                      PlugItIn + "\"\n  }\n}\n");
}

struct Found {
    const char* name;
    simulator::Device device;
    int code;
    std::string finding, sentences;
};

class Checking : public Reading, public testing::WithParamInterface<Found> {};

TEST_P(Checking, SaysWhatIsTheMatterInTwoSentencesAndEndsWithItsCode) {
    bus.plug(GetParam().device);
    EXPECT_EQ(lumadotctl({"check"}), (Ran{GetParam().code, GetParam().sentences + "\n", ""}));
    const std::string json = lumadotctl({"check", "--json"}).out;
    EXPECT_THAT(json, testing::HasSubstr("\"finding\": \"" + GetParam().finding + "\""));
    EXPECT_THAT(
        json, testing::HasSubstr("\"error\": {\n    \"code\": " + std::to_string(GetParam().code)));
}

const char* const Replug = " Unplug the controller, plug it in again and try once more.";

INSTANTIATE_TEST_SUITE_P(
    Every, Checking,
    testing::Values(
        Found{"busy",
              {.refuseClaim = true},
              5,
              "busy",
              "Another program is using the controller. Close that program or end its capture, and "
              "try again."},
        Found{"driver_bound",
              {.kernelDriver = true},
              5,
              "driver-bound",
              "A driver of the system holds the controller's interface. Find the driver with "
              "\"lsusb -t\", unload it with \"sudo modprobe -r\" and try again."},
        Found{"empty_name",
              {.stringResult = 0},
              6,
              "name-unreadable",
              std::string("The controller's product name cannot be read (it is empty).") + Replug},
        Found{"unreadable_name",
              {.stringResult = -9},
              6,
              "name-unreadable",
              std::string("The controller's product name cannot be read (LIBUSB_ERROR_PIPE).") +
                  Replug},
        Found{"no_answer",
              {.controller = nullptr},
              6,
              "no-answer",
              std::string("The controller does not answer (LIBUSB_ERROR_TIMEOUT).") + Replug}),
    [](const auto& row) { return row.param.name; });

TEST_F(Reading, CheckOfAControllerThatWorksAsksForItsSettingsOnly) {
    plug(Newer);
    EXPECT_EQ(lumadotctl({"check"}),
              (Ran{0, "The controller answers. There is nothing to do.\n", ""}));
    EXPECT_EQ(wire(), SettingsRead);
    EXPECT_EQ(lumadotctl({"check", "--json"}).out, R"doc({
  "check": {
    "finding": "works",
    "message": "The controller answers.",
    "hint": "There is nothing to do."
  },
  "device": {
    "bus": 1,
    "port": "1",
    "variant": "standard",
    "product": "LUMADOT"
  }
}
)doc");
}

TEST_F(Reading, CheckOfAnEmptyBus) {
    EXPECT_EQ(lumadotctl({"check"}),
              (Ran{3, std::string(NothingOnTheBus) + " " + PlugItIn + "\n", ""}));
    EXPECT_THAT(lumadotctl({"check", "--json"}).out, testing::HasSubstr("\"device\": null"));
}

TEST_F(Reading, CheckWithoutPermissionNamesTheRule) {
    bus.plug({.refuseOpen = true});
    const Ran ran = lumadotctl({"check"});
    EXPECT_EQ(ran.code, 4);
    EXPECT_THAT(ran.out, testing::StartsWith("You may not open the controller, "));
    EXPECT_EQ(lumadotctl({"info"}).code, 4);
}

}  // namespace
