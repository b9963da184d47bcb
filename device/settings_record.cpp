#include "device/settings_record.h"

#include <cstring>

configDescriptor::configDescriptor() = default;

namespace settings {

namespace {

// Offsets in a settings reply.
constexpr std::size_t LayoutMark = 4;
constexpr std::size_t VersionText = 4;
constexpr std::size_t Record = 10;

constexpr std::uint8_t NewerLayout = 'V';

}  // namespace

std::array<std::uint8_t, RecordSize> bytesOf(const configDescriptor& record) {
    std::array<std::uint8_t, RecordSize> bytes{};
    std::memcpy(bytes.data(), &record, RecordSize);
    return bytes;
}

configDescriptor fromBytes(std::span<const std::uint8_t, RecordSize> bytes) {
    configDescriptor record;
    std::memcpy(&record, bytes.data(), RecordSize);
    return record;
}

std::optional<configDescriptor> fromFile(std::span<const std::uint8_t> head) {
    if (head.size() != RecordSize) {
        return std::nullopt;
    }
    return fromBytes(head.first<RecordSize>());
}

void applyReply(const Reply& reply, configDescriptor& record, char* version) {
    if (reply[LayoutMark] == NewerLayout) {
        std::memcpy(version, &reply[VersionText], VersionLength);
        record = fromBytes(std::span(reply).subspan<Record, RecordSize>());
    } else {
        record.inputMode = reply[0];
        record.brightness = reply[1];
        record.enhancer = reply[2];
        record.paletteIndex = reply[3];
    }
}

}  // namespace settings
