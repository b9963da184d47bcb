#include "simulator/server/control_endpoint.h"

#include "simulator/server/descriptors.h"
#include "simulator/server/windows_descriptors.h"

namespace simulator {

namespace {

enum StandardRequest : std::uint8_t {
    GetStatus = 0,
    ClearFeature = 1,
    SetFeature = 3,
    SetAddress = 5,
    GetDescriptor = 6,
    GetConfiguration = 8,
    SetConfiguration = 9,
    GetInterface = 10,
    SetInterface = 11,
};

// The request type: direction, kind, and who it is for.
constexpr std::uint8_t ToHost = 0x80;
constexpr std::uint8_t ForDevice = 0;
constexpr std::uint8_t ForInterface = 1;
constexpr std::uint8_t ForEndpoint = 2;
constexpr std::uint8_t FromVendor = 0x40;

constexpr std::uint16_t EndpointHalt = 0;  // A feature.
constexpr std::uint8_t SelfPowered = 1;    // The device's status.
constexpr std::uint16_t HighestAddress = 127;

const ControlEndpoint::Bytes Nothing = {};

}  // namespace

struct ControlEndpoint::Request {
    std::uint8_t type;
    std::uint8_t code;
    std::uint16_t value;
    std::uint16_t index;
    std::uint16_t length;

    bool is(std::uint8_t wanted, bool toHost) const {
        return code == wanted && ((type & ToHost) != 0) == toHost;
    }
};

void ControlEndpoint::reset() {
    configuration_ = descriptors::Configuration;
    halts_ = {};
}

std::optional<ControlEndpoint::Bytes> ControlEndpoint::answer(
    const std::array<std::uint8_t, usbip::SetupSize>& setup, const Plug& plug) {
    const auto half = [&setup](std::size_t at) {
        return static_cast<std::uint16_t>(setup[at] | setup[at + 1] << 8U);
    };
    const Request request = {setup[0], setup[1], half(2), half(4), half(6)};
    std::optional<Bytes> data;
    switch (request.type & ~ToHost) {
        case ForDevice:
            data = device(request, plug);
            break;
        case ForInterface:
            data = interface(request);
            break;
        case ForEndpoint:
            data = endpoint(request);
            break;
        case FromVendor | ForDevice:
        case FromVendor | ForInterface:
            if (plug.windowsDescriptors && (request.type & ToHost) != 0) {
                data = windows_descriptors::find(request.code, request.value, request.index);
            }
            break;
        default:
            break;
    }
    if (data && data->size() > request.length) {
        data->resize(request.length);
    }
    return data;
}

std::optional<ControlEndpoint::Bytes> ControlEndpoint::device(const Request& request,
                                                              const Plug& plug) {
    if (request.is(GetDescriptor, true)) {
        return descriptor(request, plug);
    }
    if (request.is(GetStatus, true)) {
        return Bytes{SelfPowered, 0};
    }
    if (request.is(GetConfiguration, true)) {
        return Bytes{configuration_};
    }
    if (request.is(SetConfiguration, false)) {
        return configure(request.value);
    }
    if (request.is(SetAddress, false) && request.value <= HighestAddress) {
        return Nothing;  // The connection is the address.
    }
    return std::nullopt;
}

std::optional<ControlEndpoint::Bytes> ControlEndpoint::descriptor(const Request& request,
                                                                  const Plug& plug) {
    const auto type = static_cast<std::uint8_t>(request.value >> 8U);
    const auto index = static_cast<std::uint8_t>(request.value);
    if (plug.windowsDescriptors && type == descriptors::String &&
        index == windows_descriptors::StringIndex) {
        return windows_descriptors::signature();
    }
    return descriptors::find(type, index, plug.product,
                             descriptors::release(plug.windowsDescriptors));
}

std::optional<ControlEndpoint::Bytes> ControlEndpoint::configure(std::uint16_t value) {
    if (value != 0 && value != descriptors::Configuration) {
        return std::nullopt;
    }
    configuration_ = static_cast<std::uint8_t>(value);
    halts_ = {};
    reset_(0);
    return Nothing;
}

std::optional<ControlEndpoint::Bytes> ControlEndpoint::interface(const Request& request) {
    if (!configured() || request.index != 0) {
        return std::nullopt;
    }
    if (request.is(GetStatus, true)) {
        return Bytes{0, 0};
    }
    if (request.is(GetInterface, true)) {
        return Bytes{0};
    }
    if (request.is(SetInterface, false) && request.value == 0) {
        halts_ = {};
        reset_(0);
        return Nothing;
    }
    return std::nullopt;
}

std::optional<ControlEndpoint::Bytes> ControlEndpoint::endpoint(const Request& request) {
    const bool isControl = (request.index & 0x7FU) == 0;
    const bool isBulk =
        request.index == descriptors::OutEndpoint || request.index == descriptors::InEndpoint;
    if (isControl && request.is(GetStatus, true)) {
        return Bytes{0, 0};
    }
    if (isControl && request.is(ClearFeature, false) && request.value == EndpointHalt) {
        return Nothing;  // It is never halted.
    }
    if (!isBulk || !configured()) {
        return std::nullopt;
    }
    const auto address = static_cast<std::uint8_t>(request.index);
    if (request.is(GetStatus, true)) {
        return Bytes{static_cast<std::uint8_t>(halted(address)), 0};
    }
    if (request.value != EndpointHalt) {
        return std::nullopt;
    }
    if (request.is(SetFeature, false)) {
        halt(address);
        return Nothing;
    }
    if (request.is(ClearFeature, false)) {
        halts_[isIn(address)] = false;
        reset_(address);
        return Nothing;
    }
    return std::nullopt;
}

}  // namespace simulator
