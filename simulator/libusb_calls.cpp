#include <libusb.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "simulator/call_in_progress.h"
#include "simulator/remote_calls.h"

namespace simulator {

namespace {

using State = LibraryCalls::State;
using Token = State::Token;

constexpr std::uint8_t ProductIndex = 2;

/// Ends the program where the real library would follow a null or dangling pointer.
void requireContext(const CallInProgress& progress, libusb_context* context) {
    if (!progress.state.hasContext(tokenOf(context))) {
        std::fprintf(stderr, "simulated bus: %s with a context that is not initialised\n",
                     progress.call.function.c_str());
        std::abort();
    }
}

/// A null-terminated list of the devices on the bus, with room for `count` at least.
libusb_device** makeList(State& state, std::size_t count) {
    auto** list = static_cast<libusb_device**>(
        std::calloc(std::max(count, state.devices.size()) + 1, sizeof(libusb_device*)));
    if (list == nullptr) {
        return nullptr;
    }
    std::size_t used = 0;
    for (const State::Slot& slot : state.devices) {
        if (slot.present) {
            list[used++] = reinterpret_cast<libusb_device*>(slot.token);
        }
    }
    state.lists[~tokenOf(list)] = state.resets;
    return list;
}

libusb_device_descriptor descriptorOf(const Device& device) {
    libusb_device_descriptor descriptor = {};
    descriptor.bLength = LIBUSB_DT_DEVICE_SIZE;
    descriptor.bDescriptorType = LIBUSB_DT_DEVICE;
    descriptor.bcdUSB = 0x0200;
    descriptor.bMaxPacketSize0 = 64;
    descriptor.idVendor = device.vendor;
    descriptor.idProduct = device.product;
    descriptor.bcdDevice = 0x0100;
    descriptor.iProduct = ProductIndex;
    descriptor.bNumConfigurations = 1;
    return descriptor;
}

int readString(CallInProgress& progress, unsigned char* data) {
    Call& call = progress.call;
    if (call.endpoint == 0 || data == nullptr || call.length <= 0) {
        return LIBUSB_ERROR_INVALID_PARAM;
    }
    const Device& device = progress.slot().device;
    if (!progress.slot().present) {
        return LIBUSB_ERROR_NO_DEVICE;
    }
    if (call.endpoint != ProductIndex) {
        return LIBUSB_ERROR_PIPE;
    }
    if (device.remote) {
        return readRemoteString(progress, data);
    }
    const std::optional<int> claimed =
        progress.fault.result ? progress.fault.result : device.stringResult;
    if (claimed && *claimed <= 0) {
        return *claimed;
    }
    const std::string& text = device.productString;
    std::size_t size = std::min(text.size(), static_cast<std::size_t>(call.length) - 1);
    if (claimed) {
        size = std::min(size, static_cast<std::size_t>(*claimed));
    }
    std::memcpy(data, text.data(), size);
    data[size] = 0;
    call.data.assign(data, data + size);
    return claimed.value_or(static_cast<int>(size));
}

int claim(State::Slot& slot, Token handle, int number) {
    if (!slot.present) {
        return LIBUSB_ERROR_NO_DEVICE;
    }
    if (number != 0) {
        return LIBUSB_ERROR_NOT_FOUND;
    }
    if (slot.device.refuseClaim || slot.device.kernelDriver ||
        (slot.claimedBy != 0 && slot.claimedBy != handle)) {
        return LIBUSB_ERROR_BUSY;
    }
    if (const int result = slot.device.remote ? openRemote(slot) : 0; result < 0) {
        return result;
    }
    slot.claimedBy = handle;
    return LIBUSB_SUCCESS;
}

int release(State::Slot& slot, Token handle, int number) {
    if (number != 0 || slot.claimedBy != handle) {
        return LIBUSB_ERROR_NOT_FOUND;
    }
    if (!slot.present) {
        return LIBUSB_ERROR_NO_DEVICE;
    }
    slot.claimedBy = 0;
    return LIBUSB_SUCCESS;
}

int timeOut(CallInProgress& progress, std::optional<int>& moved) {
    moved = 0;
    progress.state.wait(static_cast<std::uint64_t>(progress.call.timeout));
    return LIBUSB_ERROR_TIMEOUT;
}

int send(CallInProgress& progress, const unsigned char* data, std::optional<int>& moved) {
    if (progress.slot().device.remote) {
        return sendRemote(progress, data, moved);
    }
    const auto controller = progress.slot().device.controller;
    if (!controller || controller->restarting()) {
        return timeOut(progress, moved);
    }
    const auto length = static_cast<std::size_t>(progress.call.length);
    controller->receive({data, length});
    if (progress.state.recording()) {
        progress.call.data.assign(data, data + length);
    }
    moved = progress.call.length;
    return LIBUSB_SUCCESS;
}

/// Hands the bytes over, as far as the client asked for them.
int deliver(CallInProgress& progress, Packet bytes, unsigned char* data,
            std::optional<int>& moved) {
    const auto length = static_cast<std::size_t>(progress.call.length);
    const bool tooLong = bytes.size() > length;
    bytes.resize(std::min(bytes.size(), length));
    std::copy(bytes.begin(), bytes.end(), data);
    moved = static_cast<int>(bytes.size());
    progress.call.data = std::move(bytes);
    return tooLong ? LIBUSB_ERROR_OVERFLOW : LIBUSB_SUCCESS;
}

int receive(CallInProgress& progress, unsigned char* data, std::optional<int>& moved) {
    const auto controller = progress.slot().device.controller;
    std::optional<Packet>& forged = progress.fault.reply;
    if (forged) {
        if (controller) {
            controller->takeReply();
        }
        deliver(progress, std::move(*forged), data, moved);
        return LIBUSB_SUCCESS;
    }
    if (progress.slot().device.remote) {
        return receiveRemote(progress, data, moved);
    }
    if (!controller) {
        return timeOut(progress, moved);
    }
    const std::uint64_t delay = controller->replyDelay();
    const auto timeout = static_cast<std::uint64_t>(progress.call.timeout);
    if (timeout != 0 && delay > timeout) {
        return timeOut(progress, moved);
    }
    if (delay > 0) {
        progress.state.wait(delay);
    }
    std::optional<Packet> reply = controller->takeReply();
    return reply ? deliver(progress, std::move(*reply), data, moved) : timeOut(progress, moved);
}

int transfer(CallInProgress& progress, unsigned char* data, std::optional<int>& moved) {
    const State::Slot& slot = progress.slot();
    const Call& call = progress.call;
    if (call.length < 0 || (call.length > 0 && data == nullptr)) {
        return LIBUSB_ERROR_INVALID_PARAM;
    }
    if (!slot.present) {
        return LIBUSB_ERROR_NO_DEVICE;
    }
    if (slot.claimedBy != progress.handle) {
        return LIBUSB_ERROR_IO;
    }
    if (call.endpoint == OutEndpoint) {
        return send(progress, data, moved);
    }
    return call.endpoint == InEndpoint ? receive(progress, data, moved) : LIBUSB_ERROR_IO;
}

struct ErrorText {
    int code;
    const char* name;
    const char* meaning;
};

constexpr ErrorText ErrorTexts[] = {
    {LIBUSB_SUCCESS, "LIBUSB_SUCCESS", "Success"},
    {LIBUSB_ERROR_IO, "LIBUSB_ERROR_IO", "Input/output error"},
    {LIBUSB_ERROR_INVALID_PARAM, "LIBUSB_ERROR_INVALID_PARAM", "Invalid parameter"},
    {LIBUSB_ERROR_ACCESS, "LIBUSB_ERROR_ACCESS", "Access denied"},
    {LIBUSB_ERROR_NO_DEVICE, "LIBUSB_ERROR_NO_DEVICE", "The device has gone"},
    {LIBUSB_ERROR_NOT_FOUND, "LIBUSB_ERROR_NOT_FOUND", "Not found"},
    {LIBUSB_ERROR_BUSY, "LIBUSB_ERROR_BUSY", "In use by someone else"},
    {LIBUSB_ERROR_TIMEOUT, "LIBUSB_ERROR_TIMEOUT", "Timed out"},
    {LIBUSB_ERROR_OVERFLOW, "LIBUSB_ERROR_OVERFLOW", "More data than asked for"},
    {LIBUSB_ERROR_PIPE, "LIBUSB_ERROR_PIPE", "Not supported by the device"},
    {LIBUSB_ERROR_INTERRUPTED, "LIBUSB_ERROR_INTERRUPTED", "Interrupted"},
    {LIBUSB_ERROR_NO_MEM, "LIBUSB_ERROR_NO_MEM", "Out of memory"},
    {LIBUSB_ERROR_NOT_SUPPORTED, "LIBUSB_ERROR_NOT_SUPPORTED", "Not supported"},
    {LIBUSB_ERROR_OTHER, "LIBUSB_ERROR_OTHER", "Another error"},
};

ErrorText errorText(int code) {
    const auto* text = std::find_if(std::begin(ErrorTexts), std::end(ErrorTexts),
                                    [code](const ErrorText& each) { return each.code == code; });
    return text != std::end(ErrorTexts) ? *text : ErrorText{code, "**UNKNOWN**", "Unknown error"};
}

}  // namespace

}  // namespace simulator

