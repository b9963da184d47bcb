#include "tests/control/pauses.h"

#include <chrono>
#include <utility>

#include "control/clock.h"
#include "control/interrupt.h"

namespace support {

namespace {

std::vector<std::int64_t> pauses;
std::function<void()> inPause;
std::function<void()> atClock;
control::Milliseconds paused{0};

}  // namespace

std::vector<std::int64_t> takePauses() { return std::exchange(pauses, {}); }

void onPause(std::function<void()> action) { inPause = std::move(action); }

void onClock(std::function<void()> action) { atClock = std::move(action); }

}  // namespace support

// In front of the functions of control/clock.h: the program is linked with --wrap. The letter
// stands for the type with 64 bits.
#ifdef _WIN32
#define SECONDS_SINCE \
    __wrap__ZN7control12secondsSinceENSt6chrono10time_pointINS0_3_V212steady_clockENS0_8durationIxSt5ratioILx1ELx1000000000EEEEEE
#define PAUSE __wrap__ZN7control5pauseENSt6chrono8durationIxSt5ratioILx1ELx1000EEEE
#else
#define SECONDS_SINCE \
    __wrap__ZN7control12secondsSinceENSt6chrono10time_pointINS0_3_V212steady_clockENS0_8durationIlSt5ratioILl1ELl1000000000EEEEEE
#define PAUSE __wrap__ZN7control5pauseENSt6chrono8durationIlSt5ratioILl1ELl1000EEEE
#endif

// Its type has no counterpart in C.
control::TimePoint now() __asm__("__wrap__ZN7control3nowEv");
control::TimePoint now() {
    if (support::atClock) {
        support::atClock();
    }
    return std::chrono::steady_clock::now() + support::paused;
}

extern "C" {

double SECONDS_SINCE(control::TimePoint start) {
    return std::chrono::duration<double>(control::now() - start).count();
}

void PAUSE(std::chrono::milliseconds time) {
    support::pauses.push_back(time.count());
    support::paused += time;
    if (support::inPause) {
        support::inPause();
    }
    control::interrupt::check();
}
}
