#include "simulator/server/bulk_endpoint.h"

#include <algorithm>
#include <functional>
#include <numeric>
#include <utility>

#include "simulator/server/descriptors.h"

namespace simulator {

using usbip::Submit;
using What = TransferFault::What;

void BulkEndpoint::submit(Submit urb) {
    if (queue_.empty()) {
        inFrontSince_ = context_.clock();
    }
    queue_.push_back(std::move(urb));
    advance();
}

bool BulkEndpoint::unlink(std::uint32_t sequence) {
    const auto urb = std::ranges::find(queue_, sequence, &Submit::sequence);
    if (urb == queue_.end()) {
        return false;
    }
    const bool inFront = urb == queue_.begin();
    queue_.erase(urb);
    if (inFront) {
        endTransfer(moved(), "unlinked");
        reset();
        inFrontSince_ = context_.clock();
        advance();
    }
    return true;
}

void BulkEndpoint::advance() {
    while (!queue_.empty() && step()) {
    }
}

/// Lets the URB in front go on; false: it has to wait, or there is none left.
bool BulkEndpoint::step() {
    if (!context_.control->configured()) {
        fail(usbip::result::NoAnswer, "not configured");
        return true;
    }
    if (context_.control->halted(address_)) {
        fail(usbip::result::Stall, "stall");
        return true;
    }
    if (slowDelay() > 0) {
        return false;
    }
    if (!std::exchange(underWay_, true)) {
        fault_ = context_.faults->begin(address_);
    }
    if (suffers(What::Stall)) {
        context_.control->halt(address_);
        return true;
    }
    if (suffers(What::Unplug)) {
        context_.unplug();
        return false;
    }
    return !suffers(What::Timeout) && move(queue_.front());
}

void BulkEndpoint::fail(std::int32_t status, const char* error) {
    endTransfer(moved(), error);
    reset();
    finish(status);
}

void BulkEndpoint::finish(std::int32_t status, std::uint32_t length, usbip::Bytes data) {
    const std::uint32_t sequence = queue_.front().sequence;
    queue_.pop_front();
    inFrontSince_ = context_.clock();
    context_.complete({sequence, status, length, std::move(data)});
}

void BulkEndpoint::endTransfer(std::vector<std::uint8_t> data, const char* error) {
    underWay_ = false;
    fault_.reset();
    context_.report({address_, std::move(data), error});
}

void BulkEndpoint::reset() {
    underWay_ = false;
    fault_.reset();
}

void BulkEndpoint::abandon(const char* why) {
    if (!queue_.empty() || !moved().empty()) {
        endTransfer(moved(), why);
    }
    queue_.clear();
    reset();
}

std::size_t BulkEndpoint::waitingBytes() const {
    return std::transform_reduce(queue_.begin(), queue_.end(), std::size_t{0}, std::plus(),
                                 [](const Submit& urb) { return urb.data.size(); });
}

std::uint64_t BulkEndpoint::slowDelay() const {
    const std::uint64_t passed = context_.clock() - inFrontSince_;
    return context_.slowness > passed ? context_.slowness - passed : 0;
}

std::optional<std::uint64_t> BulkEndpoint::nextChange() const {
    if (queue_.empty() || suffers(What::Timeout)) {
        return std::nullopt;
    }
    if (const std::uint64_t delay = slowDelay(); delay > 0) {
        return delay;
    }
    return boardDelay();
}

std::optional<std::uint64_t> BulkEndpoint::boardDelay() const {
    const std::uint64_t delay = context_.controller->restartDelay();
    return delay > 0 ? std::optional(delay) : std::nullopt;
}

bool OutEndpoint::move(Submit& urb) {
    if (context().controller->restarting()) {
        return false;
    }
    if (suffers(What::Short)) {
        // The board takes that much and no more, and cannot make anything of it.
        const std::size_t taken = std::min(faultBytes(), urb.data.size());
        urb.data.resize(taken);
        context().controller->receive(urb.data);
        endTransfer(std::move(urb.data));
        assembler_.reset();
        finish(usbip::result::Done, static_cast<std::uint32_t>(taken));
        return true;
    }
    const Submit taken = std::move(urb);
    std::span<const std::uint8_t> rest = taken.data;
    while (!rest.empty()) {
        const auto packet = rest.first(std::min(rest.size(), descriptors::BulkPacketSize));
        take(packet);
        rest = rest.subspan(packet.size());
    }
    const bool endsEmpty = (taken.flags & usbip::flag::ZeroPacket) != 0 &&
                           taken.length % descriptors::BulkPacketSize == 0;
    if (taken.length == 0 || endsEmpty) {
        take({});
    }
    finish(usbip::result::Done, taken.length);
    return true;
}

void OutEndpoint::take(std::span<const std::uint8_t> packet) {
    for (auto& message : assembler_.take(packet)) {
        context().controller->receive(message);
        endTransfer(std::move(message));
        context().messageTaken();
    }
}

void OutEndpoint::reset() {
    BulkEndpoint::reset();
    assembler_.reset();
}

bool InEndpoint::move(Submit& urb) {
    if (!reply_ && !fetchReply()) {
        return false;
    }
    Arrival arrival = takePackets(urb.length);
    std::int32_t status = arrival.overflow ? usbip::result::Overflow : usbip::result::Done;
    const bool shortIsError = (urb.flags & usbip::flag::ShortIsError) != 0;
    if (shortIsError && !arrival.overflow && arrival.data.size() < urb.length) {
        status = usbip::result::ShortPacket;
    }
    if (arrival.last) {
        endTransfer(moved(), arrival.overflow ? "overflow" : "");
        reset();
    }
    const auto length = static_cast<std::uint32_t>(arrival.data.size());
    finish(status, length, std::move(arrival.data));
    return true;
}

/// One packet at least, until the buffer is full or the reply has ended.
InEndpoint::Arrival InEndpoint::takePackets(std::size_t length) {
    Arrival arrival;
    do {
        const std::size_t packet = std::min(reply_->size() - sent_, descriptors::BulkPacketSize);
        const std::size_t fits = std::min(packet, length - arrival.data.size());
        const auto from = reply_->begin() + static_cast<std::ptrdiff_t>(sent_);
        arrival.data.insert(arrival.data.end(), from, from + static_cast<std::ptrdiff_t>(fits));
        sent_ += fits;
        arrival.overflow = fits < packet;
        arrival.last = arrival.overflow || packet < descriptors::BulkPacketSize;
    } while (!arrival.last && arrival.data.size() < length);
    return arrival;
}

/// False: the board has no reply that is ready.
bool InEndpoint::fetchReply() {
    Controller& controller = *context().controller;
    if (controller.restarting() || !controller.hasReply() || controller.replyDelay() > 0) {
        return false;
    }
    reply_ = controller.takeReply();
    if (suffers(What::Short)) {
        reply_->resize(std::min(reply_->size(), faultBytes()));
    }
    sent_ = 0;
    return true;
}

std::optional<std::uint64_t> InEndpoint::boardDelay() const {
    if (context().controller->restarting()) {
        return BulkEndpoint::boardDelay();
    }
    const std::uint64_t delay = context().controller->replyDelay();
    return delay > 0 ? std::optional(delay) : std::nullopt;
}

std::vector<std::uint8_t> InEndpoint::moved() const {
    if (!reply_) {
        return {};
    }
    return {reply_->begin(), reply_->begin() + static_cast<std::ptrdiff_t>(sent_)};
}

void InEndpoint::dropRest() {
    if (reply_) {
        endTransfer(moved(), "replaced");
        reset();
    }
}

void InEndpoint::reset() {
    BulkEndpoint::reset();
    reply_.reset();
    sent_ = 0;
}

}  // namespace simulator
