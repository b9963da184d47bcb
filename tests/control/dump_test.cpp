// `dump`: what is said about recordings, shown of them and made of them.

#include <csignal>
#include <cstdlib>
#include <nlohmann/json.hpp>

#include "tests/control/control_run.h"
#include "tests/control/pauses.h"
#include "tests/pictures/decoded.h"
#include "tests/recording/dumps.h"
#include "tests/support/variables.h"

namespace {

using namespace dumps::joining;
using support::Arguments;
using support::ControlTest;
using support::lumadotctl;
using support::Ran;
using Bytes = std::vector<std::uint8_t>;
using Json = nlohmann::ordered_json;

struct Dump : ControlTest {
    Dump() {
        write("a.txt", dumps::bytesOf(dumps::plainText(1000, '0') + dumps::plainText(1050, '3') +
                                      dumps::plainText(1250, '3')));
        write("a.raw",
              dumps::rawHeader(3) + dumps::plainRaw(1000, 3, 0xFF) + dumps::plainRaw(1100, 3, 0));
        support::setVariable("COLUMNS", "");
    }
    void write(const std::string& name, const Bytes& bytes) const {
        support::writeFile(file(name), bytes);
    }
    Ran dump(Arguments arguments) const {
        arguments.insert(arguments.begin(), "dump");
        const Ran ran = lumadotctl(arguments);
        EXPECT_TRUE(bus.calls().empty()) << "needs no controller";
        return ran;
    }
    Json json(Arguments arguments) const {
        arguments.emplace_back("--json");
        return Json::parse(dump(arguments).out);
    }
    std::vector<std::string> files() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
            names.push_back(entry.path().filename().string());
        }
        std::ranges::sort(names);
        return names;
    }
};

TEST_F(Dump, InfoSaysWhatIsInATextRecording) {
    EXPECT_EQ(dump({"info", file("a.txt")}), (Ran{0, "File         " + file("a.txt") + R"(
Kind         text
Size         128 x 32 dots
Frames       3
First        0x000003E8 (1000 ms)
Last         0x000004E2 (1250 ms)
Duration     0.250 s
Mean rate    8.0 a second
Longest gap  0.200 s after frame 1
Equal        1 frames equal the one before
Damaged      nothing
)",
                                                  ""}));
}

TEST_F(Dump, InfoIsAnObjectForOneFileAndAnArrayForSeveral) {
    const Json raw = json({"info", file("a.raw")});
    EXPECT_EQ(raw, Json::parse(R"({"file": )" + Json(file("a.raw")).dump() +
                               R"(, "kind": "raw", "width": 128,
        "height": 32, "planes": 3, "frames": 2, "firstMs": 1000, "lastMs": 1100, "durationMs": 100,
        "framesPerSecond": 10.0, "longestGapMs": 100, "longestGapAfter": 0, "equalNeighbours": 0,
        "missing": null, "damagedPlaces": 0, "damaged": []})"));
    const Json both = json({"info", file("a.raw"), file("a.txt")});
    ASSERT_EQ(both.size(), 2U);
    EXPECT_EQ(both[0], raw);
    EXPECT_EQ(both[1]["kind"], "text");
    EXPECT_TRUE(both[1]["planes"].is_null());
}

TEST_F(Dump, InfoListsDamagedPlacesWithOffsetAndReason) {
    write("a.txt", dumps::bytesOf(dumps::plainText(1) + "rubbish\r\n" + dumps::plainText(2) +
                                  "0x00000003\r\n0000"));
    const Ran ran = dump({"info", file("a.txt")});
    EXPECT_EQ(ran.code, 0);
    EXPECT_THAT(ran.out, testing::HasSubstr("Frames       2\n"));
    EXPECT_THAT(ran.out,
                testing::EndsWith("Damaged      2 places\n"
                                  "  offset 4174: no time stamp where a frame should start\n"
                                  "  offset 8357: the file ends inside a frame\n"));
    const Json damaged = json({"info", file("a.txt")})["damaged"];
    ASSERT_EQ(damaged.size(), 2U);
    EXPECT_EQ(damaged[0]["offset"], 4174);
    EXPECT_EQ(damaged[0]["reason"], "no time stamp where a frame should start");
}

TEST_F(Dump, InfoOfAnEmptyRecordingKnowsNoTimes) {
    write("a.raw", dumps::rawHeader(3));
    const Json info = json({"info", file("a.raw")});
    EXPECT_EQ(info["frames"], 0);
    EXPECT_TRUE(info["firstMs"].is_null());
    EXPECT_EQ(dump({"info", file("a.raw")}).code, 0);
}

