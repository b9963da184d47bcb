#ifndef LUMADOT_SIMULATOR_CALL_IN_PROGRESS_H
#define LUMADOT_SIMULATOR_CALL_IN_PROGRESS_H

#include <libusb.h>

#include <utility>

#include "simulator/bus_state.h"

namespace simulator {

/// The library calls' way into the bus.
struct LibraryCalls {
    using State = Bus::State;
    static State& state() { return *Bus::instance().state_; }
};

constexpr int OutEndpoint = 0x01;
constexpr int InEndpoint = 0x81;

/// The number that went out to the client as this pointer.
template <class Pointer>
std::uintptr_t tokenOf(Pointer pointer) {
    return reinterpret_cast<std::uintptr_t>(pointer);
}

/// One call in progress: knows what it is about, suffers its faults, and is logged at its end.
class CallInProgress {
public:
    explicit CallInProgress(const char* function) {
        call.function = function;
        call.at = std::chrono::steady_clock::now();
    }
    CallInProgress(const char* function, libusb_device* device) : CallInProgress(function) {
        setDevice(state.findDevice(tokenOf(device)));
    }
    CallInProgress(const char* function, libusb_device_handle* client) : CallInProgress(function) {
        handle = tokenOf(client);
        setDevice(state.findHandle(handle));
    }

    LibraryCalls::State::Slot& slot() const {
        return state.devices[static_cast<std::size_t>(call.device)];
    }

    /// Does `work`, which returns the call's result, unless a fault or a stale handle forbids it.
    template <class Work>
    int run(Work work) {
        fault = state.takeFaults(call);
        if (fault.meanwhile) {
            fault.meanwhile();
        }
        if (fault.unplug && call.device >= 0) {
            slot().present = false;
        }
        const bool bytesArrive = fault.reply && call.endpoint == InEndpoint;
        if (call.stale) {
            call.result = LIBUSB_ERROR_NO_DEVICE;
        } else if (bytesArrive || fault.result.value_or(0) >= 0) {
            call.result = work();
        }
        const int result = call.result = fault.result.value_or(call.result);
        if (state.recording()) {
            state.record(std::move(call));
        }
        return result;
    }

    LibraryCalls::State& state = LibraryCalls::state();
    Call call;
    Fault fault;
    std::uintptr_t handle = 0;

private:
    void setDevice(int number) {
        call.device = number;
        call.stale = number < 0;
    }
};

}  // namespace simulator

#endif
