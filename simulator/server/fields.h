#ifndef LUMADOT_SIMULATOR_SERVER_FIELDS_H
#define LUMADOT_SIMULATOR_SERVER_FIELDS_H

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace simulator::usbip {

/// Puts fields one behind the other.
class Writer {
public:
    explicit Writer(std::size_t size) { bytes_.reserve(size); }

    Writer& byte(std::uint8_t value) { return bytes(std::array{value}); }
    Writer& half(std::uint16_t value) { return bytes(std::array{part(value, 8), part(value, 0)}); }
    Writer& word(std::uint32_t value) {
        return bytes(std::array{part(value, 24), part(value, 16), part(value, 8), part(value, 0)});
    }
    Writer& bytes(std::span<const std::uint8_t> values) {
        bytes_.insert(bytes_.end(), values.begin(), values.end());
        return *this;
    }
    /// Ended by a zero at least.
    Writer& text(std::string_view value, std::size_t size) {
        const std::size_t length = std::min(value.size(), size - 1);
        bytes_.insert(bytes_.end(), value.begin(), value.begin() + length);
        return zeros(size - length);
    }
    Writer& zeros(std::size_t count) {
        bytes_.resize(bytes_.size() + count);
        return *this;
    }
    std::vector<std::uint8_t> take() { return std::move(bytes_); }

private:
    static std::uint8_t part(std::uint32_t value, unsigned shift) {
        return static_cast<std::uint8_t>(value >> shift);
    }

    std::vector<std::uint8_t> bytes_;
};

/// Takes fields off the front of bytes that are long enough.
class Reader {
public:
    explicit Reader(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    std::uint8_t byte() {
        const std::uint8_t value = bytes_.front();
        bytes_ = bytes_.subspan(1);
        return value;
    }
    std::uint16_t half() {
        const unsigned high = byte();
        return static_cast<std::uint16_t>(high << 8U | byte());
    }
    std::uint32_t word() {
        const std::uint32_t high = half();
        return high << 16U | half();
    }
    std::string text(std::size_t size) {
        const auto field = bytes_.first(size);
        bytes_ = bytes_.subspan(size);
        return {field.begin(), std::find(field.begin(), field.end(), 0)};
    }
    void skip(std::size_t count) { bytes_ = bytes_.subspan(count); }

private:
    std::span<const std::uint8_t> bytes_;
};

}  // namespace simulator::usbip

#endif
