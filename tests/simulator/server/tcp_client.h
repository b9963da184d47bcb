#ifndef LUMADOT_TESTS_SIMULATOR_SERVER_TCP_CLIENT_H
#define LUMADOT_TESTS_SIMULATOR_SERVER_TCP_CLIENT_H

#include <gtest/gtest.h>

#include "tests/simulator/server/sockets.h"

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
        sockets::limitWaiting(socket_, 20);
        sockaddr_in address = {};
        address.sin_family = AF_INET;
        address.sin_port = htons(port);
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        EXPECT_EQ(connect(socket_, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    }
    TcpClient(TcpClient&& other) noexcept : socket_(std::exchange(other.socket_, sockets::None)) {}
    TcpClient& operator=(TcpClient&&) = delete;
    ~TcpClient() { cut(); }

    void send(const std::vector<std::uint8_t>& bytes) const {
        std::size_t sent = 0;
        while (sent < bytes.size()) {
            const auto part =
                sockets::send(socket_, bytes.data() + sent, bytes.size() - sent, true);
            ASSERT_GT(part, 0);
            sent += static_cast<std::size_t>(part);
        }
    }
    void send(const std::string& text) const { send(hex(text)); }

    /// As many bytes as the socket takes without waiting for the server to read.
    std::size_t sendWhatFits(const std::vector<std::uint8_t>& bytes, std::size_t from) const {
        const auto sent = sockets::send(socket_, bytes.data() + from, bytes.size() - from, false);
        return sent > 0 ? static_cast<std::size_t>(sent) : 0;
    }

    /// The same, until the server has not read anything for a second.
    std::size_t sendUntilStuck(const std::vector<std::uint8_t>& bytes) const {
        std::size_t sent = 0;
        while (sent < bytes.size() && sockets::takesBytes(socket_, 1000)) {
            sent += sendWhatFits(bytes, sent);
        }
        return sent;
    }

    /// This many bytes, or fewer when the server closes the connection before.
    std::vector<std::uint8_t> receive(std::size_t count) const {
        std::vector<std::uint8_t> bytes(count);
        std::size_t got = 0;
        while (got < count) {
            const auto part = sockets::receive(socket_, bytes.data() + got, count - got);
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
        char more = 0;
        const auto result = sockets::receive(socket_, &more, 1);
        return result == 0 || (result < 0 && sockets::wasCutOff());
    }

    void cut() {
        if (socket_ != sockets::None) {
            sockets::close(std::exchange(socket_, sockets::None));
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
    sockets::Socket socket_;
};

#endif
