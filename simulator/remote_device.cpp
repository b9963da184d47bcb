#include "simulator/remote_device.h"

#include <libusb.h>

#include <algorithm>
#include <array>

namespace simulator {

using usbip::Bytes;
using usbip::Submit;
using usbip::SubmitReply;

namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

/// Enough for a simulator on another machine of the house; the caller's window rests meanwhile.
constexpr auto ConnectTime = 300ms;
/// For what the simulator owes at once: taking a request, the rest of a reply.
constexpr auto ReplyTime = 1000ms;
constexpr unsigned ControlTimeout = 1000;  // ms
constexpr std::uint32_t MostDevices = 127;

/// The status of the reply to an operation; nothing: there was none.
std::optional<std::uint32_t> receiveStatus(RemoteConnection& connection, usbip::Operation reply,
                                           RemoteConnection::Time deadline) {
    std::array<std::uint8_t, usbip::OperationSize> bytes;
    if (!connection.receive(bytes, deadline)) {
        return std::nullopt;
    }
    return usbip::decodeStatus(reply, bytes);
}

std::optional<usbip::ExportedDevice> receiveDevice(RemoteConnection& connection,
                                                   RemoteConnection::Time deadline) {
    std::array<std::uint8_t, usbip::DeviceSize> bytes;
    if (!connection.receive(bytes, deadline)) {
        return std::nullopt;
    }
    return usbip::decodeDevice(bytes);
}

int libusbResult(std::int32_t status) {
    switch (status) {
        case usbip::result::Done:
            return LIBUSB_SUCCESS;
        case usbip::result::Stall:
            return LIBUSB_ERROR_PIPE;
        case usbip::result::Overflow:
            return LIBUSB_ERROR_OVERFLOW;
        default:
            return LIBUSB_ERROR_IO;
    }
}

}  // namespace

std::vector<usbip::ExportedDevice> listRemoteDevices(const RemoteAddress& address) {
    const auto deadline = Clock::now() + ConnectTime;
    RemoteConnection connection;
    if (!connection.connect(address, deadline) ||
        !connection.send(encode(usbip::ListRequest{}), deadline) ||
        receiveStatus(connection, usbip::Operation::ListReply, deadline) != 0U) {
        return {};
    }
    std::array<std::uint8_t, 4> number;
    if (!connection.receive(number, deadline)) {
        return {};
    }
    std::vector<usbip::ExportedDevice> devices;
    const std::uint32_t count = std::min(usbip::decodeNumber(number), MostDevices);
    while (devices.size() < count) {
        const auto device = receiveDevice(connection, deadline);
        Bytes interfaces(device ? device->interfaces * std::size_t{4} : 0);
        if (!device || !connection.receive(interfaces, deadline)) {
            return {};
        }
        devices.push_back(*device);
    }
    return devices;
}

int RemoteDevice::open() {
    if (connection_ || lost_) {
        return lost_ ? LIBUSB_ERROR_NO_DEVICE : LIBUSB_SUCCESS;
    }
    const auto deadline = Clock::now() + ConnectTime;
    auto connection = std::make_unique<RemoteConnection>();
    if (!connection->connect(address_, deadline) ||
        !connection->send(encode(usbip::ImportRequest{exported_.busId}), deadline)) {
        return LIBUSB_ERROR_NO_DEVICE;
    }
    const auto status = receiveStatus(*connection, usbip::Operation::ImportReply, deadline);
    if (status == static_cast<std::uint32_t>(usbip::Status::Busy)) {
        return LIBUSB_ERROR_BUSY;
    }
    if (status != 0U || !receiveDevice(*connection, deadline)) {
        return LIBUSB_ERROR_NO_DEVICE;
    }
    connection_ = std::move(connection);
    return LIBUSB_SUCCESS;
}

int RemoteDevice::lose() {
    lost_ = true;
    close();
    return LIBUSB_ERROR_NO_DEVICE;
}

int RemoteDevice::transfer(Submit urb, unsigned timeout, SubmitReply& reply) {
    if (!connection_) {
        return LIBUSB_ERROR_NO_DEVICE;
    }
    urb.sequence = ++sequence_;
    urb.device = exported_.id();
    const auto start = Clock::now();
    if (!connection_->send(encode(urb), start + ReplyTime)) {
        return lose();
    }
    const auto deadline =
        timeout == 0 ? RemoteConnection::Time::max() : start + std::chrono::milliseconds(timeout);
    bool isUnlink = false;
    const bool answered = connection_->waitForBytes(deadline);
    if (!(answered ? readReply(urb, reply, isUnlink) && !isUnlink : unlink(urb, reply))) {
        return lose();
    }
    return reply.status == usbip::result::Unlinked ? LIBUSB_ERROR_TIMEOUT
                                                   : libusbResult(reply.status);
}

