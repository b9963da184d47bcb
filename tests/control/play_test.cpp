// Recordings and pictures on the display: every byte, the times, and that the machine gets its
// display back whatever happens.

#include <csignal>
#include <thread>

#include "control/interrupt.h"
#include "pictures/png.h"
#include "tests/control/control_run.h"
#include "tests/control/pauses.h"
#include "tests/pictures/decoded.h"
#include "tests/recording/dumps.h"

namespace {

using support::Arguments;
using support::ControlTest;
using support::Lines;
using support::lumadotctl;
using support::Ran;
using support::wire;
using Bytes = std::vector<std::uint8_t>;

const std::string ModeZero = "81 C3 E7 FF 02 00*2047";
const std::string ModeFive = "81 C3 E7 FF 02 05 00*2046";
const std::string PresetTwo = "81 C3 E7 FF 03 02 00*2046";
const std::string Dark = "81 C3 E7 00*2049";
/// The top left dot in entry 15, and the last dot in entry 1.
const std::string Corners = "81 C3 E7 00 80 00*510 01 80 00*511 80 00*511 80 00*511";
/// The second dot in entry 4.
const std::string Second = "81 C3 E7 00*1025 40 00*1023";

struct Play : ControlTest {
    Play() {
        simulator::ControllerOptions options;
        options.settings[0] = 5;
        options.settings[1] = 2;
        board = bus.plugController(options);
        std::string corners = dumps::plainText(16, '0');
        corners[12] = 'f';
        corners[12 + 31 * 130 + 127] = '1';
        std::string second = dumps::plainText(116, '0');
        second[13] = '4';
        write("dump.txt",
              dumps::plainText(1000, '0').replace(0, 12, "0x00000000\r\n") + corners + second);
        support::takePauses();
    }
    ~Play() override { support::onPause({}); }

    void write(const std::string& name, const std::string& text) const {
        support::writeFile(file(name), dumps::bytesOf(text));
    }
    Ran play(Arguments more = {}) const {
        more.insert(more.begin(), {"play", file("dump.txt")});
        return lumadotctl(more);
    }
    /// What was sent after the settings had been read.
    static Lines sent() {
        Lines lines = wire();
        lines.erase(lines.begin(), lines.begin() + 2);
        return lines;
    }
    /// The call of the nth image frame; the settings and the mode come before it.
    static simulator::Fault atImage(int nth) {
        return {.function = "libusb_bulk_transfer", .nth = 2 + nth, .endpoint = 0x01};
    }

    std::shared_ptr<simulator::Controller> board;
};

TEST_F(Play, SendsTheFramesInModeZeroAndGivesTheModeBack) {
    const Ran ran = play();
    EXPECT_EQ(ran, (Ran{0, "", "Played 3 frames of \"" + file("dump.txt") + "\".\n"}));
    const Lines all = wire();
    EXPECT_EQ(Lines(all.begin(), all.begin() + 2), support::SettingsRead);
    EXPECT_EQ(sent(), (Lines{ModeZero, Dark, Corners, Second, ModeFive}));
    EXPECT_EQ(board->working()[0], 5);
}

/// The test itself takes time, too; a busy machine may take half a second.
void expectTimes(const std::vector<std::int64_t>& wanted) {
    const auto pauses = support::takePauses();
    ASSERT_EQ(pauses.size(), wanted.size());
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        EXPECT_NEAR(static_cast<double>(pauses[i]), static_cast<double>(wanted[i]), 500) << i;
    }
}

TEST_F(Play, KeepsTheTimesOfTheRecording) {
    write("dump.txt", dumps::plainText(5000) + dumps::plainText(9000) + dumps::plainText(15000));
    EXPECT_EQ(play().code, 0);
    expectTimes({4000, 6000, 6000});
}

