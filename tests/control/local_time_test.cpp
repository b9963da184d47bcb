// The start of a recording is the toolkit's local time, as the window's captures take it. The
// toolkit asks for the zone once: each zone is a run of its own.

#include <gtest/gtest.h>
#include <wx/time.h>

#include "control/clock.h"

TEST(LocalTime, IsTheToolkits) {
    const auto before = wxGetLocalTimeMillis().GetValue();
    const auto found = control::localTimeMillis();
    EXPECT_LE(before, found);
    EXPECT_LE(found, wxGetLocalTimeMillis().GetValue());
}