TEST_F(Dump, InfoOfOneThatCannotBeReadLeavesTheOthers) {
    const Ran ran = dump({"info", file("none"), file("a.txt"), "--json"});
    EXPECT_EQ(ran.code, 7);
    EXPECT_THAT(ran.err, testing::HasSubstr("No such file or directory."));
    const Json both = Json::parse(ran.out);
    ASSERT_EQ(both.size(), 2U);
    EXPECT_EQ(both[0]["file"], file("none"));
    EXPECT_EQ(both[0]["error"]["code"], 7);
    EXPECT_EQ(both[1]["frames"], 3);
}

TEST_F(Dump, InfoOfARawRecordingOfTheLargeBoardSaysWhatIsMissing) {
    write("050324_140709_lumadot_dump.raw", dumps::rawHeader(3) + dumps::plainRaw(1, 3, 0xFF));
    write("050324_140709_lumadot_dump.txt", dumps::bytesOf(dumps::plainText(1, '3', true)));
    const std::string raw = file("050324_140709_lumadot_dump.raw");
    EXPECT_THAT(dump({"info", raw}).out, testing::HasSubstr("Missing      "));
    EXPECT_TRUE(json({"info", raw})["missing"].is_string());
}

// In the terminal.

TEST_F(Dump, ShowFitsTheWidth) {
    std::string line = dumps::plainText(0, '0');
    line.replace(12, 4, "ffff");      // The first row: dots 0 to 3.
    line.replace(12 + 130, 2, "ff");  // The second: dots 0 and 1.
    write("a.txt", dumps::bytesOf(line));
    const auto first = [&](const std::string& columns) {
        support::setVariable("COLUMNS", columns);
        const Ran ran = dump({"show", file("a.txt"), "--preset", "7"});
        EXPECT_EQ(ran.code, 0);
        const auto lines = std::ranges::count(ran.out, '\n');
        return std::to_string(lines) + " " + std::to_string(ran.out.find('\n')) + " " +
               ran.out.substr(0, 5);
    };
    EXPECT_EQ(first("128"), "16 128 @@== ");
    EXPECT_EQ(first("300"), "16 128 @@== ");
    EXPECT_EQ(first("80"), "8 64 =:   ");
    EXPECT_EQ(first("127"), "8 64 =:   ");
    EXPECT_EQ(first("40"), "4 32 .    ");
}

TEST_F(Dump, ShowTakesHalfBlocksInTheColoursThatThereAre) {
    std::string text = dumps::plainText(0, '0');
    text.replace(12, 2, "f1");
    write("a.txt", dumps::bytesOf(text));
    support::setVariable("COLUMNS", "128");
    const auto line = [&](const std::string& colours) {
        const Ran ran =
            dump({"show", file("a.txt"), "--colours", colours, "--preset", "8", "--mode", "4"});
        return ran.out.substr(0, ran.out.find('\n'));
    };
    const std::string block = "\xE2\x96\x80";
    std::string rest = block;
    for (int i = 3; i < 128; ++i) {
        rest += block;
    }
    EXPECT_EQ(line("full"), "\x1B[38;2;255;135;0;48;2;0;0;0m" + block +
                                "\x1B[38;2;17;9;0;48;2;0;0;0m" + block +
                                "\x1B[38;2;0;0;0;48;2;0;0;0m" + rest + "\x1B[0m");
    EXPECT_EQ(line("256"), "\x1B[38;5;208;48;5;16m" + block + "\x1B[38;5;232;48;5;16m" + block +
                               "\x1B[38;5;16;48;5;16m" + rest + "\x1B[0m");
}

TEST_F(Dump, ShowGivesAFramesDigitsToScripts) {
    const Json frame = json({"show", file("a.txt"), "--frame", "1"})["frame"];
    EXPECT_EQ(frame["number"], 1);
    EXPECT_EQ(frame["stampMs"], 1050);
    EXPECT_EQ(frame["offset"], 4174);
    ASSERT_EQ(frame["rows"].size(), 32U);
    EXPECT_EQ(frame["rows"][31], std::string(128, '3'));
    EXPECT_EQ(dump({"show", file("a.txt"), "--frame", "3"}).code, 2);
    EXPECT_EQ(dump({"show", file("a.txt"), "--play", "--json"}).code, 2);
}

TEST_F(Dump, ShowPlaysInTheRecordingsTimeUntilASignalComes) {
    support::takePauses();
    Ran ran = dump({"show", file("a.txt"), "--play"});
    EXPECT_EQ(ran.code, 0);
    EXPECT_EQ(std::ranges::count(ran.out, '\n'), 3 * 8);
    EXPECT_EQ(support::takePauses().size(), 3U);
    support::onPause([] { std::raise(SIGINT); });
    ran = dump({"show", file("a.txt"), "--play"});
    support::onPause({});
    EXPECT_EQ(ran.code, 0);
    EXPECT_EQ(std::ranges::count(ran.out, '\n'), 8);
}

