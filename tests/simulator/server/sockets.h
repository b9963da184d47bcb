#ifndef LUMADOT_TESTS_SIMULATOR_SERVER_SOCKETS_H
#define LUMADOT_TESTS_SIMULATOR_SERVER_SOCKETS_H

#ifdef _WIN32
// The one of these that comes first has to.
#include <winsock2.h>
#include <ws2tcpip.h>
#else
#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>
#endif

#include <cerrno>
#include <cstddef>
#include <cstdint>

/// Sockets as POSIX has them, on Windows, too. There the server under test has started them.
namespace sockets {

#ifdef _WIN32

using Socket = SOCKET;
constexpr Socket None = INVALID_SOCKET;

/// The most that `receive` waits, in s.
inline void limitWaiting(Socket socket, unsigned seconds) {
    const DWORD limit = seconds * 1000;
    setsockopt(socket, SOL_SOCKET, SO_RCVTIMEO, reinterpret_cast<const char*>(&limit),
               sizeof limit);
}

/// The bytes that were taken; -1: none.
inline std::ptrdiff_t send(Socket socket, const std::uint8_t* bytes, std::size_t count, bool wait) {
    u_long atOnce = wait ? 0 : 1;
    ioctlsocket(socket, FIONBIO, &atOnce);
    const int sent =
        ::send(socket, reinterpret_cast<const char*>(bytes), static_cast<int>(count), 0);
    atOnce = 0;
    ioctlsocket(socket, FIONBIO, &atOnce);
    return sent;
}

/// The bytes that came; 0: the end, -1: an error.
inline std::ptrdiff_t receive(Socket socket, void* bytes, std::size_t count) {
    return recv(socket, static_cast<char*>(bytes), static_cast<int>(count), 0);
}

inline bool wasCutOff() { return WSAGetLastError() == WSAECONNRESET; }

inline void close(Socket socket) { closesocket(socket); }

/// Whether it takes bytes within this time.
inline bool takesBytes(Socket socket, int ms) {
    WSAPOLLFD writable = {socket, POLLOUT, 0};
    return WSAPoll(&writable, 1, ms) == 1;
}

#else

using Socket = int;
constexpr Socket None = -1;

inline void limitWaiting(Socket socket, unsigned seconds) {
    const timeval limit = {.tv_sec = static_cast<time_t>(seconds), .tv_usec = 0};
    setsockopt(socket, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
}

inline std::ptrdiff_t send(Socket socket, const std::uint8_t* bytes, std::size_t count, bool wait) {
    return ::send(socket, bytes, count, MSG_NOSIGNAL | (wait ? 0 : MSG_DONTWAIT));
}

inline std::ptrdiff_t receive(Socket socket, void* bytes, std::size_t count) {
    return recv(socket, bytes, count, 0);
}

inline bool wasCutOff() { return errno == ECONNRESET; }

inline void close(Socket socket) { ::close(socket); }

inline bool takesBytes(Socket socket, int ms) {
    pollfd writable = {.fd = socket, .events = POLLOUT, .revents = 0};
    return poll(&writable, 1, ms) == 1;
}

#endif

}  // namespace sockets

#endif
