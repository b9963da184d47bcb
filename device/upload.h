#ifndef LUMADOT_DEVICE_UPLOAD_H
#define LUMADOT_DEVICE_UPLOAD_H

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <string_view>

#include "device/frames.h"

/// File upload: every frame of it is answered with one byte.
namespace upload {

/// Length of the read that fetches an answer, in bytes, and the buffer for it.
inline constexpr std::size_t AnswerLength = 1;
using Answer = std::array<std::uint8_t, 64>;

/// Whether the controller takes what it has answered with this byte: only 01 refuses.
constexpr bool accepts(std::uint8_t answer) { return answer != 0x01; }

/// The largest file that is taken, in bytes.
inline constexpr auto MaxSize = std::numeric_limits<std::int32_t>::max();

/// What came of an upload; the refused phases include those that were not answered.
enum class Outcome : std::uint8_t { Done, OpenRefused, DataRefused, CloseRefused };

/// Sends a file: the open frame, a data frame for every 512 bytes, one for the rest even if there
/// is none, the close frame. `exchange(frame)` sends the frame, reads its answer and returns
/// whether that accepts; the first that does not ends the upload. `frame`, an upload frame, is
/// filled anew for each of them.
template <class Exchange>
Outcome transfer(std::string_view name, std::span<const std::uint8_t> content, CommandFrame& frame,
                 Exchange exchange) {
    frames::uploadOpen(frame, name);
    if (!exchange(frame)) {
        return Outcome::OpenRefused;
    }
    for (std::size_t sent = 0; sent <= content.size(); sent += frames::UploadBlockSize) {
        frames::uploadData(
            frame, content.subspan(sent, std::min(frames::UploadBlockSize, content.size() - sent)));
        if (!exchange(frame)) {
            return Outcome::DataRefused;
        }
    }
    frames::uploadClose(frame);
    return exchange(frame) ? Outcome::Done : Outcome::CloseRefused;
}

}  // namespace upload

#endif
