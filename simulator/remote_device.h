#ifndef LUMADOT_SIMULATOR_REMOTE_DEVICE_H
#define LUMADOT_SIMULATOR_REMOTE_DEVICE_H

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "simulator/remote_connection.h"
#include "simulator/server/messages.h"

namespace simulator {

/// What a running simulator exports. Empty, after a short time at most, when none listens there.
std::vector<usbip::ExportedDevice> listRemoteDevices(const RemoteAddress& address);

/// A device of a running simulator, reached over USB/IP. Its results are libusb's.
class RemoteDevice {
public:
    RemoteDevice(RemoteAddress address, usbip::ExportedDevice exported)
        : address_(std::move(address)), exported_(std::move(exported)) {}

    /// Where it is on the simulator's bus: bus number, device number, and the ports in its bus id.
    const usbip::ExportedDevice& exported() const { return exported_; }

    /// Has the simulator keep the device for this process, unless it does so already.
    /// LIBUSB_ERROR_BUSY: it does for another one; LIBUSB_ERROR_NO_DEVICE: it is not there.
    int open();
    /// Lets others have it.
    void close() { connection_.reset(); }
    /// The device, or the simulator, has gone while it was open.
    bool lost() const { return lost_; }

    // When it is open. `timeout` in ms, 0: for ever. `moved`: bytes, also of a transfer that fails.

    int send(std::uint8_t endpoint, std::span<const std::uint8_t> bytes, unsigned timeout,
             int& moved);
    int receive(std::uint8_t endpoint, std::span<std::uint8_t> bytes, unsigned timeout, int& moved);
    /// The string descriptor in its first language; letters beyond ASCII become '?'.
    int readString(std::uint8_t index, std::string& text);

private:
    int transfer(usbip::Submit urb, unsigned timeout, usbip::SubmitReply& reply);
    int readDescriptorOfString(std::uint8_t index, std::uint16_t language, usbip::Bytes& bytes);
    bool readReply(const usbip::Submit& urb, usbip::SubmitReply& reply, bool& isUnlink);
    bool unlink(const usbip::Submit& urb, usbip::SubmitReply& reply);
    int lose();

    RemoteAddress address_;
    usbip::ExportedDevice exported_;
    std::unique_ptr<RemoteConnection> connection_;
    std::uint32_t sequence_ = 0;
    bool lost_ = false;
};

}  // namespace simulator

#endif
