#include "tests/support/capture_rounds.h"

#include <gtest/gtest.h>
#include <libusb.h>
#include <wx/app.h>

#include <cstdlib>

#include "device/interfaceUSB.h"

namespace {

support::CaptureRounds* current = nullptr;

constexpr int DumpRequestLength = 64;
constexpr int MostEnumerationsInARow = 200;

}  // namespace

extern "C" {

int __real_libusb_bulk_transfer(libusb_device_handle*, unsigned char, unsigned char*, int, int*,
                                unsigned int);
ssize_t __real_libusb_get_device_list(libusb_context*, libusb_device***);

/// Called by the tool in place of the library's function.
int __wrap_libusb_bulk_transfer(libusb_device_handle* handle, unsigned char endpoint,
                                unsigned char* data, int length, int* transferred,
                                unsigned int timeout) {
    const bool in = (endpoint & 0x80) != 0;
    if (current != nullptr && in) {
        current->reading();
    }
    const int result =
        __real_libusb_bulk_transfer(handle, endpoint, data, length, transferred, timeout);
    if (current != nullptr && !in && length == DumpRequestLength) {
        current->requestSent();
    }
    return result;
}

/// The same.
ssize_t __wrap_libusb_get_device_list(libusb_context* context, libusb_device*** list) {
    const ssize_t result = __real_libusb_get_device_list(context, list);
    if (current != nullptr) {
        current->enumerated();
    }
    return result;
}
}

namespace support {

CaptureRounds::CaptureRounds() { current = this; }

CaptureRounds::~CaptureRounds() { current = nullptr; }

void CaptureRounds::stopAfter(int frame) {
    after(frame, [] { dump_running = false; });
}

void CaptureRounds::reading() {
    if (!asked_) {
        return;  // The reply to a command.
    }
    asked_ = false;
    enumerationsInARow_ = 0;
    watch(++frames_, limit_);
    if (onRead_) {
        onRead_(frames_);
    }
    runLater(afterFrame_, frames_);
}

void CaptureRounds::enumerated() {
    watch(++enumerationsInARow_, MostEnumerationsInARow);
    runLater(afterEnumeration_, ++enumerations_);
}

void CaptureRounds::runLater(const Plan& plan, int number) {
    const auto [first, last] = plan.equal_range(number);
    for (auto entry = first; entry != last; ++entry) {
        wxTheApp->CallAfter(entry->second);
    }
}

void CaptureRounds::watch(int number, int limit) {
    if (number <= limit) {
        return;
    }
    if (number == limit + 1) {
        ADD_FAILURE() << "the capture goes on for ever";
    } else if (number > limit + 100) {
        std::abort();  // Nothing stops it.
    }
    dump_running = false;
}

}  // namespace support
