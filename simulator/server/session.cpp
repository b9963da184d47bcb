#include "simulator/server/session.h"

#include <utility>
#include <variant>

namespace simulator {

Session::~Session() {
    if (hold_) {
        device_.detach(*hold_);
    }
}

void Session::receive(std::span<const std::uint8_t> bytes) {
    update();
    if (over_) {
        return;
    }
    reader_.feed(bytes);
    while (auto request = reader_.next()) {
        std::visit([this](auto& each) { handle(each); }, *request);
        if (over_) {
            return;
        }
    }
    if (!reader_.problem().empty()) {
        end(reader_.problem());
    }
}

void Session::update() {
    if (over_ || !hold_) {
        return;
    }
    device_.advance();
    collect();
}

/// A list is all that a connection is good for; so is an import that is refused.
void Session::handle(const usbip::ListRequest&) {
    const auto listed = device_.listed();
    send(usbip::encodeList({listed ? &*listed : nullptr, listed ? 1U : 0U}));
    end("");
}

void Session::handle(const usbip::ImportRequest& request) {
    const auto listed = device_.listed();
    if (!listed || listed->device.busId != request.busId) {
        send(usbip::encodeImportReply(usbip::Status::NoDevice, {}));
        return end("import of a device that is not there: " + request.busId);
    }
    hold_ = device_.attach();
    if (!hold_) {
        send(usbip::encodeImportReply(usbip::Status::Busy, {}));
        return end("import of the device that another client has");
    }
    reader_.expectUrbs(listed->device.id());
    send(usbip::encodeImportReply(usbip::Status::Ok, listed->device));
}

void Session::handle(usbip::Submit& request) {
    if (device_.waiting() >= MostWaiting ||
        device_.waitingBytes() + request.data.size() > MostWaitingBytes) {
        return end("too much waits already");
    }
    device_.submit(std::move(request));
    collect();
}

void Session::handle(const usbip::Unlink& request) {
    const bool waited = device_.unlink(request.target);
    collect();
    const auto status = waited ? usbip::result::Unlinked : usbip::result::Done;
    send(usbip::encode(usbip::UnlinkReply{request.sequence, status}));
}

void Session::collect() {
    if (!device_.holds(*hold_)) {
        return end("unplugged");
    }
    for (const usbip::SubmitReply& reply : device_.takeCompleted()) {
        send(usbip::encode(reply));
    }
}

void Session::send(const usbip::Bytes& bytes) {
    if (!over_) {
        output_.insert(output_.end(), bytes.begin(), bytes.end());
    }
}

void Session::end(std::string problem) {
    over_ = true;
    problem_ = std::move(problem);
    if (hold_) {
        device_.detach(*std::exchange(hold_, std::nullopt));
    }
}

usbip::Bytes Session::takeOutput() { return std::exchange(output_, {}); }

}  // namespace simulator
