#include "tests/device/real_library/mocked_usbfs.h"

#include <filesystem>
#include <stdexcept>
#include <utility>

namespace support {

namespace {

/// Takes the message out of an error; empty if there is none.
std::string messageOf(GError* error) {
    std::string message = error != nullptr ? error->message : "";
    g_clear_error(&error);
    return message;
}

/// The one mocked /sys and /dev of the process. libusb listens for the events of the bus that it
/// found when it was initialised, and is never shut down: a second one would not reach it.
class Testbed {
public:
    static Testbed& instance() {
        static Testbed testbed;
        return testbed;
    }
    ~Testbed() { g_object_unref(bed_); }
    Testbed(const Testbed&) = delete;
    Testbed& operator=(const Testbed&) = delete;

    const std::string& problem() const { return problem_; }
    UMockdevTestbed* get() const { return bed_; }

    std::string add(const std::string& description) const {
        GError* error = nullptr;
        umockdev_testbed_add_from_string(bed_, description.c_str(), &error);
        return messageOf(error);
    }

private:
    Testbed() {
        if (umockdev_in_mock_environment() == 0) {
            problem_ = "not started by umockdev-wrapper";
        } else {
            problem_ = add(hubDescription());
        }
    }

    UMockdevTestbed* bed_ = umockdev_testbed_new();
    std::string problem_;
};

using SharedDevice = std::shared_ptr<UsbfsDevice>;

gboolean onIoctl(UMockdevIoctlBase*, UMockdevIoctlClient* file, gpointer device) {
    (*static_cast<SharedDevice*>(device))->ioctl(file);
    return TRUE;
}

void onClosed(gpointer device, GObject* file) {
    const std::unique_ptr<SharedDevice> owned(static_cast<SharedDevice*>(device));
    (*owned)->closed(reinterpret_cast<UMockdevIoctlClient*>(file));
}

/// The signal "client-vanished" does not come with every version: watch the object instead.
void onOpened(UMockdevIoctlBase*, UMockdevIoctlClient* file, gpointer device) {
    g_object_weak_ref(reinterpret_cast<GObject*>(file), onClosed,
                      new SharedDevice(*static_cast<SharedDevice*>(device)));
}

void dropDevice(gpointer device, GClosure*) { delete static_cast<SharedDevice*>(device); }

/// The handler owns a share of the device: a call of umockdev's thread may outlast the test's.
void connect(UMockdevIoctlBase* ioctls, const char* signal, GCallback handler,
             const SharedDevice& device) {
    g_signal_connect_data(ioctls, signal, handler, new SharedDevice(device), dropDevice,
                          GConnectFlags{});
}

/// As Linux does, the bus goes through all addresses before it gives one out again.
int nextAddress() {
    constexpr int First = 2;
    constexpr int Last = 127;
    static int last = First - 1;
    last = last == Last ? First : last + 1;
    return last;
}

void announce(const UsbPlace& place, const char* event) {
    const std::string path = "/sys" + place.systemPath();
    umockdev_testbed_uevent(Testbed::instance().get(), path.c_str(), event);
}

}  // namespace

void MockedUsbfs::ObjectUnref::operator()(void* object) const { g_object_unref(object); }

const std::string& MockedUsbfs::unavailable() { return Testbed::instance().problem(); }

MockedUsbfs::MockedUsbfs(UsbfsOptions options)
    : place_{nextAddress()},
      device_(std::make_shared<UsbfsDevice>(std::move(options))),
      ioctls_(umockdev_ioctl_base_new()) {
    connect(ioctls_.get(), "handle-ioctl", G_CALLBACK(onIoctl), device_);
    connect(ioctls_.get(), "client-connected", G_CALLBACK(onOpened), device_);

    const Testbed& testbed = Testbed::instance();
    std::string problem = testbed.add(controllerDescription(place_));
    if (problem.empty()) {
        GError* error = nullptr;
        umockdev_testbed_attach_ioctl(testbed.get(), place_.node().c_str(), ioctls_.get(), &error);
        problem = messageOf(error);
    }
    if (!problem.empty()) {
        throw std::runtime_error("mocked usbfs: " + problem);
    }
    plugged_ = true;
    announce(place_, "add");
}

void MockedUsbfs::forbid() const {
    namespace fs = std::filesystem;
    char* const folder = umockdev_testbed_get_root_dir(Testbed::instance().get());
    const fs::path root = folder;
    g_free(folder);
    // The wrapper ends a program that it cannot connect to the ioctls' socket, even if the device
    // is not opened: the way there is open, the device's own file is not.
    constexpr auto Everybody = fs::perms::all;
    fs::permissions(root, Everybody);
    for (const auto& entry : fs::recursive_directory_iterator(root / "ioctl")) {
        fs::permissions(entry.path(), Everybody);
    }
    fs::permissions(root / "ioctl", Everybody);
    fs::permissions(root.string() + place_.node(), fs::perms::none);
}

void MockedUsbfs::unplug() {
    if (!std::exchange(plugged_, false)) {
        return;
    }
    device_->pullOut();
    announce(place_, "remove");
    UMockdevTestbed* const bed = Testbed::instance().get();
    umockdev_testbed_detach_ioctl(bed, place_.node().c_str(), nullptr);
    umockdev_testbed_remove_device(bed, ("/sys" + place_.systemPath()).c_str());
}

}  // namespace support