TEST_F(Play, IsFasterAndSlowerWhenToldTo) {
    write("dump.txt", dumps::plainText(5000) + dumps::plainText(9000));
    EXPECT_EQ(play({"--speed", "4"}).code, 0);
    expectTimes({1000, 1000});
    EXPECT_EQ(play({"--speed", "0.5"}).code, 0);
    expectTimes({8000, 8000});
}

/// The stamps wrap at 2^32; a step backwards takes no time.
TEST_F(Play, WaitsNeitherForWrappingNorForBackwardStamps) {
    write("dump.txt",
          dumps::plainText(0xFFFFF060) + dumps::plainText(0) + dumps::plainText(0xFFFFFFF0));
    EXPECT_EQ(play().code, 0);
    expectTimes({4000, 0, 0});
}

TEST_F(Play, OfASingleFrameTakesASecond) {
    write("dump.txt", dumps::plainText(7));
    EXPECT_EQ(play().code, 0);
    expectTimes({1000});
}

TEST_F(Play, ShowsDigitsInTheEntriesOfTheirShades) {
    write("dump.txt", dumps::plainText(0, '3'));
    const std::string all = " FF";
    const auto planes = [](const std::string& each, int count) {
        std::string text;
        for (int i = 0; i < count * 512; ++i) {
            text += each;
        }
        return text;
    };
    play();  // Four shades: entry 15.
    EXPECT_EQ(sent()[1], "81 C3 E7 00" + planes(all, 4));
    bus.clearCalls();
    play({"--shades", "5"});  // Entry 11.
    EXPECT_EQ(sent()[1], "81 C3 E7 00" + planes(all, 2) + " 00*512" + planes(all, 1));
    bus.clearCalls();
    play({"--mode", "4"});  // Sixteen shades: entry 3.
    EXPECT_EQ(sent()[1], "81 C3 E7 00" + planes(all, 2) + " 00*1024");
}

TEST_F(Play, SendsAPaletteAndSelectsThePresetAgain) {
    Bytes bytes(56, 0x11);
    bytes[0] = 1;
    support::writeFile(file("a.pal"), bytes);
    EXPECT_EQ(play({"--palette", file("a.pal")}).code, 0);
    const Lines lines = sent();
    ASSERT_EQ(lines.size(), 7U);
    EXPECT_EQ(lines[0], ModeZero);
    EXPECT_THAT(lines[1], testing::StartsWith("81 C3 E7 FF 04 00 01 11 11 "));
    EXPECT_EQ(lines[2], Dark);
    EXPECT_EQ(lines[5], ModeFive);
    EXPECT_EQ(lines[6], PresetTwo);
}

class PlaySignal : public Play, public testing::WithParamInterface<int> {};

TEST_P(PlaySignal, EndsALoopAndGivesTheModeBack) {
    int pauses = 0;
    support::onPause([&] {
        if (++pauses == 5) {
            std::raise(GetParam());
        }
    });
    const Ran ran = play({"--loop", "--json"});
    EXPECT_EQ(ran.code, 0);
    EXPECT_THAT(ran.out, testing::HasSubstr("\"frames\": 5,"));
    EXPECT_THAT(ran.out, testing::HasSubstr("\"endedBy\": \"signal\""));
    EXPECT_EQ(sent(), (Lines{ModeZero, Dark, Corners, Second, Dark, Corners, ModeFive}));
}

TEST_P(PlaySignal, DuringAFrameGivesTheModeBack) {
    auto fault = atImage(2);
    fault.meanwhile = [] { std::raise(GetParam()); };
    bus.inject(fault);
    EXPECT_EQ(play().code, 0);
    EXPECT_EQ(sent(), (Lines{ModeZero, Dark, Corners, ModeFive}));
}

#ifdef SIGHUP
INSTANTIATE_TEST_SUITE_P(Each, PlaySignal, testing::Values(SIGINT, SIGTERM, SIGHUP));
#else
INSTANTIATE_TEST_SUITE_P(Each, PlaySignal, testing::Values(SIGINT, SIGTERM));

