#include <algorithm>
#include <csignal>
#include <nlohmann/json.hpp>

#include "tests/control/control_run.h"
#include "tests/support/odd_files.h"

namespace {

using support::ControlTest;
using support::Lines;
using support::lumadotctl;
using support::Ran;
using support::wire;
using Bytes = std::vector<std::uint8_t>;
using Json = nlohmann::ordered_json;

struct Uploading : ControlTest {
    Uploading() { board = bus.plugController(); }
    std::string made(const std::string& name, const Bytes& content) const {
        support::writeFile(file(name), content);
        return file(name);
    }

    std::shared_ptr<simulator::Controller> board;
};

TEST_F(Uploading, AFileGoesInBlocksEachOfThemAnswered) {
    const std::string path = made("hi.txt", {0x48, 0x69, 0x21});
    const Ran ran = lumadotctl({"upload", path});
    EXPECT_EQ(wire(), (Lines{"81 C3 E7 FF 0A 00 68 69 2E 74 78 74 00*2040", "(1 asked for)",
                             "81 C3 E7 FF 0A 01 00 03 48 69 21 00*2041", "(1 asked for)",
                             "81 C3 E7 FF 0A FF 00*2046", "(1 asked for)"}));
    EXPECT_EQ(ran.code, 0);
    EXPECT_THAT(ran.err,
                testing::StartsWith("Uploaded \"" + path + "\" as \"hi.txt\": 3 bytes in "));
    EXPECT_THAT(ran.err, testing::ContainsRegex(" in .+ s \\(.+ .+/s\\)\\.\n$"));
}

TEST_F(Uploading, EveryLengthArrivesWhole) {
    for (const std::size_t length : {0UL, 1UL, 511UL, 512UL, 513UL, 1024UL, 100000UL}) {
        SCOPED_TRACE(length);
        const Bytes content = support::pattern(length);
        EXPECT_EQ(lumadotctl({"upload", made("a.bin", content)}).code, 0);
        EXPECT_EQ(board->files().at("a.bin"), content);
    }
}

TEST_F(Uploading, AnotherNameIsTaken) {
    EXPECT_EQ(lumadotctl({"upload", made("a.bin", {1}), "--name", "dir/b.bin"}).code, 0);
    EXPECT_EQ(board->files().at("dir/b.bin"), Bytes{1});
}

TEST_F(Uploading, SeveralFilesGoThroughOneConnection) {
    const Ran ran = lumadotctl({"upload", made("a", {1}), made("b", {2, 3}), "--json"});
    EXPECT_EQ(ran.code, 0);
    EXPECT_EQ(board->files().at("a"), Bytes{1});
    EXPECT_EQ(board->files().at("b"), (Bytes{2, 3}));
    const Lines calls = support::callLines();
    EXPECT_EQ(std::ranges::count(calls, "libusb_open #0"), 1);
    EXPECT_THAT(ran.out, testing::HasSubstr("\"uploads\": [\n    {\n      \"file\": " +
                                            Json(file("a")).dump() + ",\n      \"name\": \"a\",\n" +
                                            "      \"bytes\": 1,\n      \"seconds\": "));
}

TEST_F(Uploading, NothingIsSentWhenOneOfTheFilesWillNotDo) {
    EXPECT_EQ(lumadotctl({"upload", made("a", {1}), file("missing")}).code, 7);
    EXPECT_EQ(lumadotctl({"upload", made("a", {1}), made("b", {1}), "--name", "x"}).code, 2);
    EXPECT_EQ(lumadotctl({"upload", made("a", {1}), "--name", ""}).code, 2);
    EXPECT_EQ(lumadotctl({"upload", made("a", {1}), "--name", std::string(2047, 'x')}).code, 2);
    support::makeSparseFile(file("huge"), 1UL << 31U);
    EXPECT_EQ(lumadotctl({"upload", file("huge")}).code, 7);
    EXPECT_TRUE(bus.calls().empty());
}

TEST_F(Uploading, TheLongestNameFits) {
    const std::string name(2046, 'x');
    EXPECT_EQ(lumadotctl({"upload", made("a", {1}), "--name", name}).code, 0);
    EXPECT_TRUE(board->files().contains(name));
}

struct Stop {
    const char* name;
    int frame;
    std::string where;
};

class UploadStops : public Uploading, public testing::WithParamInterface<Stop> {
protected:
    /// Three blocks.
    std::string path = made("a.bin", support::pattern(1100));
    std::string start = "lumadotctl: \"" + path + "\", " + GetParam().where;
};

TEST_P(UploadStops, WhereTheControllerRefuses) {
    board->refuseUploadFrame(GetParam().frame);
    EXPECT_EQ(lumadotctl({"upload", path}),
              (Ran{6, "",
                   start + ": the controller refuses it.\n"
                           "Check the name, and whether there is room on the controller.\n"}));
    EXPECT_TRUE(board->files().empty());
}

TEST_P(UploadStops, WhereTheAnswerDoesNotCome) {
    bus.inject({.function = "libusb_bulk_transfer",
                .nth = GetParam().frame,
                .result = -7,
                .endpoint = 0x81});
    const Ran ran = lumadotctl({"upload", path, "--json"});
    EXPECT_EQ(ran.code, 6);
    EXPECT_THAT(ran.err, testing::StartsWith(start + ": The controller has not answered: the time "
                                                     "is over (LIBUSB_ERROR_TIMEOUT).\n"));
    EXPECT_THAT(ran.out, testing::HasSubstr("\"uploads\": [],\n  \"error\": {\n    \"code\": 6,\n"
                                            "    \"name\": \"LIBUSB_ERROR_TIMEOUT\""));
}

TEST_P(UploadStops, WhereTheAnswerIsEmpty) {
    bus.inject({.function = "libusb_bulk_transfer",
                .nth = GetParam().frame,
                .reply = simulator::Packet{},
                .endpoint = 0x81});
    EXPECT_THAT(lumadotctl({"upload", path}).err,
                testing::StartsWith(start + ": The controller's answer is empty.\n"));
}

TEST_P(UploadStops, WhereTheControllerIsPulledOut) {
    bus.inject({.function = "libusb_bulk_transfer",
                .nth = GetParam().frame,
                .unplug = true,
                .endpoint = 0x01});
    const Ran ran = lumadotctl({"upload", path});
    EXPECT_EQ(ran.code, 3);
    EXPECT_THAT(ran.err, testing::StartsWith(start));
}

TEST_P(UploadStops, WhereASignalComes) {
    bus.inject({.function = "libusb_bulk_transfer",
                .nth = GetParam().frame,
                .endpoint = 0x01,
                .meanwhile = [] { std::raise(SIGINT); }});
    const Ran ran = lumadotctl({"upload", path});
    const bool isLast = GetParam().frame == 5;
    EXPECT_EQ(ran.code, isLast ? 0 : 1);
    EXPECT_THAT(ran.err, isLast ? testing::HasSubstr("Uploaded")
                                : testing::HasSubstr(": interrupted.\nRun the command again.\n"));
    EXPECT_EQ(wire().size(), 2 * static_cast<std::size_t>(GetParam().frame));
}

INSTANTIATE_TEST_SUITE_P(At, UploadStops,
                         testing::Values(Stop{"open", 1, "opening \"a.bin\""},
                                         Stop{"first_block", 2, "block 1 of 3"},
                                         Stop{"second_block", 3, "block 2 of 3"},
                                         Stop{"last_block", 4, "block 3 of 3"},
                                         Stop{"close", 5, "closing \"a.bin\""}),
                         [](const auto& row) { return row.param.name; });

}  // namespace
