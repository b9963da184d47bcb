#include "device/capture.h"

namespace dump {

Capture::Capture(const InputModeInfo& mode, bool xl, std::int64_t start)
    : start_(start),
      rawPlanes_(mode.capturePlanes),
      request_(dump::request(xl ? XlPlanes : mode.capturePlanes)),
      reply_(xl ? replyLength(XlPlanes, XlDisplay)
                : replyLength(mode.capturePlanes, StandardDisplay)),
      text_(xl ? XlDots : mode.dots, xl ? XlDisplay : StandardDisplay) {}

bool Capture::append(const Files& files) {
    const auto stamp = static_cast<std::uint32_t>(start_ + timeStamp(reply_));
    const auto planes = std::span<const std::uint8_t>(reply_).subspan(PlanesOffset);
    const bool raw = !files.hasRaw() || files.appendRaw(rawBlock(stamp, rawPlanes_, planes));
    return files.appendText(text_.encode(stamp, planes)) && raw;
}

}  // namespace dump
