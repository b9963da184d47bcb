#ifndef LUMADOT_RECORDING_TEXT_BLOCK_H
#define LUMADOT_RECORDING_TEXT_BLOCK_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "device/dump_format.h"
#include "recording/damage.h"

namespace recording::text {

/// A frame of a text dump, read line by line and forgiving as far as its dots are certain.
class Block {
public:
    /// `bytes` start with a stamp line. `atEnd`: the file ends with them. `display`: that of the
    /// frames before, if there were any.
    Block(std::span<const std::uint8_t> bytes, bool atEnd,
          const std::optional<dump::Geometry>& display);

    /// Whether all its dots are there, even if something else is wrong.
    bool readable() const { return readable_; }
    std::uint32_t stampMs() const { return stampMs_; }

    /// Of a frame that is readable: its display, its length, and the digits' values, row by row.
    const dump::Geometry& display() const { return *display_; }
    std::size_t size() const { return at_; }
    std::vector<std::uint8_t>& values() { return values_; }

    /// Its offset counts from the start of the frame.
    const std::optional<Damage>& damage() const { return damage_; }

private:
    struct Line {
        std::span<const std::uint8_t> text;
        std::size_t size;  ///< with its end
        bool cut;          ///< there is no end: the file ends first
    };

    Line line() const;
    bool startsFrame() const;
    bool readRows();
    bool chooseDisplay(const Line& row);
    bool takeRow(const Line& row, std::size_t number);
    void readEnd();
    bool fail(Damage::Kind kind, std::size_t offset, std::size_t found, std::size_t wanted);

    std::span<const std::uint8_t> bytes_;
    bool atEnd_;
    std::optional<dump::Geometry> display_;
    std::size_t at_ = 0;
    std::uint32_t stampMs_ = 0;
    bool readable_ = false;
    std::vector<std::uint8_t> values_;
    std::optional<Damage> damage_;
};

}  // namespace recording::text

#endif
