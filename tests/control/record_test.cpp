// Recording: the window's requests, files and names; what is lost; and every way to end.

#include <algorithm>
#include <cctype>
#include <csignal>
#include <nlohmann/json.hpp>

#include "tests/control/control_run.h"
#include "tests/control/pauses.h"
#include "tests/device/capture/naive_decoder.h"
#include "tests/support/odd_files.h"

namespace {

using support::Arguments;
using support::ControlTest;
using support::Lines;
using support::lumadotctl;
using support::Ran;
using support::wire;
using Bytes = std::vector<std::uint8_t>;
using Json = nlohmann::ordered_json;

constexpr std::size_t TextFrame = 12 + 32 * 130 + 2;

struct Recording : ControlTest {
    ~Recording() override { support::onPause({}); }

    std::shared_ptr<simulator::Controller> plug(
        int mode, simulator::Board board = simulator::Board::Standard) {
        simulator::ControllerOptions options{.board = board};
        options.settings[0] = static_cast<std::uint8_t>(mode);
        return bus.plugController(options,
                                  board == simulator::Board::Xl ? "LUMADOT XL" : "LUMADOT");
    }
    Ran record(Arguments more) {
        more.insert(more.begin(), {"record", folder.path().string()});
        return lumadotctl(more);
    }
    /// The one file with this ending; its name is the window's.
    Bytes content(const std::string& ending) const {
        Bytes bytes;
        int count = 0;
        for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
            const std::string name = entry.path().filename().string();
            if (name.ends_with(ending)) {
                std::string form = name;
                std::ranges::replace_if(
                    form, [](char letter) { return std::isdigit(letter) != 0; }, '0');
                EXPECT_THAT(form, testing::AnyOf("000000_000000_lumadot_dump.txt",
                                                 "000000_000000_lumadot_dump.raw"));
                bytes = support::readFile(entry.path());
                ++count;
            }
        }
        EXPECT_LE(count, 1);
        return bytes;
    }
    std::size_t textFrames() const {
        const std::size_t size = content(".txt").size();
        EXPECT_EQ(size % TextFrame, 0U);
        return size / TextFrame;
    }
    /// The nth reply of a frame is this.
    void replyWith(int nth, std::optional<int> result, std::optional<Bytes> bytes) {
        bus.inject({.function = "libusb_bulk_transfer",
                    .nth = 1 + nth,
                    .result = result,
                    .reply = std::move(bytes),
                    .endpoint = 0x81});
    }
};

TEST_F(Recording, ReadsTheSettingsAndAsksForTheModesPlanes) {
    plug(2);
    EXPECT_EQ(record({"--frames", "2"}).code, 0);
    EXPECT_EQ(wire(), (Lines{"81 C3 E7 FF 10 00*2047", "(63 asked for)", "02 C3 E8 04 00*60",
                             "(2053 asked for)", "02 C3 E8 04 00*60", "(2053 asked for)"}));
    EXPECT_EQ(textFrames(), 2U);
    EXPECT_TRUE(content(".raw").empty());
    EXPECT_THAT(support::callLines(),
                testing::Contains("out 0x01 64 2000ms counted #0: 02 C3 E8 04 00*60"));
    EXPECT_THAT(support::callLines(), testing::Contains("in 0x81 2053 10000ms counted #0"));
}

TEST_F(Recording, SelectsAModeFirstWhenToldTo) {
    const auto board = plug(2);
    EXPECT_EQ(record({"--frames", "1", "--mode", "whitestar"}).code, 0);
    EXPECT_EQ(wire(),
              (Lines{"81 C3 E7 FF 10 00*2047", "(63 asked for)", "81 C3 E7 FF 02 03 00*2046",
                     "02 C3 E8 02 00*60", "(1029 asked for)"}));
    EXPECT_EQ(board->working()[0], 3);
}

