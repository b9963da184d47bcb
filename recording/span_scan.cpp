#include "recording/span_scan.h"

#include <algorithm>
#include <condition_variable>
#include <cstdint>
#include <cstring>
#include <exception>
#include <map>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

namespace recording {

namespace {

/// What is read at once: stays in the processor's cache until it has been looked at.
constexpr std::size_t PieceBytes = std::size_t{96} << 10;

/// Where pieces start in memory: the system copies them a quarter faster there.
constexpr std::size_t Alignment = 64;

/// Spans grow, so that not much is read in vain when the first ones meet something irregular.
constexpr std::uint64_t FirstSpanBytes = std::uint64_t{1} << 20;
constexpr std::uint64_t LargestSpanBytes = std::uint64_t{8} << 20;

struct Span {
    std::uint64_t number;
    std::uint64_t offset;
    std::uint64_t frames;
};

/// Reads one span after the other.
class Scanner {
public:
    Scanner(const Format& format, Source& source, std::uint64_t limit)
        : format_(format),
          source_(source),
          limit_(limit),
          size_(format.frameBytes()),
          buffer_(size_ + Alignment + std::max(PieceBytes, size_) + format.lookahead()) {
        const auto behindFrame = reinterpret_cast<std::uintptr_t>(buffer_.data()) + size_;
        pieceAt_ = size_ + (Alignment - behindFrame % Alignment) % Alignment;
    }

    ScannedSpan scan(const Span& span) {
        ScannedSpan result;
        if (source_.read(span.offset - size_, frameBefore()) < size_) {
            return result;
        }
        while (result.summary.frames < span.frames) {
            const std::uint64_t at = span.offset + result.summary.frames * size_;
            const auto piece = read(at, span.frames - result.summary.frames);
            const std::size_t count =
                format_.scan(piece, at + piece.size() == limit_,
                             &frameBefore()[format_.headBytes()], result.summary);
            if (count == 0) {
                return result;
            }
            result.marks.push_back({result.summary.frames - 1, result.summary.durationMs});
            std::memcpy(frameBefore().data(), &piece[(count - 1) * size_], size_);
        }
        result.whole = true;
        return result;
    }

private:
    std::span<std::uint8_t> frameBefore() {
        return std::span(buffer_).subspan(pieceAt_ - size_, size_);
    }

    /// At most so many frames, and what the format wants to see behind them.
    std::span<const std::uint8_t> read(std::uint64_t at, std::uint64_t frames) {
        const auto room = std::span(buffer_).subspan(pieceAt_);
        const std::uint64_t wanted = std::min(frames * size_ + format_.lookahead(), limit_ - at);
        const auto into =
            room.first(static_cast<std::size_t>(std::min<std::uint64_t>(wanted, room.size())));
        return into.first(source_.read(at, into));
    }

    const Format& format_;
    Source& source_;
    std::uint64_t limit_;
    std::size_t size_;
    std::vector<std::uint8_t> buffer_;
    std::size_t pieceAt_;  ///< in the buffer; the frame before it stands in front of it
};

/// Gives spans to the threads, and collects what they found in them.
class Board {
public:
    Board(std::uint64_t offset, std::uint64_t limit, std::size_t frameBytes)
        : offset_(offset), limit_(limit), frameBytes_(frameBytes) {}

    /// Nothing when there is no more to do.
    std::optional<Span> claim() {
        const std::lock_guard lock(mutex_);
        const std::uint64_t left = (limit_ - offset_) / frameBytes_;
        if (stopped_ || left == 0) {
            return std::nullopt;
        }
        const std::uint64_t most = std::max<std::uint64_t>(spanBytes_ / frameBytes_, 1);
        const Span span{claimed_++, offset_, std::min(left, most)};
        offset_ += span.frames * frameBytes_;
        spanBytes_ = std::min(2 * spanBytes_, LargestSpanBytes);
        return span;
    }

    void put(std::uint64_t number, ScannedSpan span) {
        const std::lock_guard lock(mutex_);
        found_.emplace(number, std::move(span));
        changed_.notify_all();
    }

    void fail(std::exception_ptr error) {
        const std::lock_guard lock(mutex_);
        error_ = std::move(error);
        stopped_ = true;
        changed_.notify_all();
    }

    void stop() {
        const std::lock_guard lock(mutex_);
        stopped_ = true;
    }

    /// Waits for a span; nothing when there is none. Throws what a thread failed with.
    std::optional<ScannedSpan> wait(std::uint64_t number) {
        std::unique_lock lock(mutex_);
        const auto isLast = [&] {
            return number == claimed_ && (limit_ - offset_) / frameBytes_ == 0;
        };
        changed_.wait(lock, [&] { return found_.contains(number) || error_ || isLast(); });
        if (auto node = found_.extract(number)) {
            return std::make_optional(std::move(node.mapped()));
        }
        if (error_) {
            std::rethrow_exception(error_);
        }
        return std::nullopt;
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::uint64_t offset_;
    const std::uint64_t limit_;
    const std::size_t frameBytes_;
    std::uint64_t spanBytes_ = FirstSpanBytes;
    std::uint64_t claimed_ = 0;
    std::map<std::uint64_t, ScannedSpan> found_;
    std::exception_ptr error_;
    bool stopped_ = false;
};

void work(const Format& format, Source& source, std::uint64_t limit, Board& board) {
    try {
        Scanner scanner(format, source, limit);
        while (const auto span = board.claim()) {
            board.put(span->number, scanner.scan(*span));
        }
    } catch (...) {
        board.fail(std::current_exception());
    }
}

/// Ends the threads, whatever happens meanwhile.
class Team {
public:
    explicit Team(Board& board) : board_(board) {}
    ~Team() {
        board_.stop();
        for (std::thread& thread : threads_) {
            thread.join();
        }
    }
    Team(const Team&) = delete;
    Team& operator=(const Team&) = delete;

    template <class Work>
    void add(Work task) {
        threads_.emplace_back(task);
    }

private:
    Board& board_;
    std::vector<std::thread> threads_;
};

}  // namespace

void scanSpans(const Format& format, const std::vector<std::unique_ptr<Source>>& sources,
               std::uint64_t offset, std::uint64_t limit,
               const std::function<bool(const ScannedSpan&)>& take) {
    Board board(offset, limit, format.frameBytes());
    Team team(board);
    for (const auto& source : sources) {
        team.add([&] { work(format, *source, limit, board); });
    }
    for (std::uint64_t number = 0;; ++number) {
        const auto span = board.wait(number);
        if (!span || !take(*span) || !span->whole) {
            return;
        }
    }
}

}  // namespace recording
