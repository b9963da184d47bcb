// The window and lumadotctl as processes of their own, on a bus that both see.

#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/device/real_library/mocked_usbfs.h"

namespace {

TEST(TwoPrograms, ShareTheControllerUntilTheWindowCaptures) {
    ASSERT_EQ(support::MockedUsbfs::unavailable(), "");
    const support::MockedUsbfs controller;
    EXPECT_EQ(std::system(TWO_PROGRAMS), 0);
}

}  // namespace