// Exports.

/// The middle of the first dot.
Bytes middle(const decoded::Image& image, std::size_t frame, std::size_t scale) {
    const auto at = image.frames.at(frame).begin() +
                    static_cast<std::ptrdiff_t>(3 * (scale / 2 * image.width + scale / 2));
    return {at, at + 3};
}

TEST_F(Dump, ExportOfAFrameIsAPng) {
    EXPECT_EQ(dump({"export", file("a.txt"), "--frame", "1", "--out", file("x.png")}),
              (Ran{0, "", "Wrote 1 frame to " + file("x.png") + ".\n"}));
    const auto image = decoded::image(file("x.png"));
    EXPECT_EQ(image.width, 1024U);
    EXPECT_EQ(image.height, 256U);
    EXPECT_EQ(middle(image, 0, 8), (Bytes{255, 135, 0}));  // Four shades: entry 15 of preset 8.
}

TEST_F(Dump, ExportTakesPaletteScaleDotsAndShades) {
    Bytes bytes(56, 0);
    bytes[0] = 1;
    bytes[8 + 3 * 3] = 200;  // Entry 3 is red.
    write("a.pal", bytes);
    const Arguments frame = {"export",      file("a.txt"), "--frame", "1",      "--out",
                             file("x.png"), "--scale",     "4",       "--dots", "square"};
    Arguments more = frame;
    more.insert(more.end(), {"--palette", file("a.pal"), "--shades", "16"});
    EXPECT_EQ(dump(more).code, 0);
    auto image = decoded::image(file("x.png"));
    EXPECT_EQ(image.width, 512U);
    EXPECT_EQ(middle(image, 0, 4), (Bytes{200, 0, 0}));
    EXPECT_EQ(image.frames[0][0], 200) << "square";
    more = frame;
    more.insert(more.end(), {"--preset", "white", "--mode", "alvin"});
    EXPECT_EQ(dump(more).code, 0);
    EXPECT_EQ(middle(decoded::image(file("x.png")), 0, 4), (Bytes{187, 187, 187}));  // Entry 11.
}

TEST_F(Dump, ExportOfSeveralFramesIsNumberedPngs) {
    const Ran ran = dump({"export", file("a.txt"), "--from", "1", "--out", file("x.png")});
    EXPECT_EQ(ran.err,
              "Wrote 2 frames to " + file("x-000000.png") + " to " + file("x-000001.png") + ".\n");
    EXPECT_EQ(files(),
              (std::vector<std::string>{"a.raw", "a.txt", "x-000000.png", "x-000001.png"}));
}

TEST_F(Dump, ExportIsAnAnimatedGifInTheRecordingsTime) {
    EXPECT_EQ(dump({"export", file("a.txt"), "--out", file("x.GIF"), "--scale", "2"}).code, 0);
    const auto image = decoded::image(file("x.GIF"));
    EXPECT_EQ(image.timesMs, (std::vector<int>{50, 200, 200}));
    EXPECT_EQ(middle(image, 0, 2), (Bytes{0, 0, 0}));
    EXPECT_EQ(middle(image, 2, 2), (Bytes{255, 135, 0}));
}

TEST_F(Dump, ExportIsAContactSheet) {
    EXPECT_EQ(
        dump({"export", file("a.txt"), "--out", file("x.png"), "--sheet", "2", "--scale", "1"})
            .code,
        0);
    const auto image = decoded::image(file("x.png"));
    EXPECT_EQ(image.width, 256U);
    EXPECT_EQ(image.height, 64U);
}

TEST_F(Dump, ExportCutsAndConverts) {
    EXPECT_EQ(
        dump({"export", file("a.txt"), "--from", "1", "--to", "1", "--out", file("x.txt")}).code,
        0);
    EXPECT_EQ(support::readFile(file("x.txt")), dumps::bytesOf(dumps::plainText(1050, '3')));
    EXPECT_EQ(dump({"export", file("a.raw"), "--frame", "0", "--out", file("y.txt")}).code, 0);
    EXPECT_EQ(support::readFile(file("y.txt")), dumps::bytesOf(dumps::plainText(1000, '3')));
    EXPECT_EQ(
        dump({"export", file("a.txt"), "--frame", "1", "--out", file("z.raw"), "--mode", "1"}).code,
        0);
    EXPECT_EQ(support::readFile(file("z.raw")),
              dumps::rawHeader(3) + dumps::plainRaw(1050, 3, 0xFF));
    const Ran ran = dump({"export", file("a.txt"), "--out", file("w.raw")});
    EXPECT_EQ(ran.code, 2);
    EXPECT_THAT(ran.err, testing::HasSubstr("1 (Bally/Williams), 6 "));
    EXPECT_THAT(ran.err, testing::EndsWith("Say which with --mode.\n"));
}

