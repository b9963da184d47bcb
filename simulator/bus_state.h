#ifndef LUMADOT_SIMULATOR_BUS_STATE_H
#define LUMADOT_SIMULATOR_BUS_STATE_H

#include <fstream>
#include <map>
#include <set>

#include "simulator/bus.h"
#include "simulator/remote_device.h"

namespace simulator {

/// What the bus knows. Only the bus and the library calls in front of it look in here.
///
/// Devices and handles go out to the client as numbers dressed up as pointers: they are never
/// followed, so a null, closed or invented one is recognised and survived. A number is never used
/// twice in the process.
struct Bus::State {
    using Token = std::uintptr_t;

    struct Slot {
        Device device;
        Token token = 0;
        bool present = true;
        Token claimedBy = 0;  ///< the handle that holds interface 0, 0: none
    };

    Token newToken() { return nextToken++; }
    int findDevice(Token token) const;  ///< the device's number, -1: there never was one
    int findHandle(Token token) const;  ///< the number of the device it is open on, -1: not open

    /// Whether the library could work with this context. As with the real one, null is the default
    /// context, or, while that was not initialised, any other.
    bool hasContext(Token token) const;

    /// What the faults make of this call, taken together; those that are used up are removed.
    Fault takeFaults(const Call& call);
    void record(Call call);
    bool recording() const { return logging || log.is_open(); }
    void dropOldCalls();
    /// Lets this many ms pass, in real time or on the simulated clock.
    void wait(std::uint64_t ms);
    void reset();
    /// Plugs in what the simulator has that was joined, and unplugs what it no longer has.
    void lookForRemoteDevices();

    // Not forgotten at a reset: the client still has them.
    int defaultContext = 0;    ///< how often it was initialised, less how often it was given back
    std::set<Token> contexts;  ///< those that a client has made beside it

    std::vector<Slot> devices;
    std::map<Token, int> handles;  ///< open handles, and the number of their device
    std::vector<Fault> faults;
    std::optional<RemoteAddress> simulator;

    std::vector<Call> calls;
    std::size_t keep = 0;
    bool logging = true;
    std::ofstream log;

    bool realTime = false;
    std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
    std::uint64_t skipped = 0;  ///< ms waited on the simulated clock only

    /// Device lists that a client has not freed, and the reset they were handed out after. The
    /// addresses are kept complemented: a leak checker must not take them for the client's own.
    std::map<std::uintptr_t, int> lists;
    int resets = 0;

    Token nextToken = static_cast<Token>(0x5AFE000000000000U);  // No address on any machine.
};

}  // namespace simulator

#endif
