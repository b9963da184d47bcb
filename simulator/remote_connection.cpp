#include "simulator/remote_connection.h"

#include <asio.hpp>
#include <charconv>

namespace simulator {

using asio::ip::tcp;

std::optional<RemoteAddress> parseRemoteAddress(std::string_view text) {
    const std::size_t colon = text.rfind(':');
    if (colon == std::string_view::npos) {
        return std::nullopt;
    }
    std::string_view host = text.substr(0, colon);
    if (host.starts_with('[') && host.ends_with(']')) {
        host = host.substr(1, host.size() - 2);
    }
    RemoteAddress address = {.host = host == "localhost" ? "127.0.0.1" : std::string(host)};
    const char* const end = text.data() + text.size();
    const auto [stop, wrong] = std::from_chars(text.data() + colon + 1, end, address.port);
    asio::error_code error;
    asio::ip::make_address(address.host, error);
    const bool understood = !error && wrong == std::errc() && stop == end && address.port != 0;
    return understood ? std::optional(address) : std::nullopt;
}

struct RemoteConnection::Network {
    asio::io_context io{1};
    tcp::socket socket{io};

    /// Does `start`, which is given a handler, and waits for it until the deadline.
    template <class Start>
    bool finish(Start start, Time deadline) {
        std::optional<asio::error_code> result;
        start([&result](asio::error_code error, auto...) { result = error; });
        io.restart();
        io.run_until(deadline);
        if (!result) {
            asio::error_code ignored;
            socket.cancel(ignored);
            io.restart();
            io.run();
        }
        return !*result;
    }
};

RemoteConnection::RemoteConnection() : network_(std::make_unique<Network>()) {}
RemoteConnection::~RemoteConnection() = default;

bool RemoteConnection::connect(const RemoteAddress& address, Time deadline) {
    const tcp::endpoint endpoint(asio::ip::make_address(address.host), address.port);
    tcp::socket& socket = network_->socket;
    const bool connected =
        network_->finish([&](auto handler) { socket.async_connect(endpoint, handler); }, deadline);
    asio::error_code ignored;
    socket.set_option(tcp::no_delay(true), ignored);
    return connected;
}

bool RemoteConnection::send(std::span<const std::uint8_t> bytes, Time deadline) {
    return network_->finish(
        [&](auto handler) {
            asio::async_write(network_->socket, asio::buffer(bytes.data(), bytes.size()), handler);
        },
        deadline);
}

bool RemoteConnection::receive(std::span<std::uint8_t> bytes, Time deadline) {
    return network_->finish(
        [&](auto handler) {
            asio::async_read(network_->socket, asio::buffer(bytes.data(), bytes.size()), handler);
        },
        deadline);
}

bool RemoteConnection::waitForBytes(Time deadline) {
    return network_->finish(
        [&](auto handler) { network_->socket.async_wait(tcp::socket::wait_read, handler); },
        deadline);
}

}  // namespace simulator
