// Which controller is taken, and which mode or preset is meant.

#include "tests/control/control_run.h"

namespace {

using support::ControlTest;
using support::lumadotctl;
using support::Ran;

struct Choosing : ControlTest {
    Choosing() {
        bus.plug({.vendor = 0x0314, .product = 0xE456});
        first = bus.plugController({.uniqueId = "FIRST"});
        second = std::make_shared<simulator::Controller>(
            simulator::ControllerOptions{.uniqueId = "SECOND"});
        bus.plug({.controller = second, .bus = 2, .ports = {1, 4}});
    }
    void expectMode(int inFirst, int inSecond) const {
        EXPECT_EQ(first->working()[0], inFirst);
        EXPECT_EQ(second->working()[0], inSecond);
    }

    std::shared_ptr<simulator::Controller> first, second;
};

TEST_F(Choosing, TheFirstControllerIsTaken) {
    EXPECT_EQ(lumadotctl({"mode", "7"}).code, 0);
    expectMode(7, 0);
}

TEST_F(Choosing, APlaceIsTaken) {
    EXPECT_EQ(lumadotctl({"--device", "2-1.4", "mode", "7"}).code, 0);
    expectMode(0, 7);
    EXPECT_EQ(lumadotctl({"mode", "5", "--device", "1-2"}).code, 0);
    expectMode(5, 7);
}

TEST_F(Choosing, AUniqueIdIsTaken) {
    EXPECT_EQ(lumadotctl({"--device", "SECOND", "mode", "7"}).code, 0);
    expectMode(0, 7);
}

TEST_F(Choosing, APlaceWithoutControllerAndAnUnknownIdAreNoController) {
    EXPECT_EQ(lumadotctl({"--device", "2-1", "mode", "7"}),
              (Ran{3, "",
                   "lumadotctl: There is no controller at 2-1.\n"
                   "Run lumadotctl list: it shows the controllers that there are.\n"}));
    EXPECT_EQ(lumadotctl({"--device", "THIRD", "mode", "7"}),
              (Ran{3, "",
                   "lumadotctl: There is no controller with the unique id THIRD.\n"
                   "Run lumadotctl list: it shows the controllers that there are.\n"}));
    expectMode(0, 0);
}

TEST_F(Choosing, AControllerThatCannotBeAskedForItsIdIsReported) {
    bus.plug({.refuseClaim = true});
    EXPECT_EQ(lumadotctl({"--device", "THIRD", "mode", "7"}).code, 5);
    EXPECT_EQ(lumadotctl({"--device", "SECOND", "mode", "7"}).code, 0);
}

TEST_F(Choosing, CheckTakesAPlaceOnly) {
    EXPECT_EQ(lumadotctl({"--device", "2-1.4", "check"}).code, 0);
    EXPECT_EQ(lumadotctl({"--device", "SECOND", "check"}).code, 2);
    EXPECT_EQ(lumadotctl({"--device", "2-9", "check"}).code, 3);
}

struct Unclear {
    const char* name;
    support::Arguments arguments;
    std::string message;
};

class UnclearName : public Choosing, public testing::WithParamInterface<Unclear> {};

TEST_P(UnclearName, IsWrongUsageAndSendsNothing) {
    const Ran ran = lumadotctl(GetParam().arguments);
    EXPECT_EQ(ran.code, 2);
    EXPECT_THAT(ran.err, testing::StartsWith("lumadotctl: " + GetParam().message + "\n"));
    EXPECT_TRUE(bus.calls().empty());
}

INSTANTIATE_TEST_SUITE_P(
    Every, UnclearName,
    testing::Values(
        Unclear{"ambiguous",
                {"mode", "stern"},
                "\"stern\" is more than one input mode.\n"
                "Say more of the name, or the number: 2 Stern S.A.M., 3 Stern Whitestar, "
                "4 Stern Spike."},
        Unclear{"part_of_a_label_and_of_an_alias",
                {"mode", "sega"},
                "\"sega\" is more than one input mode.\n"
                "Say more of the name, or the number: 1 Bally/Williams, 5 Data East / Sega."},
        Unclear{"no_such_number", {"mode", "16"}, "There is no input mode \"16\"."},
        Unclear{"a_number_without_a_name", {"mode", "239"}, "There is no input mode \"239\"."},
        Unclear{"a_number_beyond_all",
                {"mode", "99999999999999999999"},
                "There is no input mode \"99999999999999999999\"."},
        Unclear{"no_number_at_all", {"mode", "-1"}, "There is no input mode \"-1\"."},
        Unclear{"no_name", {"mode", ""}, "\"\" is more than one input mode."},
        Unclear{"preset",
                {"preset", "9"},
                "There is no palette preset \"9\".\nThere are: 0 Palette 0 (VGA), 1 Palette 1 "
                "(Red), 2 Palette 2 (Green), 3 Palette 3 (Blue), 4 Palette 4 (Violet), 5 Palette "
                "5 (Cyan), 6 Palette 6 (Yellow), 7 Palette 7 (White), 8 Palette 8 (Orange)."}),
    [](const auto& row) { return row.param.name; });

}  // namespace