TEST_F(Play, GivesTheModeBackWhenTheConsoleIsClosed) {
    int pauses = 0;
    support::onPause([&] {
        if (++pauses == 5) {
            std::thread([] {
                std::raise(SIGBREAK);
            }).detach();  // As Windows does; it does not return.
            while (!control::interrupt::requested()) {
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            }
        }
    });
    EXPECT_EQ(play({"--loop"}).code, 0);
    EXPECT_EQ(sent(), (Lines{ModeZero, Dark, Corners, Second, Dark, Corners, ModeFive}));
}
#endif

TEST_F(Play, GivesTheModeBackWhenAFrameIsNotTaken) {
    auto fault = atImage(2);
    fault.result = -7;
    bus.inject(fault);
    const Ran ran = play({"--json"});
    EXPECT_EQ(ran.code, 6);
    EXPECT_THAT(ran.out, testing::HasSubstr("\"endedBy\": \"failure\""));
    EXPECT_EQ(board->working()[0], 5);
    EXPECT_EQ(wire().back(), ModeFive);
}

TEST_F(Play, GivesTheModeBackWhenTheRecordingIsCutMeanwhile) {
    std::string frames;
    for (std::uint32_t number = 0; number < 1000; ++number) {
        frames += dumps::plainText(number);
    }
    write("dump.txt", frames);
    auto fault = atImage(1);
    fault.meanwhile = [this] { std::filesystem::resize_file(file("dump.txt"), 5000); };
    bus.inject(fault);
    EXPECT_EQ(play().code, 7);
    EXPECT_EQ(board->working()[0], 5);
}

TEST_F(Play, SaysHowToGetBackWhereTheModeCannotBeGivenBack) {
    auto fault = atImage(1);
    fault.result = -7;
    bus.inject(fault);
    fault.nth = 1 + fault.nth;
    bus.inject(fault);
    const Ran ran = play();
    EXPECT_EQ(ran.code, 6);
    EXPECT_THAT(ran.err, testing::StartsWith("The machine's display has not been given back. To "
                                             "do so: lumadotctl mode 5\nlumadotctl: "));
}

TEST_F(Play, AControllerThatIsPulledOutEndsIt) {
    auto fault = atImage(2);
    fault.unplug = true;
    bus.inject(fault);
    EXPECT_EQ(play().code, 3);
}

TEST_F(Play, OfARawRecordingWantsTheModeWhereThePlanesDoNotTell) {
    const auto raw = [this](std::uint8_t planes) {
        using namespace dumps::joining;
        support::writeFile(file("dump.txt"),
                           dumps::rawHeader(planes) + dumps::plainRaw(0, planes, 0x80));
    };
    raw(4);
    const Ran ran = play();
    EXPECT_EQ(ran.code, 2);
    EXPECT_THAT(ran.err, testing::HasSubstr("9 (Capcom), 10 (Alvin G)"));
    EXPECT_TRUE(bus.calls().empty());
    EXPECT_EQ(play({"--mode", "capcom"}).code, 0);
    raw(3);
    EXPECT_EQ(play().code, 0);
}

TEST_F(Play, RefusesTheLargeBoardAndItsRecordings) {
    write("xl.txt", dumps::plainText(0, '1', true));
    Ran ran = lumadotctl({"play", file("xl.txt")});
    EXPECT_EQ(ran.code, 7);
    EXPECT_THAT(ran.err, testing::HasSubstr("192 x 64"));
    EXPECT_TRUE(bus.calls().empty());
    bus.reset();
    bus.plugController({.board = simulator::Board::Xl}, "LUMADOT XL");
    ran = play();
    EXPECT_EQ(ran.code, 1);
    EXPECT_THAT(ran.err, testing::HasSubstr("The XL board cannot be shown pictures"));
    EXPECT_TRUE(wire().empty());
}

