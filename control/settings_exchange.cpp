#include "control/settings_exchange.h"

#include <algorithm>
#include <array>
#include <span>

#include "control/failure.h"
#include "device/unique_id.h"

namespace control {

namespace {

Failure tooShort(std::size_t received, std::size_t wanted) {
    return {ExitCode::NoAnswer,
            "The controller's settings reply is too short: " + std::to_string(received) + " of " +
                std::to_string(wanted) + " bytes.",
            "Unplug the controller, plug it in again and try once more."};
}

configDescriptor blankRecord() {
    constexpr std::array<std::uint8_t, settings::RecordSize> Zeros{};
    return settings::fromBytes(Zeros);
}

}  // namespace

Settings readSettings(Channel& channel) {
    // Bytes that a reply has to hold: the record's in the newer layout, the four settings of the
    // older one.
    constexpr std::size_t Newer = 33;
    constexpr std::size_t Older = 4;
    channel.send(CommandFrame(Command::ReadSettings));
    settings::Reply reply{};
    const std::size_t received = channel.receive(std::span(reply).first<settings::ReplyLength>());

    Settings read{.record = blankRecord(), .firmware = {}};
    std::array<char, settings::VersionLength + 1> version{};
    settings::applyReply(reply, read.record, version.data());
    read.firmware = version.data();
    read.isWhole = !read.firmware.empty();
    if (const std::size_t wanted = read.isWhole ? Newer : Older; received < wanted) {
        throw tooShort(received, wanted);
    }
    return read;
}

Settings readWholeSettings(Channel& channel, const std::string& purpose) {
    Settings read = readSettings(channel);
    if (!read.isWhole) {
        throw Failure(ExitCode::Failed,
                      "This controller's firmware does not tell bytes 2 to 20 of its settings, "
                      "without which they cannot be " +
                          purpose + ".",
                      "Update the controller's firmware.");
    }
    return read;
}

std::string readUniqueId(Channel& channel) {
    channel.send(CommandFrame(Command::ReadUniqueId));
    std::array<std::uint8_t, unique_id::ReplyLength> reply{};
    const std::size_t received = channel.receive(reply);
    return std::string(unique_id::text(std::span(reply).first(received)));
}

}  // namespace control
