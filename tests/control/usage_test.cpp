// Wrong usage, help, version, and results that cannot be written.

#include <csignal>
#include <fstream>

#include "tests/control/control_run.h"

namespace {

using support::Arguments;
using support::ControlTest;
using support::lumadotctl;
using support::Ran;

using Usage = ControlTest;

class WrongUsage : public Usage, public testing::WithParamInterface<Arguments> {
protected:
    /// What is started all the same ends soon, and leaves nothing behind.
    WrongUsage() {
        std::filesystem::current_path(folder.path());
        bus.inject({.nth = 100, .meanwhile = [] { std::raise(SIGTERM); }});
    }
    ~WrongUsage() override { std::filesystem::current_path("/"); }
};

TEST_P(WrongUsage, IsExitCodeTwoAndTouchesNoController) {
    bus.plugController();
    const Ran ran = lumadotctl(GetParam());
    EXPECT_EQ(ran.code, 2) << ran;
    EXPECT_EQ(ran.out, "");
    EXPECT_THAT(ran.err, testing::StartsWith("lumadotctl: "));
    EXPECT_TRUE(bus.calls().empty());
}

TEST_P(WrongUsage, IsToldAsJsonToo) {
    Arguments arguments = GetParam();
    arguments.insert(arguments.begin(), "--json");
    EXPECT_THAT(lumadotctl(arguments).out,
                testing::StartsWith("{\n  \"error\": {\n    \"code\": 2,\n    \"name\": null,\n"));
}

INSTANTIATE_TEST_SUITE_P(
    Every, WrongUsage,
    testing::Values(
        Arguments{}, Arguments{"unknown"}, Arguments{"list", "more"}, Arguments{"list", "info"},
        Arguments{"--unknown", "list"}, Arguments{"--timeout", "0", "list"},
        Arguments{"--timeout", "x", "list"}, Arguments{"--timeout", "-1", "list"},
        Arguments{"--timeout", "600001", "list"}, Arguments{"--device"},
        Arguments{"brightness", "9"}, Arguments{"brightness", "256"}, Arguments{"brightness", "x"},
        Arguments{"brightness", "10", "20"}, Arguments{"enhancer", "maybe"},
        Arguments{"enhancer", "1"}, Arguments{"palette"}, Arguments{"palette", "--write", "a.pal"},
        Arguments{"palette", "--preset", "1"},
        Arguments{"palette", "a.pal", "--write", "b.pal", "--preset", "1"},
        Arguments{"palette", "--store", "--write", "b.pal", "--preset", "1"}, Arguments{"settings"},
        Arguments{"settings", "save"}, Arguments{"settings", "save", "a", "b"},
        Arguments{"settings", "save", "a", "--store"}, Arguments{"upload"},
        Arguments{"record", "--frames", "0"}, Arguments{"record", "--frames", "-1"},
        Arguments{"record", "--seconds", "0"}, Arguments{"record", "--seconds", "nan"},
        Arguments{"record", ".", "--mode", "stern"}, Arguments{"dump"}, Arguments{"dump", "info"},
        Arguments{"dump", "export", "a.txt"},
        Arguments{"dump", "show", "a.txt", "--colours", "some"}, Arguments{"play"},
        Arguments{"play", "a.txt", "--speed", "0"}, Arguments{"play", "a.txt", "--speed", "nan"},
        Arguments{"show"}, Arguments{"show", "a.png", "--seconds", "0"}, Arguments{"completion"},
        Arguments{"completion", "tcsh"}, Arguments{"store", "--wait"}));

TEST_F(Usage, EveryCommandHasHelp) {
    EXPECT_THAT(lumadotctl({"--help"}).out, testing::HasSubstr("  check "));
    for (const char* const command :
         {"list", "check", "info", "mode", "preset", "brightness", "enhancer", "palette", "store",
          "logo", "reset", "settings", "upload", "record", "dump", "play", "show", "completion"}) {
        const Ran ran = lumadotctl({command, "--help"});
        EXPECT_EQ(ran.code, 0);
        EXPECT_THAT(ran.out, testing::HasSubstr(std::string("lumadotctl ") + command));
        EXPECT_EQ(ran.err, "");
    }
}

TEST_F(Usage, VersionIsTold) { EXPECT_EQ(lumadotctl({"--version"}), (Ran{0, "4.02\n", ""})); }

TEST_F(Usage, ResultsThatCannotBeWrittenAreAFailureOfAFile) {
    bus.plugController();
    std::ofstream full("/dev/full");
    std::ostringstream messages;
    const char* const arguments[] = {"info"};
    EXPECT_EQ(control::run(arguments, full, messages), 7);
    EXPECT_EQ(messages.str(), "lumadotctl: The results cannot be written.\n");
}

TEST_F(Usage, ASignalThatIsIgnoredStaysIgnored) {
    bus.plugController();
    const auto before = std::signal(SIGINT, SIG_IGN);
    bus.inject({.function = "libusb_open", .meanwhile = [] { std::raise(SIGINT); }});
    EXPECT_EQ(lumadotctl({"mode", "2"}).code, 0);
    EXPECT_EQ(std::signal(SIGINT, before), SIG_IGN);
}

TEST_F(Usage, NamesTheCommandThatThereIsNot) {
    EXPECT_THAT(lumadotctl({"nonsense"}).err,
                testing::StartsWith("lumadotctl: \"nonsense\" is not understood.\n"));
    EXPECT_THAT(lumadotctl({"settings", "sav"}).err,
                testing::StartsWith("lumadotctl: \"sav\" is not understood.\n"));
    EXPECT_THAT(lumadotctl({}).err, testing::StartsWith("lumadotctl: A command is required.\n"));
}

}  // namespace
