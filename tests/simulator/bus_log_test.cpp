#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

#include "simulator/bus.h"
#include "tests/simulator/bus_fixture.h"

using packets::command;
using simulator::Call;
using simulator::describe;

namespace {

struct BusLogTest : BusFixture {};

std::string contents(const std::filesystem::path& path) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

std::chrono::steady_clock::time_point atMs(int ms) {
    return std::chrono::steady_clock::time_point(std::chrono::milliseconds(ms));
}

}  // namespace

TEST_F(BusLogTest, CallsAreLoggedInOrderWithTheirTime) {
    const auto before = std::chrono::steady_clock::now();
    libusb_init(nullptr);
    devices();
    ASSERT_EQ(bus.calls().size(), 3U);
    EXPECT_EQ(bus.calls()[0].function, "libusb_init");
    EXPECT_EQ(bus.calls()[1].function, "libusb_get_device_list");
    EXPECT_EQ(bus.calls()[2].function, "libusb_free_device_list");
    EXPECT_GE(bus.calls()[0].at, before);
    EXPECT_GE(bus.calls()[2].at, bus.calls()[1].at);
    bus.clearCalls();
    EXPECT_TRUE(bus.calls().empty());
}

TEST_F(BusLogTest, LineTellsParametersResultAndBytes) {
    const std::pair<Call, std::string> cases[] = {
        {{.function = "libusb_init", .at = atMs(7)}, "libusb_init result=0 at=7"},
        {{.function = "libusb_claim_interface", .endpoint = 0, .stale = true, .result = -4},
         "libusb_claim_interface interface=0 stale result=-4 at=0"},
        {{.function = "libusb_get_string_descriptor_ascii",
          .device = 1,
          .endpoint = 2,
          .length = 256,
          .data = {'X', 'L'},
          .result = 2},
         "libusb_get_string_descriptor_ascii device=1 index=2 length=256 result=2 at=0 "
         "data=58 4C"},
        {{.function = "libusb_bulk_transfer",
          .device = 0,
          .endpoint = 0x01,
          .length = 2052,
          .timeout = 1000,
          .countAsked = true,
          .data = command({0x02, 0x0C})},
         "libusb_bulk_transfer device=0 endpoint=0x01 length=2052 timeout=1000 counted result=0 "
         "at=0 data=81 C3 E7 FF 02 0C 00*2046"},
        {{.function = "libusb_bulk_transfer",
          .endpoint = 0x81,
          .data = {0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 2}},
         "libusb_bulk_transfer endpoint=0x81 result=0 at=0 data=00 00 00 00 00 00 00 01 00*8 02"},
    };
    for (const auto& [call, line] : cases) {
        EXPECT_EQ(describe(call), line);
    }
}

TEST_F(BusLogTest, FileGetsALineForEachCallAsItHappens) {
    const auto path = std::filesystem::temp_directory_path() /
                      ("lumadot-log-" + std::to_string(std::random_device()()));
    bus.logTo(path.string());
    libusb_init(nullptr);
    EXPECT_EQ(contents(path), describe(last()) + "\n");
    const std::string first = contents(path);
    bus.logTo("");
    libusb_init(nullptr);
    EXPECT_EQ(contents(path), first);
    bus.setLogging(false);
    bus.logTo(path.string());
    libusb_exit(nullptr);
    EXPECT_EQ(contents(path).substr(0, first.size() + 12), first + "libusb_exit ");
    bus.logTo("");  // On some systems an open file cannot be removed.
    std::filesystem::remove(path);
}

TEST_F(BusLogTest, FileThatCannotBeOpenedIsSurvived) {
    bus.logTo("/no/such/folder/log");
    EXPECT_EQ(libusb_init(nullptr), 0);
    EXPECT_EQ(last().function, "libusb_init");
}

TEST_F(BusLogTest, OnlyTheLastCallsAreKeptOnDemand) {
    bus.keepCalls(2);
    for (int round = 0; round < 100; ++round) {
        libusb_init(nullptr);
        libusb_exit(nullptr);
        devices();
        EXPECT_LE(bus.calls().size(), 2U);
    }
    ASSERT_EQ(bus.calls().size(), 2U);
    EXPECT_EQ(bus.calls()[0].function, "libusb_get_device_list");
    EXPECT_EQ(bus.calls()[1].function, "libusb_free_device_list");
}

TEST_F(BusLogTest, NothingIsKeptWithoutLogging) {
    bus.plugController();
    bus.setLogging(false);
    EXPECT_EQ(send(openAndClaim(), command({0x02, 3})), 0);
    EXPECT_TRUE(bus.calls().empty());
    bus.setLogging(true);
    libusb_init(nullptr);
    EXPECT_EQ(bus.calls().size(), 1U);
}
