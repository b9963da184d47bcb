#include "tests/device/faults/pauses.h"

namespace {

unsigned long asked = 0;

}  // namespace

namespace faults {

unsigned long pausesAskedFor() { return asked; }

}  // namespace faults

extern "C" void __wrap__Z12wxMilliSleepm(unsigned long milliseconds);

/// Called by the tool in place of wxMilliSleep.
extern "C" void __wrap__Z12wxMilliSleepm(unsigned long milliseconds) { asked += milliseconds; }
