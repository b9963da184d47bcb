#include "recording/raw_format.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace recording {

namespace {

/// A leap of the time stamps: more than a capture waits for a frame, by far; backwards is a leap
/// too.
constexpr std::uint32_t LeapMs = 10 * 60 * 1000;

/// Time from frame to frame that makes a start of a frame credible.
constexpr std::uint32_t CredibleMs = 60 * 1000;

constexpr int MaxLeaps = 64;

/// A smaller stamp, with zeros in its upper bytes, is found anywhere in a dark display.
constexpr std::uint32_t SmallestTellingMs = 1U << 24U;

constexpr std::size_t HeaderBytes = sizeof(dump::RawHeader);
constexpr std::size_t PlanesAt = HeaderBytes - 1;

/// Frames that are looked at to find out where they start.
constexpr std::size_t FramesInView = 4;
static_assert(FramesInView * dump::rawBlockSize(RawFormat::MaxPlanes) + HeaderBytes <=
              SmallestWindow);

std::uint32_t stampAt(std::span<const std::uint8_t> bytes, std::size_t at) {
    return dump::timeStamp(bytes.subspan(at));
}

/// Where the first header from `at` on starts; behind the end if there is none.
std::size_t findHeader(std::span<const std::uint8_t> bytes, std::size_t at) {
    while (at < bytes.size()) {
        const void* const letter = std::memchr(&bytes[at], 'R', bytes.size() - at);
        if (letter == nullptr) {
            break;
        }
        at = static_cast<std::size_t>(static_cast<const std::uint8_t*>(letter) - bytes.data());
        if (RawFormat::isHeader(bytes.subspan(at))) {
            return at;
        }
        ++at;
    }
    return bytes.size();
}

}  // namespace

bool RawFormat::isHeader(std::span<const std::uint8_t> bytes) {
    static const dump::RawHeader Header = dump::rawHeader(0);
    return bytes.size() >= HeaderBytes && bytes.front() == Header.front() &&
           std::equal(Header.begin(), Header.end() - 1, bytes.begin()) && bytes[PlanesAt] > 0 &&
           bytes[PlanesAt] <= MaxPlanes;
}

void RawFormat::moveTo(std::uint8_t planes, bool lookingForCuts) {
    planes_ = planes;
    leapsLeft_ = lookingForCuts ? MaxLeaps : 0;
}

std::size_t RawFormat::scan(std::span<const std::uint8_t> bytes, bool atEnd,
                            const std::uint8_t* previous, Summary& summary) const {
    const std::size_t size = frameBytes();
    const std::size_t dotBytes = size - headBytes();
    std::size_t count = 0;
    for (auto rest = bytes; rest.size() >= size; rest = rest.subspan(size), ++count) {
        if (isHeader(rest) || leaps(rest) || (!atEnd && rest.size() < size + lookahead())) {
            break;
        }
        const std::uint8_t* const dots = &rest[headBytes()];
        summary.add(stampAt(rest, 0),
                    previous != nullptr && std::memcmp(dots, previous, dotBytes) == 0);
        previous = dots;
    }
    return count;
}

/// Whether the stamp behind the first frame is far from that frame's, and that one tells anything.
bool RawFormat::leaps(std::span<const std::uint8_t> bytes) const {
    const std::size_t size = frameBytes();
    return leapsLeft_ > 0 && bytes.size() >= size + dump::RawStampSize &&
           stampAt(bytes, 0) >= SmallestTellingMs &&
           stepMs(stampAt(bytes, 0), stampAt(bytes, size)) > LeapMs &&
           !isHeader(bytes.subspan(size));
}

Piece RawFormat::next(Window& window, std::uint64_t offset, std::uint64_t limit) {
    const std::size_t size = frameBytes();
    const auto bytes = window.at(offset, FramesInView * size + HeaderBytes, limit);
    Piece piece{.offset = offset, .next = offset + HeaderBytes};
    if (isHeader(bytes)) {
        planes_ = bytes[PlanesAt];
        if (offset > 0) {
            piece.damage = Damage{.offset = offset, .kind = Damage::Kind::SecondHeader};
        }
        return piece;
    }
    if (bytes.size() < size) {
        return readRest(bytes, piece);
    }
    std::size_t length = size;
    if (leaps(bytes)) {
        --leapsLeft_;
        // Without a rest at the end all frames behind have their length.
        const std::size_t cut = (limit - offset) % size != 0 ? findCut(bytes) : 0;
        length = cut != 0 ? cut : size;
    }
    piece.next = offset + length;
    if (length < size) {
        piece.damage = cutAt(offset, length);
        return piece;
    }
    if (length > size) {
        piece.damage = cutAt(offset + size, length - size);
    }
    piece.frame = true;
    piece.stampMs = stampAt(bytes, 0);
    const auto dots = bytes.subspan(headBytes(), size - headBytes());
    dots_.assign(dots.begin(), dots.end());
    return piece;
}

Damage RawFormat::cutAt(std::uint64_t offset, std::size_t length) const {
    return {offset, static_cast<std::uint32_t>(length), static_cast<std::uint32_t>(frameBytes()),
            Damage::Kind::FrameCut};
}

/// Less than a frame: the end of the file, unless another capture began there.
Piece RawFormat::readRest(std::span<const std::uint8_t> bytes, Piece piece) const {
    const std::size_t cut = findHeader(bytes, 1);
    piece.last = cut >= bytes.size();
    piece.next = piece.last ? piece.offset : piece.offset + cut;
    piece.damage = piece.last ? Damage{.offset = piece.offset, .kind = Damage::Kind::EndsInside}
                              : cutAt(piece.offset, cut);
    return piece;
}

/// Where the next frame starts if the first one was cut short, or the one behind it within its time
/// stamp; 0 if neither seems so. Of several places it is the one where the next frames come
/// soonest.
std::size_t RawFormat::findCut(std::span<const std::uint8_t> bytes) const {
    const std::size_t size = frameBytes();
    const std::size_t most = size + dump::RawStampSize;
    const auto near = bytes.first(std::min(most + HeaderBytes, bytes.size()));
    if (const std::size_t header = findHeader(near, 1); header < near.size()) {
        return header;
    }
    const std::uint32_t before = stampAt(bytes, 0);
    std::size_t found = 0;
    std::uint32_t soonest = 2 * CredibleMs + 1;
    for (std::size_t cut = 1; cut < most && cut + dump::RawStampSize <= bytes.size(); ++cut) {
        const std::uint32_t first = stepMs(before, stampAt(bytes, cut));
        if (first > CredibleMs || cut == size) {
            continue;
        }
        const auto second = stepTo(bytes, cut + size, stampAt(bytes, cut));
        if (second && first + *second < soonest) {
            soonest = first + *second;
            found = cut;
        }
    }
    return found;
}

/// The time to the next frame if it may start there, or the file, or a capture in it, may end
/// there.
std::optional<std::uint32_t> RawFormat::stepTo(std::span<const std::uint8_t> bytes, std::size_t at,
                                               std::uint32_t stampBefore) {
    if (at == bytes.size() || isHeader(bytes.subspan(std::min(at, bytes.size())))) {
        return 0;
    }
    if (at + dump::RawStampSize > bytes.size()) {
        return std::nullopt;
    }
    const std::uint32_t step = stepMs(stampBefore, stampAt(bytes, at));
    return step <= CredibleMs ? std::optional(step) : std::nullopt;
}

}  // namespace recording
