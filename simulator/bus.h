#ifndef LUMADOT_SIMULATOR_BUS_H
#define LUMADOT_SIMULATOR_BUS_H

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "simulator/controller.h"

namespace simulator {

class RemoteDevice;

/// One call that a client made to the USB library, with its parameters and what came of it.
struct Call {
    std::string function = {};  ///< "libusb_bulk_transfer", ...
    int device = -1;            ///< number of the device in order of plugging in, -1: none
    /// Bulk transfers: 0x01 or 0x81; claim and release: the interface; string reads: the index.
    int endpoint = -1;
    int length = -1;          ///< bytes offered or asked for
    int timeout = -1;         ///< ms, as asked for
    bool countAsked = false;  ///< bulk transfers: the client wants the transferred count
    /// The handle was null, closed, or never opened; or the device list was freed before.
    bool stale = false;
    Packet data = {};                               ///< bytes that went over the wire, whole
    int result = 0;                                 ///< what the call returned
    std::chrono::steady_clock::time_point at = {};  ///< when the call was entered, in real time
};

/// A fault, as data: what a chosen call does instead of what it should.
struct Fault {
    std::string function = {};       ///< the call it waits for; empty: any call
    int nth = 1;                     ///< which such call from now, 1 = the next; 0 = every one
    std::optional<int> result = {};  ///< returned instead of the call's own result
    /// IN transfers: these bytes arrive instead, cut to the length asked for.
    std::optional<Packet> reply = {};
    std::optional<int> transferred = {};  ///< bulk transfers: the count claimed, true or not
    bool unplug = false;  ///< the device that the call is about leaves the bus with this call
    int endpoint = -1;    ///< bulk transfers: only those of this endpoint; -1: any
    std::function<void()> meanwhile = {};  ///< done when the call comes, before its work
};

/// A device on the simulated bus.
struct Device {
    std::uint16_t vendor = 0x0314;
    std::uint16_t product = 0xE457;
    std::string productString = "LUMADOT";
    std::optional<int> stringResult = {};  ///< returned by the string read instead of the length
    bool refuseOpen = false;               ///< LIBUSB_ERROR_ACCESS
    bool refuseClaim = false;              ///< LIBUSB_ERROR_BUSY
    std::shared_ptr<Controller> controller = {};  ///< null: never accepts and never answers
    std::shared_ptr<RemoteDevice> remote = {};    ///< or it is in a simulator that runs elsewhere
    // Where it is plugged in.
    std::uint8_t bus = 1;
    std::vector<std::uint8_t> ports = {};  ///< from the root hub on; empty: its number, from 1 on
    std::uint8_t address = 0;              ///< 0: its number, from 2 on
    bool kernelDriver = false;             ///< a driver of the system holds interface 0
};

/// The bus that exists only in this process, behind the libusb-1.0 functions that the tool calls.
///
/// Behaves as Linux does where the tool can tell: an interface that one handle holds cannot be
/// claimed through another (LIBUSB_ERROR_BUSY), a device that has gone answers
/// LIBUSB_ERROR_NO_DEVICE, a transfer on an interface that is not claimed fails with
/// LIBUSB_ERROR_IO. What the real library would not survive (a null or closed handle, a list freed
/// twice) is reported in the log and answered with LIBUSB_ERROR_NO_DEVICE; a context that was never
/// initialised ends the program.
///
/// Faults: an error code as `result` keeps the call from having any effect, unless bytes are to
/// arrive all the same (`reply`). Any other `result` is only claimed: the call does its work.
/// Several faults may hit one call; each field is then taken from the fault injected first.
///
/// Time: a wait that the bus simulates ends at once and moves the simulated clock on by the time
/// waited; with `setRealTime(true)` it takes real time. Where libusb would wait for ever (a timeout
/// of 0) and nothing can come, the call times out at once.
class Bus {
public:
    static Bus& instance();

    /// As new: no device, no fault, empty log, waits end at once.
    void reset();

    /// Adds a device; returns its number (0, 1, ...), which never changes or comes back.
    int plug(Device device);
    /// Adds a controller with these options (the bus is its clock) and product string.
    std::shared_ptr<Controller> plugController(ControllerOptions options = {},
                                               std::string productString = "LUMADOT");
    void unplug(int number);
    /// From now on each enumeration looks for the devices of the simulator at "HOST:PORT", beside
    /// those that are plugged in here. What these do takes real time. False: that is no address.
    /// A name is looked up once, here, for as long as that takes.
    bool join(const std::string& simulator);
    void leave();

    void inject(Fault fault);
    /// Takes back every fault that has not happened yet.
    void clearFaults();

    const std::vector<Call>& calls() const;
    void clearCalls();
    /// Appends the line of `describe` to the file for each call as it happens; "": no longer.
    void logTo(const std::filesystem::path& path);
    /// Long captures: keep no more than the last `count` calls (0: keep all, the start value).
    void keepCalls(std::size_t count);
    /// False: calls are not kept at all, and their bytes not copied (for measuring).
    void setLogging(bool logging);

    void setRealTime(bool real);
    /// The simulated clock, in ms: real time plus the waits that ended at once.
    std::uint64_t now() const;

    int openContexts() const;       ///< initialisations of the library not given back
    int openHandles() const;        ///< handles opened and not closed
    int claimedInterfaces() const;  ///< interfaces claimed and not released
    int deviceLists() const;        ///< device lists handed out and not freed

private:
    friend struct LibraryCalls;
    Bus();
    ~Bus();
    struct State;
    std::unique_ptr<State> state_;
};

/// One line of the log, without line end: the function, then `name=value` for what applies to it.
/// The bytes come last in hexadecimal; eight zeros or more are counted, as in "81 C3 00*2050".
std::string describe(const Call& call);

}  // namespace simulator

#endif
