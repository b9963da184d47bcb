#include "tests/device/real_library/usbfs_device.h"

#include <gtest/gtest.h>
#include <sys/ioctl.h>

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <utility>

#include "tests/device/real_library/usb_description.h"

namespace support {

namespace {

constexpr std::uint8_t EndpointOut = 0x01;
constexpr std::uint8_t EndpointIn = 0x81;
constexpr std::size_t PacketSize = 512;
constexpr std::size_t SetupSize = 8;

}  // namespace

UsbfsDevice::UsbfsDevice(UsbfsOptions options)
    : options_(std::move(options)), board_(options_.board) {}

void UsbfsDevice::setFaults(const UsbfsFaults& faults) {
    const std::lock_guard lock(mutex_);
    faults_ = faults;
    changed_.notify_all();
}

std::vector<BulkTransfer> UsbfsDevice::transfers() const {
    const std::lock_guard lock(mutex_);
    return transfers_;
}

std::vector<simulator::Packet> UsbfsDevice::received() const {
    std::vector<simulator::Packet> packets;
    for (BulkTransfer& transfer : transfers()) {
        if (transfer.endpoint == EndpointOut && transfer.status == 0) {
            packets.push_back(std::move(transfer.bytes));
        }
    }
    return packets;
}

void UsbfsDevice::pullOut() {
    const std::lock_guard lock(mutex_);
    disappear();
    changed_.notify_all();
}

void UsbfsDevice::ioctl(UMockdevIoctlClient* file) {
    std::unique_lock lock(mutex_);
    const int error = perform(lock, file);
    umockdev_ioctl_client_complete(file, error == 0 ? 0 : -1, error);
}

void UsbfsDevice::closed(UMockdevIoctlClient* file) {
    const std::lock_guard lock(mutex_);
    files_.erase(file);
    if (holder_ == file) {
        holder_ = nullptr;
    }
}

int UsbfsDevice::perform(std::unique_lock<std::mutex>& lock, UMockdevIoctlClient* client) {
    const auto request = umockdev_ioctl_client_get_request(client);
    UMockdevIoctlData* const argument = umockdev_ioctl_client_get_arg(client);
    OpenFile& file = files_[client];
    if (request == USBDEVFS_REAPURBNDELAY) {
        return reap(lock, file, argument);
    }
    if (gone_) {
        return ENODEV;
    }
    switch (request) {
        case USBDEVFS_GET_CAPABILITIES:
            return reportCapabilities(argument);
        case USBDEVFS_CLAIMINTERFACE:
            return claim(client, argument);
        case USBDEVFS_RELEASEINTERFACE:
            return releaseClaim(client);
        case USBDEVFS_GETDRIVER:
            return reportDriver(argument);
        case USBDEVFS_SUBMITURB:
            return submit(client, argument);
        case USBDEVFS_DISCARDURB:
            return discard(file, *reinterpret_cast<const unsigned long*>(argument->data));
        default:
            ADD_FAILURE() << "ioctl that the mocked usbfs does not know: " << request;
            return ENOTTY;
    }
}

int UsbfsDevice::reportCapabilities(UMockdevIoctlData* argument) const {
    const IoctlData place = follow(argument, 0, sizeof options_.capabilities);
    if (!place) {
        return EFAULT;
    }
    std::uint32_t capabilities = options_.capabilities;
    umockdev_ioctl_data_update(place.get(), 0, reinterpret_cast<std::uint8_t*>(&capabilities),
                               sizeof capabilities);
    return 0;
}

int UsbfsDevice::claim(UMockdevIoctlClient* client, UMockdevIoctlData* argument) {
    const IoctlData interface = follow(argument, 0, sizeof(unsigned int));
    if (!interface) {
        return EFAULT;
    }
    if (*reinterpret_cast<const unsigned int*>(interface->data) != 0) {
        return ENOENT;  // There is only interface 0.
    }
    if (faults_.claimError != 0) {
        return faults_.claimError;
    }
    if (!faults_.driver.empty() || (holder_ != nullptr && holder_ != client)) {
        return EBUSY;
    }
    holder_ = client;
    return 0;
}

int UsbfsDevice::releaseClaim(UMockdevIoctlClient* client) {
    if (holder_ != client) {
        return EINVAL;
    }
    holder_ = nullptr;
    endWaiting(files_[client], -ENOENT);
    return 0;
}

/// The driver of an interface that a program holds is usbfs itself.
int UsbfsDevice::reportDriver(UMockdevIoctlData* argument) const {
    const std::string name =
        faults_.driver.empty() && holder_ != nullptr ? "usbfs" : faults_.driver;
    const IoctlData place = follow(argument, 0, sizeof(usbdevfs_getdriver));
    if (!place || name.empty()) {
        return place ? ENODATA : EFAULT;
    }
    usbdevfs_getdriver answer{};
    name.copy(answer.driver, sizeof answer.driver - 1);
    umockdev_ioctl_data_update(place.get(), 0, reinterpret_cast<std::uint8_t*>(&answer),
                               sizeof answer);
    return 0;
}

int UsbfsDevice::submit(UMockdevIoctlClient* client, UMockdevIoctlData* argument) {
    Urb urb(argument);
    if (!urb) {
        return EFAULT;
    }
    OpenFile& file = files_[client];
    if (urb.type() == USBDEVFS_URB_TYPE_CONTROL && urb.buffer().size() >= SetupSize) {
        answerControl(urb);
        file.done.push_back(std::move(urb));
        return 0;
    }
    if (urb.type() != USBDEVFS_URB_TYPE_BULK) {
        return EINVAL;
    }
    if (urb.endpoint() != EndpointOut && urb.endpoint() != EndpointIn) {
        return ENOENT;
    }
    if (holder_ != client) {
        return EPERM;
    }
    file.waiting.push_back(std::move(urb));
    if (faults_.pullOutAt > 0 && --faults_.pullOutAt == 0) {
        disappear();
    }
    progress(file);
    return 0;
}

int UsbfsDevice::discard(OpenFile& file, unsigned long clientAddress) {
    const auto urb =
        std::find_if(file.waiting.begin(), file.waiting.end(),
                     [=](const Urb& waiting) { return waiting.clientAddress() == clientAddress; });
    if (urb == file.waiting.end()) {
        return EINVAL;  // It has ended already, and is there to be reaped.
    }
    end(*urb, -ENOENT, {});
    file.done.push_back(std::move(*urb));
    file.waiting.erase(urb);
    return 0;
}

int UsbfsDevice::reap(std::unique_lock<std::mutex>& lock, OpenFile& file,
                      UMockdevIoctlData* argument) {
    // The mocked file always polls as ready, and so the library asks again and again: let it wait.
    constexpr std::chrono::milliseconds Pause{1};
    changed_.wait_for(lock, Pause, [&] {
        progress(file);
        return !file.done.empty();
    });
    if (file.done.empty()) {
        return gone_ ? ENODEV : EAGAIN;
    }
    const IoctlData place = follow(argument, 0, sizeof(void*));
    if (!place) {
        return EFAULT;
    }
    file.done.front().handBack(place.get());
    file.done.pop_front();
    return 0;
}

void UsbfsDevice::answerControl(Urb& urb) const {
    const auto setup = urb.buffer().first<SetupSize>();
    const std::size_t asked = setup[6] + setup[7] * std::size_t{256};
    const auto reply = answerControlRequest(setup, options_.product);
    if (faults_.stallStrings || reply.empty()) {
        return urb.finish(-EPIPE, 0);
    }
    const std::size_t length = std::min({reply.size(), asked, urb.buffer().size() - SetupSize});
    urb.store(SetupSize, std::span(reply).first(length));
    urb.finish(0, length);
}

/// Moves what can end now from `waiting` to `done`.
void UsbfsDevice::progress(OpenFile& file) {
    for (auto urb = file.waiting.begin(); urb != file.waiting.end();) {
        if (tryTransfer(*urb)) {
            file.done.push_back(std::move(*urb));
            urb = file.waiting.erase(urb);
        } else {
            ++urb;
        }
    }
}

bool UsbfsDevice::tryTransfer(Urb& urb) {
    if (urb.isIn()) {
        auto answer = answerIn(urb.buffer().size());
        if (answer) {
            urb.store(0, answer->bytes);
            end(urb, answer->status, std::move(answer->bytes));
        }
        return answer.has_value();
    }
    if (faults_.acceptNothing) {
        return false;
    }
    leaving_.reset();  // A new request drops a reply that was not read to its end.
    board_.receive(urb.buffer());
    end(urb, 0, {urb.buffer().begin(), urb.buffer().end()});
    return true;
}

/// A reply leaves in packets: one that is longer than the request goes on in the next request, if
/// the request ended between two packets; else the host is given more than it has room for.
std::optional<UsbfsDevice::Answer> UsbfsDevice::answerIn(std::size_t room) {
    if (faults_.holdReplies || board_.replyDelay() > 0) {
        return std::nullopt;
    }
    if (!leaving_) {
        leaving_ = board_.takeReply();
        if (leaving_ && leaving_->size() > faults_.replyLimit.value_or(leaving_->size())) {
            leaving_->resize(*faults_.replyLimit);
        }
    }
    if (!leaving_) {
        return std::nullopt;
    }
    if (leaving_->size() <= room) {
        return Answer{*std::exchange(leaving_, std::nullopt), 0};
    }
    const auto cut = leaving_->begin() + static_cast<std::ptrdiff_t>(room);
    Answer answer{{leaving_->begin(), cut}, 0};
    if (room % PacketSize == 0) {
        leaving_->erase(leaving_->begin(), cut);
    } else {
        answer.status = -EOVERFLOW;
        leaving_.reset();
    }
    return answer;
}

void UsbfsDevice::disappear() {
    gone_ = true;
    for (auto& [client, file] : files_) {
        endWaiting(file, -ESHUTDOWN);
    }
}

void UsbfsDevice::endWaiting(OpenFile& file, int status) {
    for (Urb& urb : file.waiting) {
        end(urb, status, {});
        file.done.push_back(std::move(urb));
    }
    file.waiting.clear();
}

void UsbfsDevice::end(Urb& urb, int status, simulator::Packet bytes) {
    urb.finish(status, bytes.size());
    transfers_.push_back({urb.endpoint(), urb.buffer().size(), std::move(bytes), status,
                          urb.submitted(), std::chrono::steady_clock::now()});
}

}  // namespace support
