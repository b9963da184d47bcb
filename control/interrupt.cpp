#include "control/interrupt.h"

#include <algorithm>
#include <chrono>
#include <thread>

#include "control/failure.h"

namespace control::interrupt {

namespace {

volatile std::sig_atomic_t asked = 0;

extern "C" void takeSignal(int signal) {
    asked = 1;
    std::signal(signal, SIG_DFL);
#ifdef SIGBREAK
    // In a thread of its own: Windows ends the program when this returns, or after 5 s.
    while (signal == SIGBREAK) {
        std::this_thread::sleep_for(std::chrono::seconds(1));
    }
#endif
}

auto catchSignal(int signal) {
    const auto before = std::signal(signal, takeSignal);
    if (before == SIG_IGN) {
        std::signal(signal, SIG_IGN);
    }
    return before;
}

}  // namespace

Watch::Watch() {
    asked = 0;
    std::ranges::transform(Signals, before_.begin(), catchSignal);
}

Watch::~Watch() {
    for (std::size_t i = 0; i < Signals.size(); ++i) {
        std::signal(Signals[i], before_[i]);
    }
    asked = 0;
}

bool requested() { return asked != 0; }

void check() {
    if (requested()) {
        throw Interrupted();
    }
}

}  // namespace control::interrupt
