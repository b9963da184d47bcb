#ifndef LUMADOT_RECORDING_RAW_FORMAT_H
#define LUMADOT_RECORDING_RAW_FORMAT_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "device/dump_format.h"
#include "recording/format.h"

namespace recording {

/// A raw dump. Nothing in it says where a frame starts, so that a frame that was cut short (by a
/// full disk, say) shifts all behind it. Where the time stamps make a leap, and the file does not
/// end with a whole frame, the frames' true starts are looked for.
class RawFormat : public Format {
public:
    /// More planes than any mode has; such a file is something else.
    static constexpr std::uint8_t MaxPlanes = 12;

    /// Whether bytes start with a raw dump's header.
    static bool isHeader(std::span<const std::uint8_t> bytes);

    /// For the frames behind a header with so many planes.
    explicit RawFormat(std::uint8_t planes) { RawFormat::moveTo(planes, true); }

    std::unique_ptr<Format> copy() const override { return std::make_unique<RawFormat>(*this); }
    std::size_t frameBytes() const override { return dump::rawBlockSize(planes_); }
    std::size_t headBytes() const override { return dump::RawStampSize; }
    std::size_t lookahead() const override { return sizeof(dump::RawHeader); }
    std::size_t scan(std::span<const std::uint8_t> bytes, bool atEnd, const std::uint8_t* previous,
                     Summary& summary) const override;
    Piece next(Window& window, std::uint64_t offset, std::uint64_t limit) override;
    /// `lookingForCuts`: whether leaps of the time stamps are looked into.
    void moveTo(std::uint8_t planes, bool lookingForCuts) override;
    std::span<const std::uint8_t> dots() override { return dots_; }

    std::uint8_t planes() const { return planes_; }

private:
    bool leaps(std::span<const std::uint8_t> bytes) const;
    std::size_t findCut(std::span<const std::uint8_t> bytes) const;
    static std::optional<std::uint32_t> stepTo(std::span<const std::uint8_t> bytes, std::size_t at,
                                               std::uint32_t stampBefore);
    Damage cutAt(std::uint64_t offset, std::size_t length) const;
    Piece readRest(std::span<const std::uint8_t> bytes, Piece piece) const;

    std::uint8_t planes_ = 0;
    int leapsLeft_ = 0;  ///< leaps that are looked into: in another kind of file each frame has one
    std::vector<std::uint8_t> dots_;
};

}  // namespace recording

#endif
