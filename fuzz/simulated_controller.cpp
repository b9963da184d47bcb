// The simulated controller survives any packets: the input is cut into packets by length prefixes.

#include <algorithm>
#include <cstdint>
#include <memory>
#include <span>

#include "fuzz/expect.h"
#include "simulator/controller.h"

namespace {

/// Most packets shall get past the length check: a prefix of 255 stands for a whole command frame.
constexpr std::size_t FrameSize = 2052;

simulator::Packet nextPacket(std::span<const std::uint8_t>& input) {
    const std::size_t length = input[0] == 255 ? FrameSize : input[0];
    input = input.subspan(1);
    const std::size_t held = std::min(length, input.size());
    simulator::Packet packet(input.begin(), input.begin() + static_cast<std::ptrdiff_t>(held));
    packet.resize(length);
    input = input.subspan(held);
    return packet;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::span<const std::uint8_t> input(data, size);
    if (input.empty()) {
        return 0;
    }
    simulator::ControllerOptions options;
    options.board = (input[0] & 1U) != 0 ? simulator::Board::Xl : simulator::Board::Standard;
    options.layout =
        (input[0] & 2U) != 0 ? simulator::SettingsLayout::Older : simulator::SettingsLayout::Newer;
    auto now = std::make_shared<std::uint64_t>(0);
    options.clock = [now] { return *now; };
    simulator::Controller controller(options);
    input = input.subspan(1);
    while (!input.empty()) {
        controller.receive(nextPacket(input));
        *now += 400;
        const auto reply = controller.takeReply();
        EXPECT(!reply || reply->size() <= 255 * 512 + 5);
    }
    return 0;
}
