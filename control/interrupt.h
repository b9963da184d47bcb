#ifndef LUMADOT_CONTROL_INTERRUPT_H
#define LUMADOT_CONTROL_INTERRUPT_H

#include <array>
#include <csignal>

namespace control::interrupt {

/// While it lives, the first SIGINT, SIGTERM or SIGHUP (its terminal is closed; on
/// Windows SIGBREAK) only sets
/// `requested`, so that the program gives back what it holds; the next one ends the program at
/// once. A signal that was ignored stays so.
class Watch {
public:
    Watch();
    ~Watch();
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

private:
    using Handler = void (*)(int);
#ifdef SIGHUP
    static constexpr std::array Signals = {SIGINT, SIGTERM, SIGHUP};
#else
    static constexpr std::array Signals = {SIGINT, SIGTERM,
                                           SIGBREAK};  // The last is Windows' hangup.
#endif

    std::array<Handler, Signals.size()> before_{};
};

bool requested();

/// Throws Interrupted when a signal has asked for the end.
void check();

}  // namespace control::interrupt

#endif