/// The signal comes when the first frame is written: each bar asks for the time when it starts.
TEST_F(Dump, ExportThatIsInterruptedLeavesTheOldFile) {
    for (const std::string name : {"x.gif", "x-000000.png", "x.png", "x.txt"}) {
        write(name, {1, 2, 3});
        const auto before = files();
        const bool isDump = name == "x.txt";
        int bars = 0;
        support::onClock([&] {
            if (++bars == (isDump ? 2 : 3)) {
                std::raise(SIGINT);
            }
        });
        const std::string out = name == "x-000000.png" ? "x.png" : name;
        Arguments arguments = {"export", file("a.txt"), "--out", file(out)};
        if (name == "x.png") {
            arguments.insert(arguments.end(), {"--sheet", "1"});
        }
        const Ran ran = dump(arguments);
        support::onClock({});
        EXPECT_EQ(ran, (Ran{1, "", "lumadotctl: Interrupted.\nRun the command again.\n"}));
        EXPECT_EQ(files(), before);
        EXPECT_EQ(support::readFile(file(name)), (Bytes{1, 2, 3}));
        std::filesystem::remove(file(name));
    }
}

TEST_F(Dump, ExportSaysWhyItCannotWrite) {
    const Ran ran = dump({"export", file("a.txt"), "--out", file("no/x.gif")});
    EXPECT_EQ(ran.code, 7);
    EXPECT_THAT(ran.err, testing::HasSubstr("cannot be written: No such file or directory.\n"
                                            "Check the folder, its permissions and the room on "
                                            "the disk.\n"));
}

TEST_F(Dump, ExportNeverWritesOverTheRecording) {
    const Bytes before = support::readFile(file("a.txt"));
    EXPECT_EQ(dump({"export", file("a.txt"), "--frame", "0", "--out", file("a.txt")}).code, 2);
    EXPECT_EQ(support::readFile(file("a.txt")), before);
}

TEST_F(Dump, ExportWritesNothingInADryRun) {
    EXPECT_EQ(dump({"export", file("a.txt"), "--out", file("x.gif"), "--dry-run"}),
              (Ran{0, "", "Would write \"" + file("x.gif") + "\".\n"}));
    EXPECT_EQ(files(), (std::vector<std::string>{"a.raw", "a.txt"}));
}

struct Wrong {
    const char* name;
    Arguments more;
};

class WrongExport : public Dump, public testing::WithParamInterface<Wrong> {};

TEST_P(WrongExport, IsUsageAndWritesNothing) {
    Arguments arguments = {"export", file("a.txt"), "--out"};
    std::filesystem::current_path(folder.path());
    arguments.insert(arguments.end(), GetParam().more.begin(), GetParam().more.end());
    const Ran ran = dump(arguments);
    std::filesystem::current_path("/");
    EXPECT_EQ(ran.code, 2) << ran;
    EXPECT_EQ(files(), (std::vector<std::string>{"a.raw", "a.txt"}));
}

INSTANTIATE_TEST_SUITE_P(
    Every, WrongExport,
    testing::Values(Wrong{"NoEnding", {"x"}}, Wrong{"OtherEnding", {"x.jpg"}},
                    Wrong{"BehindTheEnd", {"x.gif", "--to", "3"}},
                    Wrong{"FromBehindTo", {"x.gif", "--from", "2", "--to", "1"}},
                    Wrong{"FrameAndRange", {"x.gif", "--frame", "1", "--to", "2"}},
                    Wrong{"NegativeFrame", {"x.gif", "--frame", "-1"}},
                    Wrong{"ScaleZero", {"x.gif", "--scale", "0"}},
                    Wrong{"ScaleTooLarge", {"x.gif", "--scale", "257"}},
                    Wrong{"TriangularDots", {"x.gif", "--dots", "triangular"}},
                    Wrong{"SheetGif", {"x.gif", "--sheet", "2"}},
                    Wrong{"SheetOfNothing", {"x.png", "--sheet", "0"}},
                    Wrong{"ScaleOfADump", {"x.txt", "--scale", "2"}},
                    Wrong{"PresetOfADump", {"x.raw", "--preset", "2"}},
                    Wrong{"SixShades", {"x.gif", "--shades", "6"}},
                    Wrong{"UnknownMode", {"x.gif", "--mode", "unknown"}},
                    Wrong{"TwoPalettes", {"x.gif", "--palette", "a", "--preset", "1"}}),
    [](const auto& row) { return row.param.name; });

}  // namespace