/// Reads one reply: the URB's own, or that to its unlinking. False: it is neither.
bool RemoteDevice::readReply(const Submit& urb, SubmitReply& reply, bool& isUnlink) {
    const auto deadline = Clock::now() + ReplyTime;
    std::array<std::uint8_t, usbip::UrbHeaderSize> header;
    if (!connection_->receive(header, deadline)) {
        return false;
    }
    const auto decoded = usbip::decodeUrbReply(header);
    if (!decoded || decoded->length > urb.length) {
        return false;
    }
    isUnlink = decoded->isUnlink;
    if (decoded->sequence != (isUnlink ? sequence_ : urb.sequence)) {
        return false;
    }
    reply.status = decoded->status;
    reply.length = decoded->length;
    reply.data.resize(urb.direction == usbip::Direction::In ? decoded->length : 0);
    return connection_->receive(reply.data, deadline);
}

/// Takes an URB back, and leaves in `reply` what became of it: it may have completed in the end.
bool RemoteDevice::unlink(const Submit& urb, SubmitReply& reply) {
    const usbip::Unlink request = {++sequence_, urb.device, urb.sequence};
    if (!connection_->send(encode(request), Clock::now() + ReplyTime)) {
        return false;
    }
    bool isUnlink = false;
    if (!readReply(urb, reply, isUnlink)) {
        return false;
    }
    SubmitReply toUnlink;
    return isUnlink ? reply.status == usbip::result::Unlinked
                    : readReply(urb, toUnlink, isUnlink) && isUnlink;
}

int RemoteDevice::send(std::uint8_t endpoint, std::span<const std::uint8_t> bytes, unsigned timeout,
                       int& moved) {
    SubmitReply reply;
    const int result = transfer({.direction = usbip::Direction::Out,
                                 .endpoint = endpoint & 0x0FU,
                                 .length = static_cast<std::uint32_t>(bytes.size()),
                                 .data = {bytes.begin(), bytes.end()}},
                                timeout, reply);
    moved = static_cast<int>(reply.length);
    return result;
}

int RemoteDevice::receive(std::uint8_t endpoint, std::span<std::uint8_t> bytes, unsigned timeout,
                          int& moved) {
    SubmitReply reply;
    const int result = transfer({.direction = usbip::Direction::In,
                                 .endpoint = endpoint & 0x0FU,
                                 .length = static_cast<std::uint32_t>(bytes.size())},
                                timeout, reply);
    std::copy(reply.data.begin(), reply.data.end(), bytes.begin());
    moved = static_cast<int>(reply.data.size());
    return result;
}

int RemoteDevice::readDescriptorOfString(std::uint8_t index, std::uint16_t language, Bytes& bytes) {
    constexpr std::uint8_t Length = 255;
    SubmitReply reply;
    const int result = transfer({.direction = usbip::Direction::In,
                                 .length = Length,
                                 .setup = {0x80, LIBUSB_REQUEST_GET_DESCRIPTOR, index,
                                           LIBUSB_DT_STRING, static_cast<std::uint8_t>(language),
                                           static_cast<std::uint8_t>(language >> 8U), Length, 0}},
                                ControlTimeout, reply);
    bytes = std::move(reply.data);
    const bool whole =
        bytes.size() >= 2 && bytes[1] == LIBUSB_DT_STRING && bytes[0] <= bytes.size();
    return result == LIBUSB_SUCCESS && !whole ? LIBUSB_ERROR_IO : result;
}

int RemoteDevice::readString(std::uint8_t index, std::string& text) {
    Bytes bytes;
    if (const int result = readDescriptorOfString(0, 0, bytes); result < 0) {
        return result;
    }
    if (bytes[0] < 4) {
        return LIBUSB_ERROR_IO;
    }
    const auto language = static_cast<std::uint16_t>(bytes[2] | bytes[3] << 8U);
    if (const int result = readDescriptorOfString(index, language, bytes); result < 0) {
        return result;
    }
    text.clear();
    for (std::size_t i = 2; i + 1 < bytes[0]; i += 2) {
        text += bytes[i + 1] == 0 && bytes[i] < 0x80 ? static_cast<char>(bytes[i]) : '?';
    }
    return static_cast<int>(text.size());
}

}  // namespace simulator
