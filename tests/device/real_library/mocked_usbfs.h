#ifndef LUMADOT_TESTS_DEVICE_REAL_LIBRARY_MOCKED_USBFS_H
#define LUMADOT_TESTS_DEVICE_REAL_LIBRARY_MOCKED_USBFS_H

#include <memory>
#include <string>

#include "tests/device/real_library/usb_description.h"
#include "tests/device/real_library/usbfs_device.h"

namespace support {

/// A display controller on a mocked USB bus that the real libusb sees: plugged in for as long as
/// the object lives. A hub is always there. The program has to be started by umockdev-wrapper.
///
///     support::MockedUsbfs controller({.product = "LUMADOT XL"});
///     controller->setFaults({.holdReplies = true});
class MockedUsbfs {
public:
    /// Why there can be no mocked bus in this process; empty if there can. Makes the bus, which
    /// libusb looks at when it is initialised: to be called before that.
    static const std::string& unavailable();

    /// Plugs a controller in. Throws std::runtime_error when the bus refuses it.
    explicit MockedUsbfs(UsbfsOptions options = {});
    ~MockedUsbfs() { unplug(); }
    MockedUsbfs(const MockedUsbfs&) = delete;
    MockedUsbfs& operator=(const MockedUsbfs&) = delete;

    /// The device, for as long as this object lives, plugged in or not.
    UsbfsDevice* operator->() const { return device_.get(); }

    /// Address on the bus; no two devices of a process have the same, up to 126 of them.
    int address() const { return place_.address; }

    /// From now on nobody but root may open it.
    void forbid() const;

    /// Pulls the controller out, if it is not out yet, and announces it to libusb.
    void unplug();

private:
    struct ObjectUnref {
        void operator()(void* object) const;
    };

    UsbPlace place_;
    std::shared_ptr<UsbfsDevice> device_;  // Shared with umockdev's thread.
    std::unique_ptr<UMockdevIoctlBase, ObjectUnref> ioctls_;
    bool plugged_ = false;
};

}  // namespace support

#endif
