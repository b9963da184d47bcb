#include "tests/control/pauses.h"

#include <chrono>
#include <utility>

#include "control/interrupt.h"

namespace support {

namespace {

std::vector<long> pauses;
std::function<void()> inPause;

}  // namespace

std::vector<long> takePauses() { return std::exchange(pauses, {}); }

void onPause(std::function<void()> action) { inPause = std::move(action); }

}  // namespace support

/// In front of control::pause: the program is linked with --wrap.
extern "C" void __wrap__ZN7control5pauseENSt6chrono8durationIlSt5ratioILl1ELl1000EEEE(
    std::chrono::milliseconds time) {
    support::pauses.push_back(time.count());
    if (support::inPause) {
        support::inPause();
    }
    control::interrupt::check();
}
