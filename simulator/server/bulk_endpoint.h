#ifndef LUMADOT_SIMULATOR_SERVER_BULK_ENDPOINT_H
#define LUMADOT_SIMULATOR_SERVER_BULK_ENDPOINT_H

#include <deque>
#include <functional>
#include <optional>

#include "simulator/controller.h"
#include "simulator/server/control_endpoint.h"
#include "simulator/server/message_assembler.h"
#include "simulator/server/messages.h"
#include "simulator/server/transfer.h"

namespace simulator {

/// What the two bulk endpoints share with the device that they belong to.
struct BulkContext {
    Controller* controller = nullptr;
    ControlEndpoint* control = nullptr;
    FaultList* faults = nullptr;
    std::function<void(usbip::SubmitReply)> complete = {};  ///< an URB is over
    std::function<void(Transfer)> report = {};              ///< a transfer is over
    std::function<void()> messageTaken = {};                ///< the board has got a message
    std::function<void()> unplug = {};                      ///< a fault pulls the device out
    std::function<std::uint64_t()> clock = {};              ///< ms
    std::uint64_t slowness = 0;                             ///< ms that each URB takes more
};

/// A bulk endpoint: its URBs wait in a queue, and the first of them moves bytes when the board lets
/// it. Several URBs may make up one transfer, and one URB may carry several.
class BulkEndpoint {
public:
    BulkEndpoint(std::uint8_t address, BulkContext& context)
        : address_(address), context_(context) {}
    virtual ~BulkEndpoint() = default;
    BulkEndpoint(const BulkEndpoint&) = delete;
    BulkEndpoint& operator=(const BulkEndpoint&) = delete;

    void submit(usbip::Submit urb);
    /// False: no such URB waits here.
    bool unlink(std::uint32_t sequence);

    /// Completes what can be completed now.
    void advance();
    /// How long, in ms, until time alone lets the first URB go on; nothing: never.
    std::optional<std::uint64_t> nextChange() const;

    /// Drops the URBs without an answer, and the transfer that is under way.
    void abandon(const char* why);
    /// Ends the transfer that is under way; URBs that wait begin another.
    virtual void reset();

    std::size_t waiting() const { return queue_.size(); }
    std::size_t waitingBytes() const;

protected:
    /// The URB in front moves its bytes; false: it has to wait.
    virtual bool move(usbip::Submit& urb) = 0;
    /// ms until the board itself is ready for the URB in front; nothing: time alone does not help.
    virtual std::optional<std::uint64_t> boardDelay() const;
    /// The transfer under way moved these bytes, or will never move more.
    void endTransfer(std::vector<std::uint8_t> data, const char* error = "");
    virtual std::vector<std::uint8_t> moved() const = 0;

    void finish(std::int32_t status, std::uint32_t length = 0, usbip::Bytes data = {});
    /// The fault of the transfer under way, if it has one of this kind.
    bool suffers(TransferFault::What what) const { return fault_ && fault_->what == what; }
    std::size_t faultBytes() const { return fault_->bytes; }
    BulkContext& context() const { return context_; }

private:
    bool step();
    void fail(std::int32_t status, const char* error);
    std::uint64_t slowDelay() const;

    std::uint8_t address_;
    BulkContext& context_;
    std::deque<usbip::Submit> queue_;
    std::uint64_t inFrontSince_ = 0;
    bool underWay_ = false;  // A transfer has begun, and its fault has been taken.
    std::optional<TransferFault> fault_;
};

/// Endpoint 0x01: packets for the board. They wait while it restarts.
class OutEndpoint final : public BulkEndpoint {
public:
    using BulkEndpoint::BulkEndpoint;
    void reset() override;

private:
    bool move(usbip::Submit& urb) override;
    void take(std::span<const std::uint8_t> packet);
    std::vector<std::uint8_t> moved() const override { return assembler_.collected(); }

    MessageAssembler assembler_;
};

/// Endpoint 0x81: the board's replies, in full packets and a last one that is short or empty.
class InEndpoint final : public BulkEndpoint {
public:
    using BulkEndpoint::BulkEndpoint;
    void reset() override;
    /// The board has a newer reply, or none any more: what is left of the last one is dropped.
    void dropRest();

private:
    bool move(usbip::Submit& urb) override;
    std::optional<std::uint64_t> boardDelay() const override;
    std::vector<std::uint8_t> moved() const override;
    bool fetchReply();

    /// What one URB takes of the reply.
    struct Arrival {
        usbip::Bytes data = {};
        bool overflow = false;  ///< its last packet did not fit
        bool last = false;      ///< nothing of the reply is left
    };
    Arrival takePackets(std::size_t length);

    std::optional<Packet> reply_;
    std::size_t sent_ = 0;
};

}  // namespace simulator

#endif
