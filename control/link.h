#ifndef LUMADOT_CONTROL_LINK_H
#define LUMADOT_CONTROL_LINK_H

#include <memory>
#include <optional>
#include <string>

#include "control/bus.h"
#include "control/findings.h"
#include "control/output.h"

namespace control {

/// Which controller is meant: "" the first one, "1-1.4" a place, anything else a unique id.
using DeviceChoice = std::string;

/// An open controller whose interface is claimed, until the object goes.
class Link : public Channel {
public:
    /// Opens the controller that is meant, as the window does: product name, then interface. Throws
    /// Failure; nothing is open then. `timeout` in ms.
    static std::unique_ptr<Link> open(const DeviceChoice& choice, unsigned int timeout,
                                      Output& output);

    /// Takes a device over that is open and claimed. `bus` is what the device was found on, unless
    /// the caller keeps that himself.
    Link(OpenDevice device, DeviceInfo info, unsigned int timeout, Output& output,
         std::shared_ptr<const Bus> bus = nullptr);

    const DeviceInfo* device() const override { return &info_; }

private:
    void doSend(std::span<const std::uint8_t> bytes, unsigned int timeout) override;
    std::size_t doReceive(std::span<std::uint8_t> bytes, unsigned int timeout) override;

    std::shared_ptr<const Bus> bus_;
    OpenDevice device_;
    DeviceInfo info_;
    Output& output_;
};

/// What keeps the user from opening the controller, where the library's error says that something
/// does.
std::optional<Finding> permissionFinding(int usbError);
/// Who holds its interface, likewise.
std::optional<Finding> holdFinding(const OpenDevice& device, const DeviceInfo& place, int usbError);

/// The controller at this place. Throws Failure.
const Bus::Found& atPlace(const Bus& bus, const std::string& place);

/// Whether --device's operand is a place.
bool isPlace(const std::string& choice);

}  // namespace control

#endif
