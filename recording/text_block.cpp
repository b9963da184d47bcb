#include "recording/text_block.h"

#include <cstring>

#include "recording/text_scan.h"

namespace recording::text {

namespace {

std::optional<dump::Geometry> displayWith(std::size_t columns) {
    for (const dump::Geometry& display : {dump::StandardDisplay, dump::XlDisplay}) {
        if (columns == display.columns()) {
            return display;
        }
    }
    return std::nullopt;
}

}  // namespace

Block::Block(std::span<const std::uint8_t> bytes, bool atEnd,
             const std::optional<dump::Geometry>& display)
    : bytes_(bytes), atEnd_(atEnd), display_(display) {
    if (const auto stamp = stampLine(bytes)) {
        stampMs_ = stamp->stampMs;
        at_ = stamp->size;
        readable_ = readRows();
    }
    if (readable_) {
        readEnd();
    }
}

Block::Line Block::line() const {
    const auto rest = bytes_.subspan(at_);
    const void* const end = rest.empty() ? nullptr : std::memchr(rest.data(), '\n', rest.size());
    const bool ended = end != nullptr;
    auto text = ended ? rest.first(static_cast<std::size_t>(static_cast<const std::uint8_t*>(end) -
                                                            rest.data()))
                      : rest;
    const std::size_t size = text.size() + (ended ? 1 : 0);
    if (!text.empty() && text.back() == '\r') {
        text = text.first(text.size() - 1);
    }
    return {text, size, !ended && atEnd_};
}

bool Block::startsFrame() const { return stampLine(bytes_.subspan(at_)).has_value(); }

bool Block::readRows() {
    if (!chooseDisplay(line())) {
        return false;
    }
    for (std::size_t number = 0; number < display_->rows; ++number) {
        const Line row = line();
        if (!takeRow(row, number)) {
            return false;
        }
        at_ += row.size;
    }
    return true;
}

/// By the first row, unless it is known already.
bool Block::chooseDisplay(const Line& row) {
    const auto display = displayWith(row.text.size());
    if (display && display_ && display->columns() != display_->columns()) {
        return fail(Damage::Kind::OtherSize, 0, row.text.size(), display_->columns());
    }
    if (display_ || display) {
        display_ = display_ ? display_ : display;
        return true;
    }
    if (row.cut && row.text.size() < dump::XlDisplay.columns()) {
        return fail(Damage::Kind::EndsInside, 0, 0, 0);
    }
    if (row.text.empty() || startsFrame()) {
        return fail(Damage::Kind::RowsMissing, 0, 0, 0);
    }
    return fail(Damage::Kind::RowLength, at_, row.text.size(), 0);
}

/// Reads a row's dots, or finds out why it has none.
bool Block::takeRow(const Line& row, std::size_t number) {
    const std::size_t length = row.text.size();
    const std::size_t columns = display_->columns();
    const bool lastRow = number + 1 == display_->rows;
    if (row.cut && (length < columns || (length == columns && !lastRow))) {
        return fail(Damage::Kind::EndsInside, 0, 0, 0);
    }
    if (row.text.empty() || startsFrame()) {
        return fail(Damage::Kind::RowsMissing, 0, number, display_->rows);
    }
    if (length != columns) {
        return fail(Damage::Kind::RowLength, at_, length, columns);
    }
    values_.resize(display_->rows * columns);
    return readDigits(row.text, &values_[number * columns]) ||
           fail(Damage::Kind::NotADigit, at_ + digitCount(row.text), 0, 0);
}

/// The empty line.
void Block::readEnd() {
    const Line last = line();
    if (last.text.empty()) {
        at_ += last.size;
        if (last.cut) {
            fail(Damage::Kind::EndsInside, 0, 0, 0);
        }
    } else if (last.text.size() == display_->columns() && areDigits(last.text)) {
        readable_ = fail(Damage::Kind::RowsTooMany, at_, 0, display_->rows);
    } else {
        fail(Damage::Kind::EmptyLineMissing, at_, 0, 0);
    }
}

bool Block::fail(Damage::Kind kind, std::size_t offset, std::size_t found, std::size_t wanted) {
    damage_ =
        Damage{offset, static_cast<std::uint32_t>(found), static_cast<std::uint32_t>(wanted), kind};
    return false;
}

}  // namespace recording::text
