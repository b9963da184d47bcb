// --dry-run: the frames that would be sent, and no call to the USB library.

#include "pictures/png.h"
#include "tests/control/control_run.h"
#include "tests/control/pauses.h"
#include "tests/pictures/decoded.h"
#include "tests/recording/dumps.h"

namespace {

using support::Arguments;
using support::ControlTest;
using support::lumadotctl;
using support::Ran;

struct Dry {
    const char* name;
    Arguments arguments;
    std::string out;
    bool replyNeeded = false;
};

class DryRun : public ControlTest, public testing::WithParamInterface<Dry> {
protected:
    DryRun() {
        std::filesystem::current_path(folder.path());
        const std::vector<std::uint8_t> bytes(56, 1);
        support::writeFile("a.pal", bytes);
        support::writeFile("a.dat", std::span(bytes).first(23));
        support::writeFile("hi", std::span(bytes).first(2));
        support::writeFile("a.txt", dumps::bytesOf(dumps::plainText(0)));
        pictures::writePng(decoded::chanceFrames({1}, {}), 0, {}, "a.png");
        support::takePauses();
    }
    ~DryRun() override { std::filesystem::current_path("/"); }
};

TEST_P(DryRun, PrintsTheFramesAndCallsNothing) {
    Arguments arguments = GetParam().arguments;
    arguments.push_back("--dry-run");
    EXPECT_EQ(
        lumadotctl(arguments),
        (Ran{0, GetParam().out,
             GetParam().replyNeeded ? "To go on, the controller's reply would be needed.\n" : ""}));
    EXPECT_TRUE(bus.calls().empty());
    EXPECT_TRUE(support::takePauses().empty());
    arguments.push_back("--json");
    EXPECT_THAT(
        lumadotctl(arguments).out,
        testing::AllOf(testing::StartsWith("{\n  \"dryRun\": {\n    \"frames\": [\n"),
                       testing::EndsWith(GetParam().replyNeeded
                                             ? "],\n    \"replyNeeded\": true\n  }\n}\n"
                                             : "],\n    \"replyNeeded\": false\n  }\n}\n")));
}

std::string frame(const std::string& bytes) {
    return "out 0x01 2052 bytes, 1000 ms: 81 C3 E7 FF " + bytes + "\n";
}

const std::string Settings = frame("10 00*2047");
const std::string Ones23 = "01 01 01 01 01 01 01 01 01 01 01 01 01 01 01 01 01 01 01 01 01 01 01 ";

INSTANTIATE_TEST_SUITE_P(
    Every, DryRun,
    testing::Values(Dry{"list", {"list"}, Settings, true}, Dry{"check", {"check"}, Settings, true},
                    Dry{"info", {"info"}, Settings, true}, Dry{"mode", {"mode"}, Settings, true},
                    Dry{"mode_2", {"mode", "2"}, frame("02 02 00*2046")},
                    Dry{"preset_8", {"preset", "8"}, frame("03 08 00*2046")},
                    Dry{"brightness", {"brightness", "200"}, frame("08 00*12 C8 00*2034")},
                    Dry{"enhancer_on", {"enhancer", "on"}, Settings, true},
                    Dry{"palette",
                        {"palette", "a.pal", "--store"},
                        frame("03 00*2047") +
                            frame("04 00 01 " + Ones23 + Ones23 + "01 01 00*1997") +
                            frame("12 00*2047")},
                    Dry{"store", {"store"}, frame("01 00*2047")},
                    Dry{"reset", {"reset"}, frame("00*2048")},
                    Dry{"reset_wait", {"reset", "--wait"}, frame("00*2048") + Settings, true},
                    Dry{"settings_save", {"settings", "save", "b.dat"}, Settings, true},
                    Dry{"settings_load",
                        {"settings", "load", "a.dat", "--store"},
                        frame("20 " + Ones23 + "00*2024") + frame("01 00*2047")},
                    Dry{"upload",
                        {"upload", "hi"},
                        frame("0A 00 68 69 00*2044") + frame("0A 01 00 02 01 01 00*2042") +
                            frame("0A FF 00*2046")},
                    Dry{"record", {"record", "--mode", "2"}, Settings, true},
                    Dry{"play", {"play", "a.txt"}, Settings, true},
                    Dry{"show", {"show", "a.png"}, Settings, true}),
    [](const auto& row) { return row.param.name; });

using DryRunOfAFile = ControlTest;

TEST_F(DryRunOfAFile, WritesNothing) {
    EXPECT_EQ(lumadotctl({"palette", "--write", file("a.pal"), "--preset", "1", "--dry-run"}),
              (Ran{0, "", "Would write \"" + file("a.pal") + "\".\n"}));
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

}  // namespace