TEST_F(Recording, WritesTheWindowsFiles) {
    plug(6);
    EXPECT_EQ(record({"--frames", "3"}).code, 0);
    const Bytes text = content(".txt");
    const Bytes raw = content(".raw");
    ASSERT_EQ(text.size(), 3 * TextFrame);
    ASSERT_EQ(raw.size(), 8 + 3 * (4 + 12 * 512U));
    EXPECT_EQ(support::byteText(std::span(raw).first(8)), "52 41 57 00 01 80 20 0C");
    const simulator::Controller sameBoard;
    for (std::size_t i = 0; i < 3; ++i) {
        const Bytes planes = sameBoard.capturedPlanes(static_cast<std::uint32_t>(i), 12);
        const std::string found(reinterpret_cast<const char*>(&text[i * TextFrame]), TextFrame);
        const auto stamp = static_cast<std::uint32_t>(std::stoul(found.substr(2, 8), nullptr, 16));
        EXPECT_EQ(found, naive::text(6, false, stamp, planes)) << i;
        const auto block = raw.begin() + static_cast<std::ptrdiff_t>(8 + i * (4 + 12 * 512));
        EXPECT_EQ(Bytes(block, block + 4 + 12 * 512), naive::raw(6, stamp, planes)) << i;
    }
}

TEST_F(Recording, OfTheLargeBoardAsksForItsOwnPlanes) {
    plug(2, simulator::Board::Xl);
    EXPECT_EQ(record({"--frames", "1"}).code, 0);
    EXPECT_EQ(wire()[2], "02 C3 E8 02 00*60");
    EXPECT_EQ(wire()[3], "(3077 asked for)");
    EXPECT_EQ(content(".txt").size(), 12 + 64 * 194 + 2U);
}

TEST_F(Recording, TellsWhatItHasRecorded) {
    plug(1);
    const Ran ran = record({"--frames", "3", "--json"});
    EXPECT_THAT(ran.err,
                testing::ContainsRegex("^3 frames in .+ s \\(.+ a second\\), 0 refused, 0 lost: "
                                       ".+_lumadot_dump\\.txt\n$"));
    const auto record = Json::parse(ran.out).at("record");
    EXPECT_EQ(record["mode"], (Json{{"number", 1}, {"name", "Bally/Williams"}}));
    for (const std::string kind : {"text", "raw"}) {
        const std::string file = record.at(kind);
        EXPECT_TRUE(file.starts_with(folder.path().string()) && std::filesystem::exists(file))
            << file;
    }
    EXPECT_EQ(record["frames"], 3);
    EXPECT_EQ(record["refused"], 0);
    EXPECT_EQ(record["lost"], 0);
    EXPECT_GT(record["seconds"], 0.0);
    EXPECT_GT(record["rate"], 0.0);
    EXPECT_EQ(record["endedBy"], "frames");
}

TEST_F(Recording, OneLostOrRefusedFrameDoesNotEndIt) {
    plug(2);
    replyWith(1, -7, std::nullopt);
    replyWith(2, -1, std::nullopt);
    replyWith(3, std::nullopt, Bytes(2051, 0xFF));  // One byte of the planes is missing.
    bus.inject({.function = "libusb_bulk_transfer", .nth = 5, .result = -9, .endpoint = 0x01});
    support::takePauses();
    const Ran ran = record({"--frames", "2"});
    EXPECT_EQ(ran.code, 0);
    EXPECT_THAT(ran.err, testing::HasSubstr(", 1 refused, 3 lost: "));
    EXPECT_EQ(textFrames(), 2U);
    EXPECT_EQ(support::takePauses(), std::vector<std::int64_t>{100});
}

TEST_F(Recording, TheByteBehindThePlanesMayBeMissing) {
    plug(2);
    replyWith(1, std::nullopt, Bytes(2052, 0xFF));
    EXPECT_THAT(record({"--frames", "1"}).err, testing::HasSubstr(" 0 lost: "));
}

TEST_F(Recording, EndsAfterSoManySeconds) {
    plug(2);
    const Ran ran = record({"--seconds", "0.05", "--json"});
    EXPECT_EQ(ran.code, 0);
    EXPECT_THAT(ran.out, testing::HasSubstr("\"endedBy\": \"seconds\""));
}

TEST_F(Recording, ThatBroughtNoFrameIsNoAnswer) {
    plug(2);
    bus.inject(
        {.function = "libusb_bulk_transfer", .endpoint = 0x81, .meanwhile = [this] {
             bus.inject(
                 {.function = "libusb_bulk_transfer", .nth = 0, .result = -7, .endpoint = 0x81});
         }});
    const Ran ran = record({"--seconds", "0.02"});
    EXPECT_EQ(ran.code, 6);
    EXPECT_THAT(ran.err, testing::EndsWith("lumadotctl: No frame has come.\nCheck that the machine "
                                           "is on and that the input mode is the machine's.\n"));
}

