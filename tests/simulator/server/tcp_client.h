#ifndef LUMADOT_TESTS_SIMULATOR_SERVER_TCP_CLIENT_H
#define LUMADOT_TESTS_SIMULATOR_SERVER_TCP_CLIENT_H

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "tests/simulator/server/hex.h"

inline const std::string ListBytes = "01 11 80 05 00 00 00 00";
inline const std::string ImportBytes = "01 11 80 03 00 00 00 00 31 2D 31 00*29";

/// A plain connection to a server on loopback.
class TcpClient {
public:
    explicit TcpClient(std::uint16_t port) : socket_(socket(AF_INET, SOCK_STREAM, 0)) {
        const timeval limit = {.tv_sec = 20, .tv_usec = 0};
        setsockopt(socket_, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
        sockaddr_in address = {};
        address.sin_family = AF_INET;
        address.sin_port = htons(port);
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        EXPECT_EQ(connect(socket_, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    }
    TcpClient(TcpClient&& other) noexcept : socket_(std::exchange(other.socket_, -1)) {}
    TcpClient& operator=(TcpClient&&) = delete;
    ~TcpClient() { cut(); }

    void send(const std::vector<std::uint8_t>& bytes) const {
        std::size_t sent = 0;
        while (sent < bytes.size()) {
            const ssize_t part =
                ::send(socket_, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
            ASSERT_GT(part, 0);
            sent += static_cast<std::size_t>(part);
        }
    }
    void send(const std::string& text) const { send(hex(text)); }

    /// As many bytes as the socket takes without waiting for the server to read.
    std::size_t sendWhatFits(const std::vector<std::uint8_t>& bytes, std::size_t from) const {
        const ssize_t sent =
            ::send(socket_, bytes.data() + from, bytes.size() - from, MSG_DONTWAIT | MSG_NOSIGNAL);
        return sent > 0 ? static_cast<std::size_t>(sent) : 0;
    }

    /// The same, until the server has not read anything for a second.
    std::size_t sendUntilStuck(const std::vector<std::uint8_t>& bytes) const {
        std::size_t sent = 0;
        pollfd writable = {.fd = socket_, .events = POLLOUT, .revents = 0};
        while (sent < bytes.size() && poll(&writable, 1, 1000) == 1) {
            sent += sendWhatFits(bytes, sent);
        }
        return sent;
    }

    /// This many bytes, or fewer when the server closes the connection before.
    std::vector<std::uint8_t> receive(std::size_t count) const {
        std::vector<std::uint8_t> bytes(count);
        std::size_t got = 0;
        while (got < count) {
            const ssize_t part = recv(socket_, bytes.data() + got, count - got, 0);
            if (part <= 0) {
                break;
            }
            got += static_cast<std::size_t>(part);
        }
        bytes.resize(got);
        return bytes;
    }

    /// True: the server has closed the connection, having sent nothing more.
    bool isClosed() const {
        char byte = 0;
        const ssize_t result = recv(socket_, &byte, 1, 0);
        return result == 0 || (result < 0 && errno == ECONNRESET);
    }

    void cut() {
        if (socket_ >= 0) {
            close(std::exchange(socket_, -1));
        }
    }

    /// The status of an import; attaches the device when it is 0.
    int import() const {
        send(ImportBytes);
        const auto start = receive(8);
        if (start.size() != 8) {
            return -1;
        }
        if (start[7] == 0) {
            EXPECT_EQ(receive(312).size(), 312U);
        }
        return start[7];
    }

private:
    int socket_;
};

#endif
