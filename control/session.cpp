#include "control/session.h"

#include <nlohmann/json.hpp>

#include "control/device_text.h"
#include "control/link.h"
#include "device/upload.h"

namespace control {

namespace {

/// Shows what would be sent.
class DryRun : public Channel {
public:
    DryRun(unsigned int timeout, Output& output) : Channel(timeout), output_(output) {
        output_.startDryRun();
    }
    const DeviceInfo* device() const override { return nullptr; }

private:
    void doSend(std::span<const std::uint8_t> bytes, unsigned int timeout) override {
        output_.dryFrame(bytes, timeout);
    }
    std::size_t doReceive(std::span<std::uint8_t> bytes, unsigned int /*timeout*/) override {
        if (bytes.size() != upload::AnswerLength) {
            throw ReplyNeeded();
        }
        bytes[0] = 0;  // An upload's frames are taken as accepted.
        return upload::AnswerLength;
    }

    Output& output_;
};

}  // namespace

std::unique_ptr<Channel> Session::connect(const std::string& device) {
    if (options_.dryRun) {
        return std::make_unique<DryRun>(options_.timeout, output_);
    }
    std::unique_ptr<Channel> link = Link::open(device, options_.timeout, output_);
    if (options_.json) {
        document()["device"] = deviceJson(*link->device());
    }
    return link;
}

void Session::done(const std::string& message) {
    if (!options_.dryRun) {
        output_.message(message);
    }
}

void Session::pause(Milliseconds time) const {
    if (!options_.dryRun) {
        control::pause(time);
    }
}

}  // namespace control
