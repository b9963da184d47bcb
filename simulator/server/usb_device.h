#ifndef LUMADOT_SIMULATOR_SERVER_USB_DEVICE_H
#define LUMADOT_SIMULATOR_SERVER_USB_DEVICE_H

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "simulator/controller.h"
#include "simulator/server/bulk_endpoint.h"
#include "simulator/server/control_endpoint.h"
#include "simulator/server/messages.h"
#include "simulator/server/transfer.h"

namespace simulator {

/// The simulated controller with a USB plug: URBs in, what became of them out. It knows neither
/// sockets nor threads nor time but the clock that it is made with.
class UsbDevice {
public:
    /// Sees each bulk transfer when it is over.
    using Observer = std::function<void(const Transfer&)>;

    /// Plugged in from the start. `options.clock` tells the time of everything here.
    explicit UsbDevice(ControllerOptions options);
    UsbDevice(const UsbDevice&) = delete;
    UsbDevice& operator=(const UsbDevice&) = delete;

    // For the client.

    /// As the server lists it; nothing: it is not plugged in.
    std::optional<usbip::ListedDevice> listed() const;
    /// Gives the device to one client, as new: configured, nothing waiting. Returns what that
    /// client's hold is called; nothing: another one has it, or it is not plugged in.
    std::optional<std::uint32_t> attach();
    /// False: the client has lost it, by unplugging.
    bool holds(std::uint32_t hold) const { return hold_ == hold; }
    /// Drops whatever the client still waits for.
    void detach(std::uint32_t hold);

    void submit(usbip::Submit urb);
    /// False: no such URB waits; it has completed.
    bool unlink(std::uint32_t sequence);
    /// What has completed since the last call, in order.
    std::vector<usbip::SubmitReply> takeCompleted();

    /// Lets URBs go on whose time has come.
    void advance();
    /// ms until `advance` has something to do; nothing: not by time alone.
    std::optional<std::uint64_t> nextChange() const;
    /// URBs that wait.
    std::size_t waiting() const { return out_.waiting() + in_.waiting(); }
    /// The bytes that they hold.
    std::size_t waitingBytes() const { return out_.waitingBytes(); }

    // For whoever looks at the board or plays with it.

    const Controller& controller() const { return *controller_; }
    Controller& controller() { return *controller_; }
    const ControllerOptions& options() const { return options_; }
    bool pluggedIn() const { return pluggedIn_; }
    bool attached() const { return hold_.has_value(); }

    void unplug();
    /// The machine feeds the board, so it is as it was.
    void plugIn();
    /// Another board, or another firmware, in place of this one: pulled out and plugged in.
    void replace(ControllerOptions options);
    void inject(const TransferFault& fault) { faults_.add(fault); }
    void clearFaults() { faults_.clear(); }
    /// Each URB takes that many ms more from now on.
    void slowDown(std::uint64_t ms) { context_.slowness = ms; }
    /// One more that is told.
    void onTransfer(Observer observer) { observers_.push_back(std::move(observer)); }

private:
    void answerControl(const usbip::Submit& urb);
    void complete(usbip::SubmitReply reply) { completed_.push_back(std::move(reply)); }
    void report(const Transfer& transfer) const;
    void messageTaken();
    void resetEndpoint(std::uint8_t address);
    void abandon(const char* why);

    ControllerOptions options_;
    std::unique_ptr<Controller> controller_;
    ControlEndpoint control_;
    FaultList faults_;
    BulkContext context_;
    OutEndpoint out_;
    InEndpoint in_;
    std::vector<usbip::SubmitReply> completed_;
    std::vector<Observer> observers_;
    bool pluggedIn_ = true;
    std::optional<std::uint32_t> hold_;
    std::uint32_t holds_ = 0;  // So far.
};

}  // namespace simulator

#endif
