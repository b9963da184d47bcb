#include "simulator/remote_calls.h"

#include <libusb.h>

#include <algorithm>
#include <span>
#include <string>

namespace simulator {

namespace {

using Slot = LibraryCalls::State::Slot;

/// The result as it is; the device stays on the bus unless it has gone.
int noticed(Slot& slot, int result) {
    slot.present = result != LIBUSB_ERROR_NO_DEVICE;
    return result;
}

unsigned timeoutOf(const Call& call) { return static_cast<unsigned>(call.timeout); }

}  // namespace

int openRemote(Slot& slot) { return noticed(slot, slot.device.remote->open()); }

void letGoRemote(CallInProgress& progress) {
    const auto& remote = progress.slot().device.remote;
    const bool isOpen = std::ranges::any_of(progress.state.handles, [&](const auto& handle) {
        return handle.second == progress.call.device;
    });
    if (remote && !isOpen) {
        remote->close();
    }
}

int readRemoteString(CallInProgress& progress, unsigned char* data) {
    Call& call = progress.call;
    Slot& slot = progress.slot();
    std::string text;
    int result = openRemote(slot);
    if (result == LIBUSB_SUCCESS) {
        const auto index = static_cast<std::uint8_t>(call.endpoint);
        result = noticed(slot, slot.device.remote->readString(index, text));
    }
    if (result < 0) {
        return result;
    }
    text.resize(std::min(text.size(), static_cast<std::size_t>(call.length) - 1));
    std::copy(text.begin(), text.end(), data);
    data[text.size()] = 0;
    call.data.assign(data, data + text.size());
    return static_cast<int>(text.size());
}

int sendRemote(CallInProgress& progress, const unsigned char* data, std::optional<int>& moved) {
    Call& call = progress.call;
    Slot& slot = progress.slot();
    const std::span bytes(data, static_cast<std::size_t>(call.length));
    const int result = noticed(
        slot, slot.device.remote->send(OutEndpoint, bytes, timeoutOf(call), moved.emplace()));
    call.data.assign(data, data + *moved);
    return result;
}

int receiveRemote(CallInProgress& progress, unsigned char* data, std::optional<int>& moved) {
    Call& call = progress.call;
    Slot& slot = progress.slot();
    const std::span bytes(data, static_cast<std::size_t>(call.length));
    const int result = noticed(
        slot, slot.device.remote->receive(InEndpoint, bytes, timeoutOf(call), moved.emplace()));
    call.data.assign(data, data + *moved);
    return result;
}

}  // namespace simulator
