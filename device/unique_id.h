#ifndef LUMADOT_DEVICE_UNIQUE_ID_H
#define LUMADOT_DEVICE_UNIQUE_ID_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

/// The controller's unique id: what it answers to Command::ReadUniqueId.
namespace unique_id {

/// Length of the read that fetches the reply, in bytes.
inline constexpr std::size_t ReplyLength = 63;

/// The id with its terminating zero.
inline constexpr std::size_t TextSize = ReplyLength + 1;

/// The id in a reply, given by the bytes that arrived: what comes before the first zero byte.
inline std::string_view text(std::span<const std::uint8_t> reply) {
    const auto end = std::ranges::find(reply, std::uint8_t{0});
    return {reinterpret_cast<const char*>(reply.data()),
            static_cast<std::size_t>(end - reply.begin())};
}

/// Takes over what a reply tells of which `received` bytes arrived: `uid` (TextSize characters)
/// then holds the id and zeros. A count that cannot be is taken for the nearest that can.
inline void applyReply(std::span<const std::uint8_t, ReplyLength> reply, int received, char* uid) {
    const auto length = std::clamp(received, 0, static_cast<int>(reply.size()));
    const auto id = text(reply.first(static_cast<std::size_t>(length)));
    std::fill(std::ranges::copy(id, uid).out, uid + TextSize, '\0');
}

/// Boards whose id starts with one of these letters drive the 192 x 64 display.
constexpr bool isLargeBoard(char first) {
    return std::string_view("XSG").find(first) != std::string_view::npos;
}

}  // namespace unique_id

#endif
