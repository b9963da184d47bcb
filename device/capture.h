#ifndef LUMADOT_DEVICE_CAPTURE_H
#define LUMADOT_DEVICE_CAPTURE_H

#include <cstdint>
#include <span>
#include <vector>

#include "device/dump_files.h"
#include "device/dump_format.h"
#include "device/input_mode.h"

namespace dump {

/// One capture: what the controller is asked for, and what becomes of its replies.
class Capture {
public:
    /// `xl`: the controller is the XL one. `start`: local time in ms; a frame's time stamp is this
    /// plus the controller's own.
    Capture(const InputModeInfo& mode, bool xl, std::int64_t start);

    const Request& request() const { return request_; }

    /// Where a reply is read into. Zeroed once: what does not arrive stays from the last frame.
    std::span<std::uint8_t> reply() { return reply_; }

    /// Appends the frame in `reply()` to the files. False: not everything could be written.
    bool append(const Files& files);

private:
    std::int64_t start_;
    std::uint8_t rawPlanes_;
    Request request_;
    std::vector<std::uint8_t> reply_;
    TextEncoder text_;
};

}  // namespace dump

#endif
