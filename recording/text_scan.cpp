#include "recording/text_scan.h"

#include <algorithm>
#include <array>

namespace recording::text {

namespace {

constexpr std::size_t StampDigits = 8;
constexpr std::size_t DigitsAt = 2;  // behind "0x"

/// As many characters as are looked at in one instruction; what is wrong with each adds up.
using Faults = std::array<std::uint8_t, 16>;

/// What `value` is above `most`, or 0. With std::max the compiler would look at one character after
/// the other, twenty times as slow.
constexpr std::uint8_t above(std::uint8_t value, std::uint8_t most) {
    return static_cast<std::uint8_t>((value > most ? value : most) - most);
}

/// Of letters.
enum class Case { Lower, Either };

/// Not 0 for anything but a digit.
template <Case Letters>
constexpr std::uint8_t notDigit(std::uint8_t character) {
    constexpr unsigned UpperCase = 0xDF;
    constexpr unsigned Mask = Letters == Case::Lower ? 0xFF : UpperCase;
    constexpr unsigned First = 'a' & Mask;
    const std::uint8_t notNumber = above(static_cast<std::uint8_t>(character - '0'), 9);
    const std::uint8_t notLetter = above(static_cast<std::uint8_t>((character & Mask) - First), 5);
    return notNumber < notLetter ? notNumber : notLetter;
}

/// The letters' lower four bits are 1 to 6.
constexpr std::uint8_t valueOf(std::uint8_t digit) {
    return static_cast<std::uint8_t>((digit & 0xFU) + 9U * (digit >> 6U));
}

/// What is wrong with as many characters as `faults` are.
template <Case Letters>
void addFaults(const std::uint8_t* characters, Faults& faults) {
    for (std::size_t i = 0; i < faults.size(); ++i) {
        faults[i] |= notDigit<Letters>(characters[i]);
    }
}

bool areNone(const Faults& faults) { return std::ranges::count(faults, 0) == std::ssize(faults); }

bool isLineEnd(const std::uint8_t* bytes) { return bytes[0] == '\r' && bytes[1] == '\n'; }

/// All rows and the empty line; what is wrong is looked at once at the end.
template <std::size_t Rows, std::size_t Columns>
bool areRows(const std::uint8_t* rows) {
    static_assert(Columns % std::tuple_size_v<Faults> == 0);
    Faults faults{};
    unsigned noEnds = 0;
    for (std::size_t row = 0; row < Rows; ++row, rows += Columns + dump::LineEnd.size()) {
        for (std::size_t at = 0; at < Columns; at += faults.size()) {
            addFaults<Case::Lower>(rows + at, faults);
        }
        noEnds |= static_cast<unsigned>(rows[Columns] ^ '\r') |
                  static_cast<unsigned>(rows[Columns + 1] ^ '\n');
    }
    return areNone(faults) && noEnds == 0 && isLineEnd(rows);
}

template <const dump::Geometry& Display>
bool areRowsOf(const std::uint8_t* rows) {
    return areRows<Display.rows, Display.columns()>(rows);
}

}  // namespace

std::optional<StampLine> stampLine(std::span<const std::uint8_t> bytes) {
    constexpr std::size_t End = DigitsAt + StampDigits;
    if (bytes.size() <= End || bytes[0] != '0' || bytes[1] != 'x' ||
        !areDigits(bytes.subspan(DigitsAt, StampDigits))) {
        return std::nullopt;
    }
    if (bytes[End] == '\n') {
        return StampLine{stampOf(bytes.data()), End + 1};
    }
    if (bytes.size() >= dump::StampLineSize && isLineEnd(&bytes[End])) {
        return StampLine{stampOf(bytes.data()), dump::StampLineSize};
    }
    return std::nullopt;
}

bool isBlock(const std::uint8_t* block, const dump::Geometry& display) {
    const std::uint8_t* const rows = block + dump::StampLineSize;
    return startsBlock(block) &&
           (display.rows == dump::XlDisplay.rows ? areRowsOf<dump::XlDisplay>(rows)
                                                 : areRowsOf<dump::StandardDisplay>(rows));
}

bool startsBlock(const std::uint8_t* block) {
    const std::uint8_t* const digits = block + DigitsAt;
    return block[0] == '0' && block[1] == 'x' &&
           std::all_of(digits, digits + StampDigits,
                       [](std::uint8_t each) { return notDigit<Case::Lower>(each) == 0; }) &&
           isLineEnd(digits + StampDigits);
}

std::uint32_t stampOf(const std::uint8_t* block) {
    std::uint32_t stamp = 0;
    for (std::size_t i = 0; i < StampDigits; ++i) {
        stamp = stamp << 4U | valueOf(block[DigitsAt + i]);
    }
    return stamp;
}

bool areDigits(std::span<const std::uint8_t> bytes) {
    Faults faults{};
    for (; bytes.size() >= faults.size(); bytes = bytes.subspan(faults.size())) {
        addFaults<Case::Either>(bytes.data(), faults);
    }
    for (const std::uint8_t character : bytes) {
        faults[0] |= notDigit<Case::Either>(character);
    }
    return areNone(faults);
}

bool readDigits(std::span<const std::uint8_t> digits, std::uint8_t* values) {
    if (!areDigits(digits)) {
        return false;
    }
    constexpr std::size_t AtOnce = std::tuple_size_v<Faults>;
    for (; digits.size() >= AtOnce; digits = digits.subspan(AtOnce), values += AtOnce) {
        for (std::size_t i = 0; i < AtOnce; ++i) {
            values[i] = valueOf(digits[i]);
        }
    }
    std::ranges::transform(digits, values, valueOf);
    return true;
}

std::size_t digitCount(std::span<const std::uint8_t> bytes) {
    const auto end =
        std::ranges::find_if(bytes, [](auto each) { return notDigit<Case::Either>(each) != 0; });
    return static_cast<std::size_t>(end - bytes.begin());
}

}  // namespace recording::text