using simulator::CallInProgress;

int libusb_init(libusb_context** context) {
    CallInProgress progress("libusb_init");
    return progress.run([&] {
        if (context == nullptr) {
            ++progress.state.defaultContext;
        } else {
            const simulator::Token token = progress.state.newToken();
            progress.state.contexts.insert(token);
            *context = reinterpret_cast<libusb_context*>(token);
        }
        return LIBUSB_SUCCESS;
    });
}

void libusb_exit(libusb_context* context) {
    CallInProgress progress("libusb_exit");
    simulator::requireContext(progress, context);
    progress.run([&] {
        if (context == nullptr) {
            --progress.state.defaultContext;
        } else {
            progress.state.contexts.erase(simulator::tokenOf(context));
        }
        return LIBUSB_SUCCESS;
    });
}

ssize_t libusb_get_device_list(libusb_context* context, libusb_device*** list) {
    CallInProgress progress("libusb_get_device_list");
    simulator::requireContext(progress, context);
    return progress.run([&]() -> int {
        const int claimed = progress.fault.result.value_or(0);
        progress.state.lookForRemoteDevices();
        libusb_device** made =
            simulator::makeList(progress.state, static_cast<std::size_t>(claimed));
        if (made == nullptr) {
            return LIBUSB_ERROR_NO_MEM;
        }
        *list = made;
        int count = 0;
        while (made[count] != nullptr) {
            ++count;
        }
        return count;
    });
}

