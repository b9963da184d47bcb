// The simulated bus as a program finds it that knows nothing of it.

#include <gmock/gmock.h>

#include <map>
#include <string>

#include "simulator/environment.h"
#include "tests/simulator/bus_fixture.h"
#include "tests/support/variables.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;

class Environment : public BusFixture {
protected:
    /// Sets up the bus by these variables, which are gone afterwards; returns what was said.
    std::string configure(const std::map<std::string, std::string>& variables) {
        for (const auto& [name, value] : variables) {
            support::setVariable(name, value);
        }
        testing::internal::CaptureStderr();
        configureFromEnvironment(bus);
        for (const auto& [name, value] : variables) {
            support::setVariable(name, "");
        }
        return testing::internal::GetCapturedStderr();
    }
};

TEST_F(Environment, PlugsTheBoard) {
    EXPECT_THAT(configure({{"LUMADOT_SIM_BOARD", "xl"}, {"LUMADOT_SIM_FRAME_MS", "16"}}),
                IsEmpty());
    EXPECT_EQ(devices().size(), 1U);
}

TEST_F(Environment, WithoutABoardIsAnEmptyBus) {
    EXPECT_THAT(configure({}), IsEmpty());
    EXPECT_THAT(configure({{"LUMADOT_SIM_BOARD", "none"}, {"LUMADOT_SIM_LAYOUT", ""}}), IsEmpty());
    EXPECT_THAT(devices(), IsEmpty());
}

TEST_F(Environment, ValueThatMakesNoSenseIsSaidAndTheBusStaysEmpty) {
    struct Case {
        const char* name;
        const char* value;
        const char* allowed;
    };
    constexpr Case Cases[] = {
        {"LUMADOT_SIM_BOARD", "XL", "none, standard, xl"},
        {"LUMADOT_SIM_LAYOUT", "old", "newer, older"},
        {"LUMADOT_SIM_TIME", "slow", "fast, real"},
        {"LUMADOT_SIM_FRAME_MS", "-1", "0 to 60000, in ms"},
        {"LUMADOT_SIM_FRAME_MS", "60001", "0 to 60000, in ms"},
        {"LUMADOT_SIM_FRAME_MS", "16ms", "0 to 60000, in ms"},
        {"LUMADOT_SIM_FAULT", "libusb_open", "FUNCTION:N:RESULT"},
        {"LUMADOT_SIM_FAULT", "libusb_open:1:-1,x", "FUNCTION:N:RESULT"},
        {"LUMADOT_SIM_CONNECT", "3240", "HOST:PORT"},
        {"LUMADOT_SIM_CONNECT", "127.0.0.1:70000", "HOST:PORT"},
    };
    for (const auto& [name, value, allowed] : Cases) {
        bus.reset();
        std::map<std::string, std::string> variables = {{"LUMADOT_SIM_BOARD", "standard"}};
        variables[name] = value;
        const std::string said = configure(variables);
        EXPECT_THAT(said, AllOf(HasSubstr(std::string(name) + " is \"" + value + "\""),
                                HasSubstr(std::string("allowed: ") + allowed),
                                HasSubstr("The bus stays empty.")));
        EXPECT_THAT(devices(), IsEmpty()) << name;
    }
}

}  // namespace