TEST_F(Play, OfSomethingElseIsAFailureOfAFile) {
    for (const std::string& content : {std::string(), std::string("no recording")}) {
        write("other", content);
        EXPECT_EQ(lumadotctl({"play", file("other")}).code, 7) << content;
    }
    EXPECT_EQ(lumadotctl({"play", file("nothing")}).code, 7);
    EXPECT_TRUE(bus.calls().empty());
}

// Pictures.

struct Show : Play {
    Show() {
        // A picture of the display itself, in the colours of the board's preset.
        pictures::Sequence corners;
        corners.count = 1;
        corners.columns = 128;
        corners.rows = 32;
        corners.read = [](std::uint64_t, std::vector<std::uint8_t>& entries) {
            entries.assign(4096, 0);
            entries[0] = 15;
            entries[4095] = 1;
            return 0U;
        };
        display::Look look;
        look.palette = presets::colours(2);
        look.dots = display::Dots::Square;
        pictures::writePng(corners, 0, look, file("a.png"));
    }
};

TEST_F(Show, ShowsAPictureThatStaysAndSaysTheWayBack) {
    const Ran ran = lumadotctl({"show", file("a.png")});
    EXPECT_EQ(ran, (Ran{0, "",
                        "Showed \"" + file("a.png") +
                            "\". To give the display back to the "
                            "machine: lumadotctl mode 5\n"}));
    EXPECT_EQ(sent(), (Lines{ModeZero, Corners}));
    EXPECT_TRUE(support::takePauses().empty());
}

TEST_F(Show, GivesTheModeBackAfterSoManySeconds) {
    EXPECT_EQ(lumadotctl({"show", file("a.png"), "--seconds", "2.5"}).code, 0);
    EXPECT_EQ(support::takePauses(), std::vector<std::int64_t>{2500});
    EXPECT_EQ(sent(), (Lines{ModeZero, Corners, ModeFive}));
}

TEST_F(Show, GivesTheModeBackWhenASignalComes) {
    support::onPause([] { std::raise(SIGINT); });
    EXPECT_EQ(lumadotctl({"show", file("a.png"), "--seconds", "60"}).code, 1);
    EXPECT_EQ(sent(), (Lines{ModeZero, Corners, ModeFive}));
}

TEST_F(Show, GivesTheModeBackWhenThePictureIsNotTaken) {
    auto fault = atImage(1);
    fault.result = -9;
    bus.inject(fault);
    EXPECT_EQ(lumadotctl({"show", file("a.png")}).code, 6);
    EXPECT_EQ(wire().back(), ModeFive);
}

TEST_F(Show, FitsThePictureToThePaletteThatItSends) {
    Bytes bytes(56, 0);
    bytes[0] = 1;
    bytes[8 + 3 * 7 + 1] = 255;  // Entry 7 is the green of the picture's dot, nothing else is.
    support::writeFile(file("a.pal"), bytes);
    const Ran ran = lumadotctl({"show", file("a.png"), "--palette", file("a.pal")});
    EXPECT_THAT(ran.err, testing::EndsWith("lumadotctl mode 5 && lumadotctl preset 2\n"));
    EXPECT_EQ(sent()[2], "81 C3 E7 00 80 00*511 80 00*511 80 00*1023");
}

TEST_F(Show, RefusesWhatIsNoPictureBeforeItOpensAnything) {
    write("a.png", "\x89PNG\r\n\x1A\nand no more");
    const Ran ran = lumadotctl({"show", file("a.png")});
    EXPECT_EQ(ran.code, 7);
    EXPECT_THAT(ran.err, testing::HasSubstr("is no picture that can be shown"));
    EXPECT_TRUE(bus.calls().empty());
}

TEST_F(Show, RefusesTheLargeBoard) {
    bus.reset();
    bus.plugController({.board = simulator::Board::Xl}, "LUMADOT XL");
    EXPECT_EQ(lumadotctl({"show", file("a.png")}).code, 1);
}

}  // namespace
