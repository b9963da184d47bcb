#ifndef LUMADOT_SIMULATOR_SERVER_CONTROL_ENDPOINT_H
#define LUMADOT_SIMULATOR_SERVER_CONTROL_ENDPOINT_H

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "simulator/server/messages.h"

namespace simulator {

/// Endpoint 0: answers the standard requests, and knows what they set: the configuration and which
/// bulk endpoints are halted. Requests that the board does not know stall; that lasts for the one
/// request only.
class ControlEndpoint {
public:
    using Bytes = std::vector<std::uint8_t>;

    /// Called when a request has ended what a bulk endpoint was at: the one with the address, or
    /// both (0).
    using EndpointReset = std::function<void(std::uint8_t)>;

    explicit ControlEndpoint(EndpointReset reset) : reset_(std::move(reset)) {}

    /// As the server's host has set it up before it exports it: configured, nothing halted.
    void reset();

    /// In what boards differ here.
    struct Plug {
        std::string_view product;  ///< the product string
        bool windowsDescriptors;   ///< tells Windows which driver it wants
    };

    /// The data stage of an IN request (empty for OUT), cut to what the request asks for; nothing:
    /// the request stalls.
    std::optional<Bytes> answer(const std::array<std::uint8_t, usbip::SetupSize>& setup,
                                const Plug& plug);

    bool configured() const { return configuration_ != 0; }

    /// `address`: descriptors::OutEndpoint or InEndpoint. A halt is there until it is cleared.
    bool halted(std::uint8_t address) const { return halts_[isIn(address)]; }
    void halt(std::uint8_t address) { halts_[isIn(address)] = true; }

private:
    struct Request;
    std::optional<Bytes> device(const Request& request, const Plug& plug);
    static std::optional<Bytes> descriptor(const Request& request, const Plug& plug);
    std::optional<Bytes> interface(const Request& request);
    std::optional<Bytes> endpoint(const Request& request);
    std::optional<Bytes> configure(std::uint16_t value);
    static std::size_t isIn(std::uint8_t address) { return address >> 7U; }

    EndpointReset reset_;
    std::uint8_t configuration_ = 0;
    std::array<bool, 2> halts_ = {};
};

}  // namespace simulator

#endif
