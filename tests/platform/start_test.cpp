// What a program is started with.

#include "platform/start.h"

#include <gmock/gmock.h>

#include "tests/support/variables.h"

namespace {

TEST(CommandLine, EndsWithANull) {
    char name[] = "program";
    char argument[] = "--help";
    char* given[] = {name, argument, nullptr};
    start::CommandLine line(2, given);
    ASSERT_GE(line.count(), 1);  // Windows has its own.
    EXPECT_EQ(line.values()[line.count()], nullptr);
#ifndef _WIN32
    EXPECT_EQ(line.count(), 2);
    EXPECT_STREQ(line.values()[1], "--help");
#endif
}

TEST(Variable, IsEmptyWhenThereIsNone) {
    support::setVariable("LUMADOT_TEST_VARIABLE", "value");
    EXPECT_EQ(start::variable("LUMADOT_TEST_VARIABLE"), "value");
    support::setVariable("LUMADOT_TEST_VARIABLE", "");
    EXPECT_EQ(start::variable("LUMADOT_TEST_VARIABLE"), "");
}

}  // namespace
