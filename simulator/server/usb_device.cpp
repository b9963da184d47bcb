#include "simulator/server/usb_device.h"

#include <algorithm>
#include <utility>

#include "simulator/server/descriptors.h"

namespace simulator {

namespace {

constexpr std::uint32_t BusNumber = 1;
constexpr std::uint32_t DeviceNumber = 2;
constexpr std::uint32_t HighSpeed = 3;

const char* productOf(Board board) { return board == Board::Xl ? "LUMADOT XL" : "LUMADOT"; }

}  // namespace

UsbDevice::UsbDevice(ControllerOptions options)
    : options_(std::move(options)),
      controller_(std::make_unique<Controller>(options_)),
      control_([this](std::uint8_t address) { resetEndpoint(address); }),
      out_(descriptors::OutEndpoint, context_),
      in_(descriptors::InEndpoint, context_) {
    context_ = {.controller = controller_.get(),
                .control = &control_,
                .faults = &faults_,
                .complete = [this](usbip::SubmitReply reply) { complete(std::move(reply)); },
                .report = [this](const Transfer& transfer) { report(transfer); },
                .messageTaken = [this] { messageTaken(); },
                .unplug = [this] { unplug(); },
                .clock = options_.clock};
}

std::optional<usbip::ListedDevice> UsbDevice::listed() const {
    if (!pluggedIn_) {
        return std::nullopt;
    }
    return usbip::ListedDevice{
        .device = {.path = "/sys/devices/platform/lumadot-simulator/usb1/1-1",
                   .busId = "1-1",
                   .busNumber = BusNumber,
                   .deviceNumber = DeviceNumber,
                   .speed = HighSpeed,
                   .vendor = descriptors::Vendor,
                   .product = descriptors::Product,
                   .release = descriptors::release(options_.windowsDescriptors),
                   .deviceClass = descriptors::DeviceClass,
                   .configuration = descriptors::Configuration,
                   .configurations = 1,
                   .interfaces = 1},
        .interfaces = {descriptors::InterfaceClass}};
}

std::optional<std::uint32_t> UsbDevice::attach() {
    if (!pluggedIn_ || hold_) {
        return std::nullopt;
    }
    control_.reset();
    return hold_ = ++holds_;
}

void UsbDevice::detach(std::uint32_t hold) {
    if (holds(hold)) {
        abandon("disconnected");
    }
}

/// Takes the device from its client.
void UsbDevice::abandon(const char* why) {
    out_.abandon(why);
    in_.abandon(why);
    completed_.clear();
    hold_.reset();
}

void UsbDevice::submit(usbip::Submit urb) {
    constexpr std::uint32_t Control = 0;
    constexpr std::uint32_t Bulk = descriptors::OutEndpoint;  // Number 1 in both directions.
    if (urb.endpoint == Control) {
        answerControl(urb);
    } else if (urb.endpoint != Bulk) {
        complete({.sequence = urb.sequence, .status = usbip::result::NoAnswer});
    } else if (urb.direction == usbip::Direction::Out) {
        out_.submit(std::move(urb));
    } else {
        in_.submit(std::move(urb));
    }
    advance();
}

void UsbDevice::answerControl(const usbip::Submit& urb) {
    auto data =
        control_.answer(urb.setup, {productOf(options_.board), options_.windowsDescriptors});
    usbip::SubmitReply reply = {.sequence = urb.sequence};
    if (!data) {
        reply.status = usbip::result::Stall;
    } else if (urb.direction == usbip::Direction::In) {
        data->resize(std::min<std::size_t>(data->size(), urb.length));
        reply.length = static_cast<std::uint32_t>(data->size());
        reply.data = std::move(*data);
    } else {
        reply.length = urb.length;
    }
    complete(std::move(reply));
}

bool UsbDevice::unlink(std::uint32_t sequence) {
    const bool found = out_.unlink(sequence) || in_.unlink(sequence);
    advance();
    return found;
}

std::vector<usbip::SubmitReply> UsbDevice::takeCompleted() { return std::exchange(completed_, {}); }

void UsbDevice::advance() {
    out_.advance();
    in_.advance();  // What has just arrived may have a reply.
}

std::optional<std::uint64_t> UsbDevice::nextChange() const {
    const auto out = out_.nextChange();
    const auto in = in_.nextChange();
    return out && in ? std::min(out, in) : out ? out : in;
}

void UsbDevice::report(const Transfer& transfer) const {
    for (const Observer& observer : observers_) {
        observer(transfer);
    }
}

void UsbDevice::messageTaken() {
    if (controller_->hasReply() || controller_->restarting()) {
        in_.dropRest();
    }
}

void UsbDevice::resetEndpoint(std::uint8_t address) {
    if (address != descriptors::InEndpoint) {
        out_.reset();
    }
    if (address != descriptors::OutEndpoint) {
        in_.reset();
    }
}

void UsbDevice::unplug() {
    pluggedIn_ = false;
    abandon("unplugged");
}

void UsbDevice::plugIn() { pluggedIn_ = true; }

void UsbDevice::replace(ControllerOptions options) {
    unplug();
    options.clock = options_.clock;
    options_ = std::move(options);
    controller_ = std::make_unique<Controller>(options_);
    context_.controller = controller_.get();
    plugIn();
}

}  // namespace simulator
