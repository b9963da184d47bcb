#ifndef LUMADOT_CONTROL_CHANNEL_H
#define LUMADOT_CONTROL_CHANNEL_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "device/command_frame.h"
#include "device/variant.h"

namespace control {

/// A controller and where it is plugged in.
struct DeviceInfo {
    int bus = 0;
    std::string port;  ///< "1", behind hubs "1.4.2"
    int address = 0;   ///< which the system has given it
    int variant = variant::UnknownName;
    std::string product;  ///< empty: unreadable
};

/// "1-1.4": as --device takes it.
inline std::string placeText(const DeviceInfo& device) {
    return std::to_string(device.bus) + "-" + device.port;
}

/// What the frames go through: an open controller, or a dry run.
class Channel {
public:
    /// `timeout` in ms holds for every transfer that names no other.
    explicit Channel(unsigned int timeout) : timeout_(timeout) {}
    virtual ~Channel() = default;
    Channel(const Channel&) = delete;
    Channel& operator=(const Channel&) = delete;

    /// Sends all of the bytes or throws Failure; Interrupted when a signal has come before.
    void send(std::span<const std::uint8_t> bytes, unsigned int timeout);
    void send(const CommandFrame& frame) { send(frame.bytes(), timeout_); }
    void send(const frame::Bytes& image) { send(image, timeout_); }

    /// Sends it even when a signal has come: what is given back.
    void sendInAnyCase(const CommandFrame& frame) { doSend(frame.bytes(), timeout_); }

    /// Reads no more than there is room for, and returns how much came. A signal does not keep it
    /// from being read: what was asked for would meet the next program.
    std::size_t receive(std::span<std::uint8_t> bytes, unsigned int timeout) {
        return doReceive(bytes, timeout);
    }
    std::size_t receive(std::span<std::uint8_t> bytes) { return receive(bytes, timeout_); }

    /// Null: it is a dry run.
    virtual const DeviceInfo* device() const = 0;

private:
    virtual void doSend(std::span<const std::uint8_t> bytes, unsigned int timeout) = 0;
    virtual std::size_t doReceive(std::span<std::uint8_t> bytes, unsigned int timeout) = 0;

    unsigned int timeout_;
};

}  // namespace control

#endif
