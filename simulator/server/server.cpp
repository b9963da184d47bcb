#include "simulator/server/server.h"

#include <array>
#include <asio.hpp>
#include <chrono>
#include <csignal>
#include <optional>
#include <set>

#include "simulator/server/session.h"

namespace simulator {

namespace {

using asio::ip::tcp;
using std::chrono::milliseconds;

constexpr std::size_t ReadSize = 1U << 16U;
/// A client that does not read what it is sent is not read from.
constexpr std::size_t MostOutput = 1U << 20U;

}  // namespace

struct Server::Network {
    asio::io_context io{1};
    tcp::acceptor acceptor{io};
    asio::steady_timer timer{io};
    asio::steady_timer pause{io};  // After an accept that failed.
    asio::signal_set signals{io};
    std::set<std::shared_ptr<Connection>> connections = {};
    bool accepting = false;
};

/// One client. Whatever it does, it does with the device held.
class Server::Connection : public std::enable_shared_from_this<Connection> {
    /// Calls the function with the device held, unless the connection has been closed meanwhile.
    template <class... Arguments>
    auto handler(void (Connection::*function)(asio::error_code, Arguments...)) {
        return
            [self = shared_from_this(), function](asio::error_code error, Arguments... arguments) {
                const std::lock_guard lock(self->server_.mutex_);
                if (self->session_) {
                    ((*self).*function)(error, arguments...);
                    self->server_.rearm();
                }
            };
    }

public:
    Connection(Server& server, tcp::socket socket)
        : server_(server),
          socket_(std::move(socket)),
          patience_(server.network_->io),
          session_(std::in_place, server.device_) {
        asio::error_code ignored;
        const auto peer = socket_.remote_endpoint(ignored);
        name_ = peer.address().to_string(ignored) + ":" + std::to_string(peer.port());
        socket_.set_option(tcp::no_delay(true), ignored);
        socket_.set_option(asio::socket_base::keep_alive(true), ignored);
    }

    void start() {
        losePatience();
        read();
    }

    /// The device may have something for the client, or may have gone.
    void update() {
        session_->update();
        flush();
    }

    /// What the client had of the device is free at once; the rest goes with the last handler.
    void close(const std::string& problem = "") {
        if (!session_) {
            return;
        }
        if (!problem.empty() && server_.options_.complain) {
            server_.options_.complain(name_, problem);
        }
        session_.reset();
        asio::error_code ignored;
        socket_.shutdown(tcp::socket::shutdown_both, ignored);
        socket_.close(ignored);
        patience_.cancel();
        server_.leave(shared_from_this());
    }

private:
    /// From now on the client has a limited time, unless it gets the device.
    void losePatience() {
        patience_.expires_after(milliseconds(server_.options_.patience));
        patience_.async_wait(handler(&Connection::outOfPatience));
    }

    void outOfPatience(asio::error_code error) {
        if (!error && !session_->attached()) {
            close(session_->over() ? session_->problem() : "nothing asked for in time");
        }
    }

    void read() {
        reading_ = true;
        socket_.async_read_some(asio::buffer(input_), handler(&Connection::hasRead));
    }

    void hasRead(asio::error_code error, std::size_t size) {
        reading_ = false;
        if (error) {
            return close();
        }
        session_->receive({input_.data(), size});
        flush();
    }

    /// Sends what there is to send, and reads on while that is not too much.
    void flush() {
        const usbip::Bytes output = session_->takeOutput();
        waiting_.insert(waiting_.end(), output.begin(), output.end());
        if (!writing_ && !waiting_.empty()) {
            writing_ = true;
            leaving_ = std::exchange(waiting_, {});
            asio::async_write(socket_, asio::buffer(leaving_), handler(&Connection::hasWritten));
        }
        if (session_->over()) {
            return writing_ ? losePatience() : close(session_->problem());
        }
        if (!reading_ && waiting_.size() < MostOutput) {
            read();
        }
    }

    void hasWritten(asio::error_code error, std::size_t) {
        writing_ = false;
        if (error) {
            return close();
        }
        flush();
    }

    Server& server_;
    tcp::socket socket_;
    asio::steady_timer patience_;
    std::string name_;
    std::optional<Session> session_;  // Empty: closed.
    std::array<std::uint8_t, ReadSize> input_ = {};
    usbip::Bytes waiting_;  // To be sent next.
    usbip::Bytes leaving_;  // Being sent.
    bool reading_ = false;
    bool writing_ = false;
};

Server::Server(ControllerOptions controller, Options options)
    : device_(std::move(controller)),
      options_(std::move(options)),
      network_(std::make_unique<Network>()) {
    const tcp::endpoint endpoint(asio::ip::make_address(options_.address), options_.port);
    tcp::acceptor& acceptor = network_->acceptor;
    acceptor.open(endpoint.protocol());
#ifndef _WIN32  // There it would let a second program have the same port.
    acceptor.set_option(asio::socket_base::reuse_address(true));
#endif
    acceptor.bind(endpoint);
    acceptor.listen();
}

Server::~Server() = default;

std::uint16_t Server::port() const { return network_->acceptor.local_endpoint().port(); }

void Server::run() {
    accept();
    network_->io.run();
}

void Server::stop() { network_->io.stop(); }

void Server::stopOnSignals() {
    network_->signals.add(SIGTERM);
    network_->signals.add(SIGINT);
    network_->signals.async_wait([this](asio::error_code error, int) {
        if (!error) {
            stop();
        }
    });
}

void Server::accept() {
    if (network_->accepting || network_->connections.size() >= MostConnections) {
        return;
    }
    network_->accepting = true;
    network_->acceptor.async_accept([this](asio::error_code error, tcp::socket socket) {
        const std::lock_guard lock(mutex_);
        network_->accepting = false;
        if (error) {
            return acceptLater();  // No descriptor is free, for example.
        }
        const auto connection = std::make_shared<Connection>(*this, std::move(socket));
        network_->connections.insert(connection);
        connection->start();
        accept();
    });
}

void Server::acceptLater() {
    constexpr milliseconds Pause(100);
    network_->pause.expires_after(Pause);
    network_->pause.async_wait([this](asio::error_code error) {
        if (!error) {
            accept();
        }
    });
}

void Server::leave(const std::shared_ptr<Connection>& connection) {
    network_->connections.erase(connection);
    accept();
}

void Server::wake() {
    asio::post(network_->io, [this] { update(); });
}

void Server::update() {
    const std::lock_guard lock(mutex_);
    const auto connections = network_->connections;  // Some may leave meanwhile.
    for (const auto& connection : connections) {
        connection->update();
    }
    rearm();
}

/// Sees to it that URBs that wait for their time go on then.
void Server::rearm() {
    const auto next = device_.nextChange();
    if (!next) {
        network_->timer.cancel();
        return;
    }
    network_->timer.expires_after(milliseconds(*next));
    network_->timer.async_wait([this](asio::error_code error) {
        if (!error) {
            update();
        }
    });
}

}  // namespace simulator
