#include "recording/text_format.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "recording/text_block.h"
#include "recording/text_scan.h"

namespace recording {

namespace {

/// No frame that can be read is longer.
constexpr std::size_t ViewBytes = std::size_t{16} << 10;
static_assert(ViewBytes > dump::textBlockSize(dump::XlDisplay) && ViewBytes <= SmallestWindow);

/// The next stamp line behind the end of a line; `bytes.size()` if there is none.
std::size_t findStampLine(std::span<const std::uint8_t> bytes) {
    std::size_t at = 0;
    while (at < bytes.size()) {
        const void* const found = std::memchr(&bytes[at], 'x', bytes.size() - at);
        if (found == nullptr) {
            break;
        }
        const auto x =
            static_cast<std::size_t>(static_cast<const std::uint8_t*>(found) - bytes.data());
        if (x >= 2 && bytes[x - 2] == '\n' && text::stampLine(bytes.subspan(x - 1))) {
            return x - 1;
        }
        at = x + 1;
    }
    return bytes.size();
}

/// Whether a stamp line may start so, cut off where the file ends.
bool isCutStampLine(std::span<const std::uint8_t> bytes) {
    constexpr std::string_view Stamp = "0x00000000\r";
    if (bytes.size() > Stamp.size()) {
        return false;
    }
    std::vector<std::uint8_t> whole(bytes.begin(), bytes.end());
    whole.insert(whole.end(), Stamp.begin() + static_cast<std::ptrdiff_t>(bytes.size()),
                 Stamp.end());
    whole.push_back('\n');
    return text::stampLine(whole).has_value();
}

}  // namespace

bool TextFormat::fits(std::span<const std::uint8_t> start, bool whole) {
    if (whole && isCutStampLine(start)) {
        return true;
    }
    for (std::size_t at = text::stampLine(start) ? 0 : findStampLine(start); at < start.size();) {
        const auto rest = start.subspan(at);
        text::Block block(rest, whole, std::nullopt);
        const bool cut = block.damage() && block.damage()->kind == Damage::Kind::EndsInside;
        if (block.readable() || (cut && (at == 0 || !block.values().empty()))) {
            return true;
        }
        at += findStampLine(rest);
    }
    return false;
}

std::size_t TextFormat::scan(std::span<const std::uint8_t> bytes, bool /*atEnd*/,
                             const std::uint8_t* previous, Summary& summary) const {
    if (!display_) {
        return 0;
    }
    const std::size_t size = frameBytes();
    std::size_t count = 0;
    for (; (count + 1) * size <= bytes.size(); ++count) {
        const std::uint8_t* const block = &bytes[count * size];
        const std::uint8_t* const dots = block + headBytes();
        // Dots like those before need no other look.
        const bool equal = previous != nullptr && text::startsBlock(block) &&
                           std::memcmp(dots, previous, size - headBytes()) == 0;
        if (!equal && !text::isBlock(block, *display_)) {
            break;
        }
        summary.add(text::stampOf(block), equal);
        previous = dots;
    }
    return count;
}

Piece TextFormat::next(Window& window, std::uint64_t offset, std::uint64_t limit) {
    const auto bytes = window.at(offset, ViewBytes, limit);
    const bool atEnd = bytes.size() < ViewBytes || offset + bytes.size() >= limit;
    Piece piece{.offset = offset, .next = offset};
    if (!searching_ && text::stampLine(bytes)) {
        return readFrame(bytes, atEnd, offset);
    }
    if (!searching_ && atEnd && isCutStampLine(bytes)) {
        piece.damage = Damage{.offset = offset, .kind = Damage::Kind::EndsInside};
        piece.last = true;
        return piece;
    }
    if (!searching_) {
        piece.damage = Damage{.offset = offset, .kind = Damage::Kind::NoTimeStamp};
    }
    search(bytes, atEnd, piece);
    return piece;
}

Piece TextFormat::readFrame(std::span<const std::uint8_t> bytes, bool atEnd, std::uint64_t offset) {
    text::Block block(bytes, atEnd, display_);
    Piece piece{.offset = offset, .stampMs = block.stampMs(), .damage = block.damage()};
    if (piece.damage) {
        piece.damage->offset += offset;
        piece.last = piece.damage->kind == Damage::Kind::EndsInside;
    }
    piece.frame = block.readable();
    if (piece.frame) {
        display_ = block.display();
        values_.swap(block.values());
    }
    if (piece.last) {
        piece.next = offset;
    } else if (piece.frame) {
        piece.next = offset + block.size();
        // What stands there in place of the empty line, and is no frame, is listed already.
        const auto rest = bytes.subspan(block.size());
        searching_ = piece.damage && !text::stampLine(rest) && !(atEnd && isCutStampLine(rest));
    } else {
        search(bytes, atEnd, piece);
    }
    return piece;
}

/// Goes on to the next stamp line; to the end of the bytes if there is none.
void TextFormat::search(std::span<const std::uint8_t> bytes, bool atEnd, Piece& piece) {
    std::size_t found = findStampLine(bytes);
    searching_ = found == bytes.size();
    piece.last = searching_ && atEnd;
    if (searching_ && atEnd) {
        // The last line may be a stamp line once the file has grown.
        const auto lineEnd = std::find(bytes.rbegin(), bytes.rend(), '\n');
        found = static_cast<std::size_t>(bytes.rend() - lineEnd);
        found -= found > 0 ? 1 : 0;
    } else if (searching_) {
        found -= dump::StampLineSize + 1;
    }
    piece.next = piece.offset + found;
}

std::span<const std::uint8_t> TextFormat::dots() {
    constexpr std::string_view Digits = "0123456789abcdef";
    dots_.resize(frameBytes() - headBytes());
    auto dot = dots_.begin();
    for (auto value = values_.begin(); value != values_.end();) {
        const auto rowEnd = value + static_cast<std::ptrdiff_t>(display_->columns());
        for (; value != rowEnd; ++value) {
            *dot++ = static_cast<std::uint8_t>(Digits[*value]);
        }
        dot = std::ranges::copy(dump::LineEnd, dot).out;
    }
    std::ranges::copy(dump::LineEnd, dot);
    return dots_;
}

}  // namespace recording