TEST_F(Recording, AControllerThatIsPulledOutEndsItAndWhatIsThereStays) {
    plug(2);
    bus.inject({.function = "libusb_bulk_transfer", .nth = 4, .unplug = true, .endpoint = 0x81});
    const Ran ran = record({"--json"});
    EXPECT_EQ(ran.code, 3);
    EXPECT_EQ(textFrames(), 2U);
    EXPECT_THAT(ran.out, testing::HasSubstr("\"frames\": 2,"));
    EXPECT_THAT(ran.out, testing::HasSubstr("\"error\": {\n    \"code\": 3,\n"
                                            "    \"name\": \"LIBUSB_ERROR_NO_DEVICE\""));
}

TEST_F(Recording, GoesOnWhenTheControllerComesBack) {
    plug(2);
    bus.inject({.function = "libusb_bulk_transfer", .nth = 3, .unplug = true, .endpoint = 0x81});
    int pauses = 0;
    support::onPause([&] {
        if (++pauses == 3) {
            bus.plug({.refuseOpen = true});  // The system has not yet given it to the user.
        } else if (pauses == 5) {
            bus.unplug(1);
            plug(2);
        }
    });
    const Ran ran = record({"--frames", "4", "--reconnect", "--mode", "2"});
    EXPECT_EQ(ran.code, 0);
    EXPECT_EQ(pauses, 5);
    EXPECT_EQ(textFrames(), 4U);
    EXPECT_THAT(ran.err, testing::HasSubstr("The controller has gone; waiting for it to come "
                                            "back.\nThe controller is back.\n4 frames"));
    const Lines frames = wire();
    EXPECT_EQ(std::ranges::count(frames, "81 C3 E7 FF 02 02 00*2046"), 2);
}

TEST_F(Recording, DoesNotGoOnWithAnotherKindOfController) {
    plug(2);
    bus.inject({.function = "libusb_bulk_transfer", .nth = 3, .unplug = true, .endpoint = 0x81});
    support::onPause([this] { plug(2, simulator::Board::Xl); });
    const Ran ran = record({"--reconnect"});
    EXPECT_EQ(ran.code, 1);
    EXPECT_THAT(ran.err, testing::HasSubstr("Another kind of controller has come back."));
    EXPECT_EQ(textFrames(), 1U);
}

TEST_F(Recording, SearchEndsWithASignal) {
    plug(2);
    bus.inject({.function = "libusb_bulk_transfer", .nth = 3, .unplug = true, .endpoint = 0x81});
    int pauses = 0;
    support::onPause([&] {
        if (++pauses == 4) {
            std::raise(SIGTERM);
        }
    });
    const Ran ran = record({"--reconnect", "--json"});
    EXPECT_EQ(ran.code, 0);
    EXPECT_THAT(ran.out, testing::HasSubstr("\"endedBy\": \"signal\""));
}

class RecordingSignal : public Recording, public testing::WithParamInterface<int> {};

TEST_P(RecordingSignal, EndsItWithTheFrameThatWasAskedFor) {
    plug(2);
    bus.inject({.function = "libusb_bulk_transfer", .nth = 4, .endpoint = 0x01, .meanwhile = [] {
                    std::raise(GetParam());
                }});
    const Ran ran = record({});
    EXPECT_EQ(ran.code, 0);
    EXPECT_EQ(textFrames(), 3U);
}

INSTANTIATE_TEST_SUITE_P(Each, RecordingSignal, testing::Values(SIGINT, SIGTERM));

TEST_F(Recording, FilesThatCannotBeWrittenEndIt) {
    plug(2);
    support::closeFolder(folder.path());
    const support::WithoutPrivileges nobody;
    const Ran ran = record({"--frames", "3"});
    EXPECT_EQ(ran.code, 7);
    EXPECT_THAT(ran.err, testing::HasSubstr("lumadotctl: \"" + folder.path().string() +
                                            "\" does not take the frames.\n"));
}

}  // namespace
