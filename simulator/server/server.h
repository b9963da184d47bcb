#ifndef LUMADOT_SIMULATOR_SERVER_SERVER_H
#define LUMADOT_SIMULATOR_SERVER_SERVER_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

#include "simulator/server/usb_device.h"

namespace simulator {

/// Puts a device on a TCP port. It rests while no byte arrives and no URB waits for its time. The
/// device may be looked at and played with from other threads, through `withDevice`.
class Server {
public:
    /// Connections at a time; further ones wait until one of them ends.
    static constexpr std::size_t MostConnections = 64;

    struct Options {
        std::string address = "127.0.0.1";
        std::uint16_t port = usbip::DefaultPort;  ///< 0: any that is free
        /// A connection that has not asked for anything within this time is closed, in ms.
        std::uint32_t patience = 5000;
        /// Told why a connection ended, if the client or the device is to blame: its address and
        /// the reason. Called from `run`, with the device held.
        std::function<void(const std::string&, const std::string&)> complain = {};
    };

    /// Listens from here on. Throws std::system_error when it cannot.
    Server(ControllerOptions controller, Options options);
    ~Server();
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    const std::string& address() const { return options_.address; }
    std::uint16_t port() const;

    /// Serves until `stop`, which any thread may call.
    void run();
    void stop();
    /// SIGTERM and SIGINT stop it, too.
    void stopOnSignals();

    /// Calls `work(UsbDevice&)` between two things that clients do, and lets them notice what it
    /// has changed.
    template <class Work>
    auto withDevice(Work work) {
        const Change change(*this);
        return work(device_);
    }

    /// The same for `look(const UsbDevice&)`, which changes nothing.
    template <class Look>
    auto inspect(Look look) {
        const std::lock_guard<std::mutex> lock(mutex_);
        return look(std::as_const(device_));
    }

private:
    struct Network;
    class Connection;

    /// Holds the device, and wakes the server at the end.
    class Change {
    public:
        explicit Change(Server& server) : server_(server), lock_(server.mutex_) {}
        ~Change() { server_.wake(); }
        Change(const Change&) = delete;
        Change& operator=(const Change&) = delete;

    private:
        Server& server_;
        std::lock_guard<std::mutex> lock_;
    };

    void accept();
    void acceptLater();
    void leave(const std::shared_ptr<Connection>& connection);
    void wake();
    void update();
    void rearm();

    std::mutex mutex_;  // Guards the device, and the sessions that use it.
    UsbDevice device_;
    Options options_;
    std::unique_ptr<Network> network_;
};

}  // namespace simulator

#endif
