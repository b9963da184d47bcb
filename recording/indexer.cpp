#include "recording/indexer.h"

#include <algorithm>
#include <thread>
#include <utility>

#include "recording/raw_format.h"

namespace recording {

namespace {

constexpr std::size_t WindowBytes = std::size_t{128} << 10;
static_assert(WindowBytes >= SmallestWindow);

/// Threads are worth it only where there is much ahead, and probably nothing irregular in it.
constexpr std::uint64_t WorthThreads = std::uint64_t{8} << 20;
constexpr std::uint64_t Trusted = std::uint64_t{1} << 20;
constexpr unsigned MaxThreads = 4;

std::uint8_t planesOf(const Format& format) {
    const auto* const raw = dynamic_cast<const RawFormat*>(&format);
    return raw == nullptr ? std::uint8_t{0} : raw->planes();
}

}  // namespace

Indexer::Indexer(Source& source, std::unique_ptr<Format> format)
    : source_(source), window_(source, WindowBytes), format_(std::move(format)) {}

bool Indexer::extend(const Progress& progress) {
    limit_ = source_.size();
    window_.forget();
    reopenEnd();
    while (at_ < limit_ && !end_) {
        if (!scanWindow()) {
            take(format_->next(window_, at_, limit_), false);
        }
        if (!goesOn(progress, at_, limit_) || (isWorthThreads() && !scanAhead(progress))) {
            return at_ >= limit_ || end_;
        }
    }
    return true;
}

/// Adds the regular frames at hand; false if there is none.
bool Indexer::scanWindow() {
    const std::size_t size = format_->frameBytes();
    const auto bytes = window_.at(at_, size + format_->lookahead(), limit_);
    ScannedSpan span;
    const std::size_t count =
        format_->scan(bytes, at_ + bytes.size() == limit_, previous(), span.summary);
    if (count == 0) {
        return false;
    }
    const auto dots = bytes.first(count * size).last(size - format_->headBytes());
    previous_.assign(dots.begin(), dots.end());
    span.marks.push_back({count - 1, span.summary.durationMs});
    takeSpan(span);
    return true;
}

bool Indexer::isWorthThreads() const {
    return limit_ - at_ >= WorthThreads && at_ - regularSince_ >= Trusted &&
           std::thread::hardware_concurrency() > 1;
}

/// False: it was asked to end.
bool Indexer::scanAhead(const Progress& progress) {
    while (helpers_.size() < std::min(std::thread::hardware_concurrency(), MaxThreads)) {
        helpers_.push_back(source_.another());
    }
    bool wanted = true;
    scanSpans(*format_, helpers_, at_, limit_, [&](const ScannedSpan& span) {
        takeSpan(span);
        wanted = goesOn(progress, at_, limit_);
        return wanted;
    });
    const std::size_t size = format_->frameBytes();
    const auto last = window_.at(at_ - size, size, limit_);
    const auto dots = last.subspan(std::min(format_->headBytes(), last.size()));
    previous_.assign(dots.begin(), dots.end());
    regularSince_ = at_;  // What ended it may be near.
    return wanted;
}

/// Regular frames that follow.
void Indexer::takeSpan(const ScannedSpan& span) {
    const std::uint64_t start =
        summary_.frames == 0 ? 0
                             : summary_.durationMs + stepMs(summary_.lastMs, span.summary.firstMs);
    for (const FrameIndex::Mark& mark : span.marks) {
        index_.addMark({summary_.frames + mark.frame, start + mark.elapsedMs});
    }
    const std::size_t size = format_->frameBytes();
    index_.add(at_, span.summary.frames, size, planesOf(*format_));
    summary_.append(span.summary);
    at_ += span.summary.frames * size;
}

/// What follows and is not regular. `counted`: its frame is in the index already.
void Indexer::take(const Piece& piece, bool counted) {
    if (piece.frame && !counted) {
        const auto dots = format_->dots();
        summary_.add(piece.stampMs, std::ranges::equal(dots, previous_));
        previous_.assign(dots.begin(), dots.end());
        const std::uint64_t length = piece.last ? format_->frameBytes() : piece.next - piece.offset;
        index_.add(piece.offset, 1, length, planesOf(*format_));
        index_.addMark({summary_.frames - 1, summary_.durationMs});
    }
    if (piece.damage) {
        ++damageCount_;
        if (damages_.size() < MaxDamages) {
            damages_.push_back(*piece.damage);
        }
    }
    at_ = piece.next;
    regularSince_ = at_;
    if (piece.last) {
        end_ = piece;
    }
}

/// Goes back to where the file broke off the last time.
void Indexer::reopenEnd() {
    if (!end_) {
        return;
    }
    const Piece end = *std::exchange(end_, std::nullopt);
    if (end.damage && end.damage->kind == Damage::Kind::EndsInside) {
        --damageCount_;
        if (!damages_.empty() && damages_.back() == *end.damage) {
            damages_.pop_back();
        }
    }
    if (end.frame) {
        take(format_->next(window_, at_, limit_), true);
    }
}

/// The dots of the last frame, if the next one can be compared with them.
const std::uint8_t* Indexer::previous() const {
    const bool comparable =
        !previous_.empty() && previous_.size() + format_->headBytes() == format_->frameBytes();
    return comparable ? previous_.data() : nullptr;
}

}  // namespace recording
