#include "simulator/server/options.h"

#include <gmock/gmock.h>

namespace {

using simulator::parseArguments;
using simulator::ProgramOptions;
using simulator::TransferFault;

std::optional<ProgramOptions> parse(std::vector<const char*> arguments, int& exitCode) {
    arguments.insert(arguments.begin(), "lumadot-simulator");
    return parseArguments(static_cast<int>(arguments.size()), arguments.data(), exitCode);
}

TEST(Options, AreTheUsualOnesUnlessToldOtherwise) {
    int exitCode = -1;
    const auto options = parse({}, exitCode);
    ASSERT_TRUE(options);
    EXPECT_FALSE(options->headless);
    EXPECT_EQ(options->server.address, "127.0.0.1");
    EXPECT_EQ(options->server.port, 3240);
    EXPECT_EQ(options->controller.board, simulator::Board::Standard);
    EXPECT_EQ(options->controller.layout, simulator::SettingsLayout::Newer);
    EXPECT_EQ(options->controller.frameInterval, 16U);
    EXPECT_EQ(options->controller.store, "");
    EXPECT_EQ(options->log, "");
    EXPECT_FALSE(options->controller.windowsDescriptors);
    EXPECT_TRUE(options->faults.empty());
}

TEST(Options, AreTakenAsGiven) {
    int exitCode = -1;
    const auto options = parse({"--headless",
                                "--windows-descriptors",
                                "--listen",
                                "::1",
                                "--port",
                                "0",
                                "--board",
                                "xl",
                                "--layout",
                                "older",
                                "--uid",
                                "S1",
                                "--state",
                                "/tmp/state",
                                "--log",
                                "/tmp/log",
                                "--frame-interval",
                                "0",
                                "--fault",
                                "out:2:stall",
                                "--fault",
                                "in:0:short=3"},
                               exitCode);
    ASSERT_TRUE(options);
    EXPECT_TRUE(options->headless);
    EXPECT_EQ(options->server.address, "::1");
    EXPECT_EQ(options->server.port, 0);
    EXPECT_EQ(options->controller.board, simulator::Board::Xl);
    EXPECT_EQ(options->controller.layout, simulator::SettingsLayout::Older);
    EXPECT_TRUE(options->controller.windowsDescriptors);
    EXPECT_EQ(options->controller.uniqueId, "S1");
    EXPECT_EQ(options->controller.store, "/tmp/state");
    EXPECT_EQ(options->controller.frameInterval, 0U);
    EXPECT_EQ(options->log, "/tmp/log");
    EXPECT_THAT(options->faults,
                testing::ElementsAre(TransferFault{0x01, 2, TransferFault::What::Stall, 0},
                                     TransferFault{0x81, 0, TransferFault::What::Short, 3}));
}

TEST(Options, ThatCannotBeUnderstoodAreAnError) {
    const std::vector<std::vector<const char*>> wrong = {
        {"--no-such-option"},
        {"file"},
        {"--port"},
        {"--port", "x"},
        {"--port", "65536"},
        {"--port", "-1"},
        {"--listen", "localhost"},
        {"--listen", ""},
        {"--board", "large"},
        {"--board", "1"},
        {"--layout", "Newer"},
        {"--fault", "out:1"},
        {"--fault", "out:1:stall", "in:1:stall"},
        {"--frame-interval", "60001"},
        {"--uid", "123456789012345678901234567890123456789012345678901234567890123"}};
    for (const auto& arguments : wrong) {
        int exitCode = -1;
        EXPECT_FALSE(parse(arguments, exitCode)) << arguments.back();
        EXPECT_EQ(exitCode, 2) << arguments.back();
    }
}

TEST(Options, OfHelpAndVersionEndWell) {
    for (const char* argument : {"--help", "-h", "--version"}) {
        int exitCode = -1;
        EXPECT_FALSE(parse({argument}, exitCode)) << argument;
        EXPECT_EQ(exitCode, 0) << argument;
    }
}

}  // namespace