void libusb_free_device_list(libusb_device** list, int) {
    CallInProgress progress("libusb_free_device_list");
    auto& lists = progress.state.lists;
    progress.call.stale = list != nullptr && !lists.contains(~simulator::tokenOf(list));
    progress.run([&] {
        if (lists.erase(~simulator::tokenOf(list)) > 0) {
            std::free(list);
        }
        return LIBUSB_SUCCESS;
    });
}

int libusb_get_device_descriptor(libusb_device* device, libusb_device_descriptor* descriptor) {
    CallInProgress progress("libusb_get_device_descriptor", device);
    return progress.run([&] {
        *descriptor = simulator::descriptorOf(progress.slot().device);
        return LIBUSB_SUCCESS;
    });
}

int libusb_open(libusb_device* device, libusb_device_handle** handle) {
    CallInProgress progress("libusb_open", device);
    return progress.run([&] {
        if (!progress.slot().present) {
            return LIBUSB_ERROR_NO_DEVICE;
        }
        if (progress.slot().device.refuseOpen) {
            return LIBUSB_ERROR_ACCESS;
        }
        const simulator::Token token = progress.state.newToken();
        progress.state.handles[token] = progress.call.device;
        *handle = reinterpret_cast<libusb_device_handle*>(token);
        return LIBUSB_SUCCESS;
    });
}

void libusb_close(libusb_device_handle* handle) {
    CallInProgress progress("libusb_close", handle);
    progress.run([&] {
        if (progress.slot().claimedBy == progress.handle) {
            progress.slot().claimedBy = 0;
        }
        progress.state.handles.erase(progress.handle);
        simulator::letGoRemote(progress);
        return LIBUSB_SUCCESS;
    });
}

int libusb_get_string_descriptor_ascii(libusb_device_handle* handle, uint8_t index,
                                       unsigned char* data, int length) {
    CallInProgress progress("libusb_get_string_descriptor_ascii", handle);
    progress.call.endpoint = index;
    progress.call.length = length;
    return progress.run([&] { return simulator::readString(progress, data); });
}

int libusb_claim_interface(libusb_device_handle* handle, int number) {
    CallInProgress progress("libusb_claim_interface", handle);
    progress.call.endpoint = number;
    return progress.run([&] { return simulator::claim(progress.slot(), progress.handle, number); });
}

int libusb_release_interface(libusb_device_handle* handle, int number) {
    CallInProgress progress("libusb_release_interface", handle);
    progress.call.endpoint = number;
    return progress.run(
        [&] { return simulator::release(progress.slot(), progress.handle, number); });
}

int libusb_bulk_transfer(libusb_device_handle* handle, unsigned char endpoint, unsigned char* data,
                         int length, int* transferred, unsigned int timeout) {
    constexpr unsigned int Longest = std::numeric_limits<int>::max();
    CallInProgress progress("libusb_bulk_transfer", handle);
    progress.call.endpoint = endpoint;
    progress.call.length = length;
    progress.call.timeout = static_cast<int>(std::min(timeout, Longest));
    progress.call.countAsked = transferred != nullptr;

    std::optional<int> moved;  // Empty when no transfer took place: the client's count stays.
    const int result = progress.run([&] { return simulator::transfer(progress, data, moved); });
    if (progress.fault.transferred) {
        moved = progress.fault.transferred;
    }
    if (transferred != nullptr && moved) {
        *transferred = *moved;
    }
    return result;
}

const char* libusb_error_name(int code) { return simulator::errorText(code).name; }

const char* libusb_strerror(int code) { return simulator::errorText(code).meaning; }
