#ifndef LUMADOT_SIMULATOR_REMOTE_CONNECTION_H
#define LUMADOT_SIMULATOR_REMOTE_CONNECTION_H

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace simulator {

/// Where a simulator listens.
struct RemoteAddress {
    std::vector<std::string> hosts = {};  ///< addresses in numbers, to be tried in turn
    std::uint16_t port = 0;
};

/// From "HOST:PORT", where HOST is an IPv4 address, an IPv6 address in brackets, or a name, which
/// is looked up for as long as that takes. Nothing: it is something else, or nobody knows the name.
std::optional<RemoteAddress> parseRemoteAddress(std::string_view text);

/// A TCP connection to a simulator. No call takes longer than it is told to. After a call that
/// failed the connection is of no use any more.
class RemoteConnection {
public:
    using Time = std::chrono::steady_clock::time_point;

    RemoteConnection();
    ~RemoteConnection();
    RemoteConnection(const RemoteConnection&) = delete;
    RemoteConnection& operator=(const RemoteConnection&) = delete;

    bool connect(const RemoteAddress& address, Time deadline);
    bool send(std::span<const std::uint8_t> bytes, Time deadline);
    /// Fills all of `bytes`.
    bool receive(std::span<std::uint8_t> bytes, Time deadline);
    /// True: `receive` has something to take, or the end to notice. False: the time is over, and
    /// the connection is as good as before.
    bool waitForBytes(Time deadline);

private:
    struct Network;
    std::unique_ptr<Network> network_;
};

}  // namespace simulator

#endif
