#ifndef LUMADOT_SIMULATOR_SERVER_SESSION_H
#define LUMADOT_SIMULATOR_SERVER_SESSION_H

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "simulator/server/requests.h"
#include "simulator/server/usb_device.h"

namespace simulator {

/// One connection's conversation: bytes in, bytes out. Lets go of the device at its end.
class Session {
public:
    /// More URBs than this at a time are no use to any client.
    static constexpr std::size_t MostWaiting = 1024;
    /// Bytes that may wait in URBs to the board, while it restarts for example.
    static constexpr std::size_t MostWaitingBytes = 2 * std::size_t{usbip::LongestTransfer};

    explicit Session(UsbDevice& device) : device_(device) {}
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// Does what the bytes ask for. Does nothing once the session is over.
    void receive(std::span<const std::uint8_t> bytes);
    /// Picks up what the device has completed meanwhile, and notices when it has gone.
    void update();

    /// What is to be sent, since the last call.
    usbip::Bytes takeOutput();
    /// Nothing follows but the output that is still to be taken.
    bool over() const { return over_; }
    bool attached() const { return hold_.has_value(); }
    /// Why the session ended, if the client or the device is to blame; else empty.
    const std::string& problem() const { return problem_; }

private:
    void handle(const usbip::ListRequest& request);
    void handle(const usbip::ImportRequest& request);
    void handle(usbip::Submit& request);
    void handle(const usbip::Unlink& request);
    void collect();
    void send(const usbip::Bytes& bytes);
    void end(std::string problem);

    UsbDevice& device_;
    usbip::RequestReader reader_;
    usbip::Bytes output_;
    std::optional<std::uint32_t> hold_;
    bool over_ = false;
    std::string problem_;
};

}  // namespace simulator

#endif
