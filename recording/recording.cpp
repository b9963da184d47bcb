#include "recording/recording.h"

#include <algorithm>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "device/dump_format.h"
#include "platform/native_file.h"
#include "recording/error.h"
#include "recording/raw_format.h"
#include "recording/raw_modes.h"
#include "recording/text_format.h"

namespace recording {

namespace {

/// Bytes by which a file is recognised.
constexpr std::size_t StartBytes = std::size_t{64} << 10;

/// For single frames.
constexpr std::size_t ReaderBytes = SmallestWindow;

std::vector<std::uint8_t> startOf(Source& source) {
    std::vector<std::uint8_t> start(
        static_cast<std::size_t>(std::min<std::uint64_t>(StartBytes, source.size())));
    start.resize(source.read(0, start));
    return start;
}

std::uint8_t planesOf(const Frame& frame) {
    return static_cast<std::uint8_t>(frame.planes.size() / dump::RawPlaneBytes);
}

/// The text dump beside a raw one, if it is of the XL board.
std::filesystem::path xlTwinOf(const std::filesystem::path& raw) {
    std::filesystem::path twin = native_file::reachable(raw);
    twin.replace_extension(".txt");
    std::error_code error;
    if (!std::filesystem::is_regular_file(twin, error)) {
        return {};
    }
    try {
        FileSource source(twin);
        TextFormat format;
        if (!TextFormat::fits(startOf(source), false)) {
            return {};
        }
        Window window(source, SmallestWindow);
        const std::uint64_t size = source.size();
        for (std::uint64_t at = 0; at < size && at < StartBytes;) {
            const Piece piece = format.next(window, at, size);
            if (piece.frame || piece.last) {
                break;
            }
            at = piece.next;
        }
        const bool isXl = format.display() && format.display()->rows == dump::XlDisplay.rows;
        return isXl ? twin : std::filesystem::path();
    } catch (const Error&) {
        return {};  // What cannot be read is no twin.
    }
}

}  // namespace

Recording::Recording(const std::filesystem::path& path)
    : Recording(std::make_unique<FileSource>(path), nameOf(path)) {
    if (kind_ == Kind::Raw) {
        xlTwin_ = xlTwinOf(path);
    }
}

Recording::Recording(std::unique_ptr<Source> source, std::string name)
    : name_(std::move(name)),
      source_(std::move(source)),
      indexer_(std::make_unique<Indexer>(*source_, identify())),
      window_(*source_, ReaderBytes) {}

std::unique_ptr<Format> Recording::identify() {
    const std::vector<std::uint8_t> start = startOf(*source_);
    if (RawFormat::isHeader(start)) {
        kind_ = Kind::Raw;
        planes_ = start[sizeof(dump::RawHeader) - 1];
        return std::make_unique<RawFormat>(planes_);
    }
    if (!TextFormat::fits(start, start.size() < StartBytes)) {
        throw Error(Failure::NotARecording,
                    name_ + " is no recording: it starts neither like a text nor like a raw dump");
    }
    kind_ = Kind::Text;
    return std::make_unique<TextFormat>();
}

std::optional<dump::Geometry> Recording::display() const {
    if (kind_ == Kind::Raw) {
        return xlTwin_.empty() ? dump::StandardDisplay : dump::XlDisplay;
    }
    return dynamic_cast<const TextFormat&>(indexer_->format()).display();
}

std::optional<std::uint8_t> Recording::planes() const {
    return kind_ == Kind::Raw ? std::optional(planes_) : std::nullopt;
}

bool Recording::extend(const Progress& progress) {
    // An empty file may become any kind of dump.
    if (indexer_->isPastEnd() || indexer_->limit() == 0) {
        indexer_ = std::make_unique<Indexer>(*source_, identify());
    }
    const bool done = indexer_->extend(progress);
    reader_ = indexer_->format().copy();
    window_.forget();
    next_.reset();
    return done;
}

Frame Recording::frame(std::uint64_t number) {
    Frame frame;
    read(number, frame);
    return frame;
}

void Recording::read(std::uint64_t number, Frame& into) {
    const Piece piece = find(number);
    into.number = number;
    into.offset = piece.offset;
    into.stampMs = piece.stampMs;
    if (const auto* const text = dynamic_cast<const TextFormat*>(reader_.get())) {
        into.planes.clear();
        into.digits = text->values();
        return;
    }
    const auto planes = reader_->dots();
    into.planes.assign(planes.begin(), planes.end());
    into.digits.clear();
    if (const DotRule* const wanted = ruleFor(planesOf(into))) {
        if (!decoder_ || &decoder_->rule() != wanted) {
            decoder_.emplace(*wanted, *display());
        }
        decoder_->decode(planes, into.digits);
    }
}

/// Reads a frame; its dots are in the reader.
Piece Recording::find(std::uint64_t number) {
    const FrameIndex::Place place = indexer_->frames().place(number);
    Piece piece{.next = place.offset};
    std::uint64_t frame = number - place.skip;
    if (next_ && next_->number > frame && next_->number <= number) {
        // Among frames that have to be searched for the last one is a good place to start.
        frame = next_->number;
        piece.next = next_->offset;
    } else {
        reader_->moveTo(place.planes, place.skip > 0);
    }
    for (bool found = false; !found; frame += piece.frame ? 1 : 0) {
        piece = reader_->next(window_, piece.next, indexer_->limit());
        found = piece.frame && frame == number;
        if (!found && (piece.last || place.skip == 0)) {
            throw Error(Failure::Changed, name_ + " has been changed since it was opened");
        }
    }
    next_ = Next{number + 1, piece.next};
    return piece;
}

std::uint64_t Recording::elapsedMs(std::uint64_t number) {
    if (number >= frames()) {
        throw std::out_of_range("there is no frame " + std::to_string(number));
    }
    const FrameIndex::Mark mark = indexer_->frames().markBefore(number);
    std::uint32_t stamp = find(mark.frame).stampMs;
    std::uint64_t elapsed = mark.elapsedMs;
    for (std::uint64_t frame = mark.frame + 1; frame <= number; ++frame) {
        const std::uint32_t next = find(frame).stampMs;
        elapsed += stepMs(stamp, next);
        stamp = next;
    }
    return elapsed;
}

std::uint64_t Recording::frameAt(std::uint64_t elapsedMs) {
    const FrameIndex::Mark mark = indexer_->frames().markAt(elapsedMs);
    std::uint64_t frame = mark.frame;
    std::uint32_t stamp = find(frame).stampMs;
    for (std::uint64_t elapsed = mark.elapsedMs; frame + 1 < frames(); ++frame) {
        const std::uint32_t next = find(frame + 1).stampMs;
        elapsed += stepMs(stamp, next);
        if (elapsed > elapsedMs) {
            break;
        }
        stamp = next;
    }
    return frame;
}

void Recording::setMode(std::optional<std::uint8_t> mode) {
    if (mode && kind_ == Kind::Raw && xlTwin_.empty() && !canBeOf(inputMode(*mode), planes_)) {
        throw Error(Failure::ModeUnfit, name_ + " has " + std::to_string(planes_) +
                                            " planes, input mode " + std::to_string(*mode) +
                                            " is read from " +
                                            std::to_string(inputMode(*mode).dots.planes) +
                                            "; modes that fit: " + listOf(modesOfPlanes(planes_)));
    }
    mode_ = mode;
}

const DotRule* Recording::rule() const { return kind_ == Kind::Raw ? ruleFor(planes_) : nullptr; }

const DotRule* Recording::ruleFor(std::uint8_t planes) const {
    if (!xlTwin_.empty()) {
        return &dump::XlDots;
    }
    if (mode_ && canBeOf(inputMode(*mode_), planes)) {
        return &inputMode(*mode_).dots;
    }
    return commonRule(planes);
}

void Recording::readDigits(std::uint64_t number, Frame& into) {
    read(number, into);
    if (into.digits.empty()) {
        askForMode(planesOf(into));
    }
}

void Recording::needDigits() const {
    if (kind_ == Kind::Raw && rule() == nullptr) {
        askForMode(planes_);
    }
}

void Recording::askForMode(std::uint8_t planes) const {
    const auto modes = modesOfPlanes(planes);
    const std::string count = std::to_string(planes);
    throw Error(Failure::ModeNeeded,
                name_ + " does not tell in which input mode it was recorded; " +
                    (modes.empty() ? "captures in none write " + count + " planes"
                                   : "its " + count + " planes fit " + listOf(modes)));
}

std::string Recording::missing() const {
    const std::size_t held = planes_ * dump::RawPlaneBytes;
    constexpr std::size_t Plane = dump::XlDisplay.planeBytes();
    if (xlTwin_.empty() || held >= dump::XlPlanes * Plane) {
        return {};
    }
    std::string text = nameOf(xlTwin_.filename()) +
                       " beside it shows that it was recorded on the XL board, with two planes of "
                       "192 x 64 dots; of these it is missing the second";
    if (held > Plane) {
        const std::size_t row = (held - Plane) / dump::XlDisplay.rowBytes;
        text += " from row " + std::to_string(row) + " on";
    }
    return text + ", and shows too low shades there";
}

}  // namespace recording
