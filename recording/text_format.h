#ifndef LUMADOT_RECORDING_TEXT_FORMAT_H
#define LUMADOT_RECORDING_TEXT_FORMAT_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "device/dump_format.h"
#include "recording/format.h"

namespace recording {

/// A text dump. Its first frame that can be read decides which display it is of. Lines that end
/// with LF only, and digits in upper case, are read too.
class TextFormat : public Format {
public:
    /// Whether a file that starts with these bytes is a text dump; `whole`: there are no more. An
    /// empty file is one: a capture that got no frame leaves it.
    static bool fits(std::span<const std::uint8_t> start, bool whole);

    std::unique_ptr<Format> copy() const override { return std::make_unique<TextFormat>(*this); }
    std::size_t frameBytes() const override {
        return display_ ? dump::textBlockSize(*display_) : 0;
    }
    std::size_t headBytes() const override { return dump::StampLineSize; }
    std::size_t lookahead() const override { return 0; }
    std::size_t scan(std::span<const std::uint8_t> bytes, bool atEnd, const std::uint8_t* previous,
                     Summary& summary) const override;
    Piece next(Window& window, std::uint64_t offset, std::uint64_t limit) override;
    void moveTo(std::uint8_t /*planes*/, bool /*lookingForCuts*/) override { searching_ = false; }
    std::span<const std::uint8_t> dots() override;

    /// Nothing as long as no frame was read.
    const std::optional<dump::Geometry>& display() const { return display_; }

    /// The digits' values of the frame read last, row by row.
    const std::vector<std::uint8_t>& values() const { return values_; }

private:
    Piece readFrame(std::span<const std::uint8_t> bytes, bool atEnd, std::uint64_t offset);
    void search(std::span<const std::uint8_t> bytes, bool atEnd, Piece& piece);

    std::optional<dump::Geometry> display_;
    bool searching_ = false;  ///< inside a damaged place that is listed already
    std::vector<std::uint8_t> values_;
    std::vector<std::uint8_t> dots_;
};

}  // namespace recording

#endif
