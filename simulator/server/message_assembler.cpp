#include "simulator/server/message_assembler.h"

#include <algorithm>
#include <array>
#include <utility>

#include "simulator/server/descriptors.h"

namespace simulator {

namespace {

struct Kind {
    std::array<std::uint8_t, 3> start;
    std::size_t size;
};
constexpr Kind Kinds[] = {{{0x81, 0xC3, 0xE7}, 2052}, {{0x02, 0xC3, 0xE8}, 64}};

/// No board has more memory for a message that it does not know; the rest of it is lost.
constexpr std::size_t LongestMessage = 65536;

bool starts(const Kind& kind, std::span<const std::uint8_t> bytes) {
    return bytes.size() >= kind.start.size() &&
           std::equal(kind.start.begin(), kind.start.end(), bytes.begin());
}

/// The kind that the bytes begin, as far as they go; null: none.
const Kind* kindOf(std::span<const std::uint8_t> bytes) {
    for (const Kind& kind : Kinds) {
        const auto first = bytes.first(std::min(bytes.size(), kind.start.size()));
        if (!first.empty() && std::equal(first.begin(), first.end(), kind.start.begin())) {
            return &kind;
        }
    }
    return nullptr;
}

}  // namespace

std::vector<MessageAssembler::Bytes> MessageAssembler::take(std::span<const std::uint8_t> packet) {
    std::vector<Bytes> ended;
    const auto isStart = [packet](const Kind& kind) { return starts(kind, packet); };
    if (afterShort_ && std::ranges::any_of(Kinds, isStart)) {
        ended.push_back(std::exchange(bytes_, {}));
    }
    const std::size_t room = LongestMessage - bytes_.size();
    const auto kept = packet.first(std::min(packet.size(), room));
    bytes_.insert(bytes_.end(), kept.begin(), kept.end());

    const bool isShort = packet.size() < descriptors::BulkPacketSize;
    const Kind* const kind = kindOf(bytes_);
    const bool ends = kind != nullptr ? bytes_.size() >= kind->size : isShort;
    if (ends) {
        ended.push_back(std::exchange(bytes_, {}));
    }
    afterShort_ = !ends && isShort;
    return ended;
}

void MessageAssembler::reset() {
    bytes_.clear();
    afterShort_ = false;
}

}  // namespace simulator
