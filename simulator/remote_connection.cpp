#include "simulator/remote_connection.h"

#include <algorithm>
#include <asio.hpp>
#include <cctype>
#include <charconv>

namespace simulator {

using asio::ip::tcp;

namespace {

/// The letters of a machine's name.
bool isNameLetter(char letter) {
    const auto byte = static_cast<unsigned char>(letter);
    return std::isalnum(byte) != 0 || letter == '-' || letter == '.';
}

/// An address stays what it is, a name becomes its addresses; none: it is neither.
std::vector<std::string> lookUp(const std::string& host) {
    asio::error_code error;
    asio::ip::make_address(host, error);
    if (!error) {
        return {host};
    }
    std::vector<std::string> addresses;
    if (host.empty() || !std::ranges::all_of(host, isNameLetter)) {
        return addresses;
    }
    asio::io_context io;
    // No flags: a machine without a network has addresses of its own, too.
    for (const auto& entry : tcp::resolver(io).resolve(host, "", tcp::resolver::flags(), error)) {
        addresses.push_back(entry.endpoint().address().to_string());
    }
    return addresses;
}

}  // namespace

std::optional<RemoteAddress> parseRemoteAddress(std::string_view text) {
    const std::size_t colon = text.rfind(':');
    if (colon == std::string_view::npos) {
        return std::nullopt;
    }
    std::string_view host = text.substr(0, colon);
    if (host.starts_with('[') && host.ends_with(']')) {
        host = host.substr(1, host.size() - 2);
    }
    RemoteAddress address;
    const char* const end = text.data() + text.size();
    const auto [stop, wrong] = std::from_chars(text.data() + colon + 1, end, address.port);
    if (wrong != std::errc() || stop != end || address.port == 0) {
        return std::nullopt;
    }
    address.hosts = lookUp(std::string(host));
    return address.hosts.empty() ? std::nullopt : std::optional(address);
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
    std::vector<tcp::endpoint> endpoints;
    for (const std::string& host : address.hosts) {
        endpoints.emplace_back(asio::ip::make_address(host), address.port);
    }
    tcp::socket& socket = network_->socket;
    const bool connected = network_->finish(
        [&](auto handler) { asio::async_connect(socket, endpoints, handler); }, deadline);
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
