#ifndef LUMADOT_TESTS_DEVICE_PAGES_DOTS_H
#define LUMADOT_TESTS_DEVICE_PAGES_DOTS_H

#include <string>
#include <vector>

#include "device/dump_format.h"
#include "device/input_mode.h"

namespace pages {

/// "128 x 32"
std::string dotsOf(const dump::Geometry& display);
/// "32 rows of 16 bytes"
std::string rowsOf(const dump::Geometry& display);
/// "1, 13"
std::string withCommas(const std::vector<int>& numbers);

/// How a dot's shade follows from its bits, of which the controller sends `planes`: "b0 + 2 b1",
/// "bits set, through 0 1 2 3 3".
std::string ruleText(const DotRule& rule, int planes);

}  // namespace pages

#endif
