// What a program is started with.

#include "platform/start.h"

#include <gmock/gmock.h>

#include "tests/support/variables.h"

#ifdef _WIN32
#include <windows.h>
#endif

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

#ifdef _WIN32

class TheConsole : public testing::Test {
protected:
    TheConsole() {
        FreeConsole();
        AllocConsole();
        SetConsoleOutputCP(437);
        before = mode();
    }
    ~TheConsole() override { FreeConsole(); }

    static DWORD mode() {
        const HANDLE output = CreateFileW(L"CONOUT$", GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                                          OPEN_EXISTING, 0, nullptr);
        DWORD mode = 0;
        GetConsoleMode(output, &mode);
        CloseHandle(output);
        return mode;
    }

    DWORD before = 0;
};

TEST_F(TheConsole, IsAsItWasWhenTheProgramEnds) {
    {
        const start::CommandLine line(0, nullptr);
        EXPECT_EQ(GetConsoleOutputCP(), 65001U);
        EXPECT_NE(mode() & ENABLE_VIRTUAL_TERMINAL_PROCESSING, 0U);
    }
    EXPECT_EQ(GetConsoleOutputCP(), 437U);
    EXPECT_EQ(mode(), before);
}

TEST_F(TheConsole, IsLeftAsItWasWhenAWindowTakesOver) {
    const start::CommandLine line(0, nullptr);
    start::leaveConsole();
    EXPECT_EQ(GetConsoleWindow(), nullptr);
    EXPECT_EQ(GetConsoleOutputCP(), 0U);
}

#endif

TEST(Variable, IsEmptyWhenThereIsNone) {
    support::setVariable("LUMADOT_TEST_VARIABLE", "value");
    EXPECT_EQ(start::variable("LUMADOT_TEST_VARIABLE"), "value");
    support::setVariable("LUMADOT_TEST_VARIABLE", "");
    EXPECT_EQ(start::variable("LUMADOT_TEST_VARIABLE"), "");
}

}  // namespace
