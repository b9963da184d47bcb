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

/// Not 0 when there is something else than a digit in lower case.
template <std::size_t Columns>
void addFaults(const std::uint8_t* row, Faults& faults) {
    static_assert(Columns % std::tuple_size_v<Faults> == 0);
    for (std::size_t at = 0; at < Columns; at += faults.size()) {
        for (std::size_t i = 0; i < faults.size(); ++i) {
            const std::uint8_t character = row[at + i];
            const std::uint8_t notNumber = above(static_cast<std::uint8_t>(character - '0'), 9);
            const std::uint8_t notLetter = above(static_cast<std::uint8_t>(character - 'a'), 5);
            faults[i] |= notNumber < notLetter ? notNumber : notLetter;
        }
    }
}

bool isLineEnd(const std::uint8_t* bytes) { return bytes[0] == '\r' && bytes[1] == '\n'; }

/// All rows and the empty line; what is wrong is looked at once at the end.
template <std::size_t Rows, std::size_t Columns>
bool areRows(const std::uint8_t* rows) {
    Faults faults{};
    unsigned noEnds = 0;
    for (std::size_t row = 0; row < Rows; ++row, rows += Columns + dump::LineEnd.size()) {
        addFaults<Columns>(rows, faults);
        noEnds |= static_cast<unsigned>(rows[Columns] ^ '\r') |
                  static_cast<unsigned>(rows[Columns + 1] ^ '\n');
    }
    return std::ranges::count(faults, 0) == std::ssize(faults) && noEnds == 0 && isLineEnd(rows);
}

template <const dump::Geometry& Display>
bool areRowsOf(const std::uint8_t* rows) {
    return areRows<Display.rows, Display.columns()>(rows);
}

bool isLowerDigit(std::uint8_t character) {
    return (character >= '0' && character <= '9') || (character >= 'a' && character <= 'f');
}

bool isDigit(std::uint8_t character) {
    return isLowerDigit(character) || (character >= 'A' && character <= 'F');
}

/// The letters' lower four bits are 1 to 6.
constexpr std::uint8_t valueOf(std::uint8_t digit) {
    return static_cast<std::uint8_t>((digit & 0xFU) + 9U * (digit >> 6U));
}

}  // namespace

std::optional<StampLine> stampLine(std::span<const std::uint8_t> bytes) {
    constexpr std::size_t End = DigitsAt + StampDigits;
    if (bytes.size() <= End || bytes[0] != '0' || bytes[1] != 'x' ||
        digitCount(bytes.subspan(DigitsAt, StampDigits)) != StampDigits) {
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
           std::all_of(digits, digits + StampDigits, isLowerDigit) &&
           isLineEnd(digits + StampDigits);
}

std::uint32_t stampOf(const std::uint8_t* block) {
    std::uint32_t stamp = 0;
    for (std::size_t i = 0; i < StampDigits; ++i) {
        stamp = stamp << 4U | valueOf(block[DigitsAt + i]);
    }
    return stamp;
}

std::size_t digitCount(std::span<const std::uint8_t> bytes) {
    return static_cast<std::size_t>(std::ranges::find_if_not(bytes, isDigit) - bytes.begin());
}

void digitValues(std::span<const std::uint8_t> digits, std::uint8_t* values) {
    std::ranges::transform(digits, values, valueOf);
}

}  // namespace recording::text
