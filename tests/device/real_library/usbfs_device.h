#ifndef LUMADOT_TESTS_DEVICE_REAL_LIBRARY_USBFS_DEVICE_H
#define LUMADOT_TESTS_DEVICE_REAL_LIBRARY_USBFS_DEVICE_H

#include <linux/usbdevice_fs.h>
#include <umockdev.h>

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <list>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "simulator/controller.h"
#include "tests/device/real_library/urb.h"

namespace support {

/// One bulk request that has ended, in the order of ending. The library may cut one transfer into
/// several requests.
struct BulkTransfer {
    std::uint8_t endpoint;
    std::size_t length;       ///< bytes offered (OUT) or asked for (IN)
    simulator::Packet bytes;  ///< what went over the bus
    int status;               ///< 0, or a negative errno: -ENOENT cancelled, -ESHUTDOWN unplugged,
                              ///< -EOVERFLOW more came than there was room for
    std::chrono::steady_clock::time_point submitted;
    std::chrono::steady_clock::time_point ended;
};

/// What is wrong with the device or its bus, from now on. Nothing, by default.
struct UsbfsFaults {
    bool holdReplies = false;                    ///< no reply leaves the controller
    bool acceptNothing = false;                  ///< no OUT transfer gets through
    bool stallStrings = false;                   ///< string descriptors are refused
    int claimError = 0;                          ///< errno of every claim
    std::string driver = {};                     ///< of the system, which holds the interface
    std::optional<std::size_t> replyLimit = {};  ///< replies are cut to this many bytes
    int pullOutAt = 0;  ///< the nth bulk request from now (1 = the next) finds the device gone
};

/// What the device is made with.
struct UsbfsOptions {
    std::string product = "LUMADOT";
    simulator::ControllerOptions board = {};
    /// What this usbfs says it can do. Without scatter-gather, and with bulk continuation, the
    /// library cuts its transfers into requests of 16 KiB.
    std::uint32_t capabilities = USBDEVFS_CAP_ZERO_PACKET | USBDEVFS_CAP_NO_PACKET_SIZE_LIM |
                                 USBDEVFS_CAP_BULK_CONTINUATION | USBDEVFS_CAP_BULK_SCATTER_GATHER |
                                 USBDEVFS_CAP_REAP_AFTER_DISCONNECT;
};

/// A simulated controller behind a device node of usbfs: answers the ioctls as Linux does. Two
/// differences: a transfer on an interface that the client has not claimed is refused with EPERM,
/// where Linux claims it silently; and requests are reaped without waiting only.
///
/// umockdev's thread brings the ioctls in, the test's own thread does the rest.
class UsbfsDevice {
public:
    explicit UsbfsDevice(UsbfsOptions options);

    // From the test's thread.

    void setFaults(const UsbfsFaults& faults);

    /// All bulk requests that have ended.
    std::vector<BulkTransfer> transfers() const;
    /// The bytes of those that went out and arrived.
    std::vector<simulator::Packet> received() const;

    /// What `look` returns for the board, by value; no ioctl is handled meanwhile.
    template <typename Look>
    auto board(Look look) {
        const std::lock_guard lock(mutex_);
        return look(board_);
    }

    /// Pulls the device out: what is under way ends with -ESHUTDOWN, everything else with ENODEV.
    void pullOut();

    // From umockdev's thread.

    /// Handles and completes one ioctl. `file` stands for an open file.
    void ioctl(UMockdevIoctlClient* file);
    /// The file is closed: its claim and its requests go with it.
    void closed(UMockdevIoctlClient* file);

private:
    struct OpenFile {
        std::list<Urb> waiting;
        std::deque<Urb> done;
    };
    struct Answer {
        simulator::Packet bytes;
        int status;
    };

    // All of these are called with the lock held, and return 0 or an errno.
    int perform(std::unique_lock<std::mutex>& lock, UMockdevIoctlClient* client);
    int reportCapabilities(UMockdevIoctlData* argument) const;
    int claim(UMockdevIoctlClient* client, UMockdevIoctlData* argument);
    int releaseClaim(UMockdevIoctlClient* client);
    int reportDriver(UMockdevIoctlData* argument) const;
    int submit(UMockdevIoctlClient* client, UMockdevIoctlData* argument);
    int discard(OpenFile& file, unsigned long clientAddress);
    int reap(std::unique_lock<std::mutex>& lock, OpenFile& file, UMockdevIoctlData* argument);

    void answerControl(Urb& urb) const;
    void progress(OpenFile& file);
    bool tryTransfer(Urb& urb);
    std::optional<Answer> answerIn(std::size_t room);
    void disappear();
    void endWaiting(OpenFile& file, int status);
    void end(Urb& urb, int status, simulator::Packet bytes);

    const UsbfsOptions options_;
    mutable std::mutex mutex_;
    std::condition_variable changed_;
    simulator::Controller board_;
    UsbfsFaults faults_;
    bool gone_ = false;
    std::map<UMockdevIoctlClient*, OpenFile> files_;
    UMockdevIoctlClient* holder_ = nullptr;     // Who has claimed interface 0.
    std::optional<simulator::Packet> leaving_;  // The rest of a reply that has begun to leave.
    std::vector<BulkTransfer> transfers_;
};

}  // namespace support

#endif
