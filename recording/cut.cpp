#include "recording/cut.h"

#include <algorithm>
#include <array>
#include <memory>
#include <stdexcept>
#include <string>

#include "device/dump_format.h"
#include "recording/bit_planes.h"
#include "recording/error.h"
#include "recording/output_file.h"
#include "recording/raw_modes.h"

namespace recording {

namespace {

/// Writes frames in one of the formats.
class Writer {
public:
    explicit Writer(OutputFile& file) : file_(file) {}
    virtual ~Writer() = default;
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;

    virtual void write(const Frame& frame) = 0;

protected:
    void put(std::span<const std::uint8_t> bytes) { file_.write(bytes); }

private:
    OutputFile& file_;
};

/// Digits as a text block, through bit planes and the encoder of the captures.
class TextWriter : public Writer {
public:
    TextWriter(OutputFile& file, const dump::Geometry& display)
        : Writer(file), encoder_(inputMode(InputMode::Stern).dots, display) {}

    void write(const Frame& frame) override {
        toPlanes(frame.digits, inputMode(InputMode::Stern).dots.planes, planes_);
        const auto block = encoder_.encode(frame.stampMs, planes_);
        put({reinterpret_cast<const std::uint8_t*>(block.data()), block.size()});
    }

private:
    dump::TextEncoder encoder_;
    std::vector<std::uint8_t> planes_;
};

/// Planes as they stand in a raw dump. A header comes before the first frame, and where frames have
/// another number of planes.
class RawWriter : public Writer {
public:
    using Writer::Writer;

    void write(const Frame& frame) override {
        writePlanes(frame.stampMs, frame.planes,
                    static_cast<std::uint8_t>(frame.planes.size() / dump::RawPlaneBytes));
    }

protected:
    void writePlanes(std::uint32_t stampMs, std::span<const std::uint8_t> data,
                     std::uint8_t planes) {
        if (planes != planes_) {
            planes_ = planes;
            put(dump::rawHeader(planes_));
        }
        put(dump::rawBlock(stampMs, planes, data));
    }

private:
    std::uint8_t planes_ = 0;
};

/// Digits as the planes that a capture in some mode could have got.
class RawFromDigits : public RawWriter {
public:
    RawFromDigits(OutputFile& file, const InputModeInfo& mode, const dump::Geometry& display)
        : RawWriter(file), mode_(mode), xl_(display.rows == dump::XlDisplay.rows) {
        const DotRule& rule = xl_ ? dump::XlDots : mode.dots;
        sums_.fill(NoSum);
        for (std::size_t sum = rule.digits.size(); sum-- > 0;) {
            sums_[digitValue(rule.digits[sum])] = static_cast<std::uint8_t>(sum);
        }
    }

    void write(const Frame& frame) override {
        dots_.resize(frame.digits.size());
        std::ranges::transform(frame.digits, dots_.begin(),
                               [&](auto digit) { return sums_[digit]; });
        if (const auto bad = std::ranges::find(dots_, NoSum); bad != dots_.end()) {
            const auto digit = frame.digits[static_cast<std::size_t>(bad - dots_.begin())];
            throw Error(Failure::CannotConvert, "frame " + std::to_string(frame.number) +
                                                    " has the shade " + std::to_string(digit) +
                                                    ", which there is not in input mode " +
                                                    listOf({&mode_}));
        }
        if (xl_) {
            toPlanes(dots_, dump::XlPlanes, planes_);
        } else {
            toCountedPlanes(dots_, mode_.capturePlanes, planes_);
        }
        writePlanes(frame.stampMs, planes_, mode_.capturePlanes);
    }

private:
    static constexpr std::uint8_t NoSum = 255;

    const InputModeInfo& mode_;
    bool xl_;
    std::array<std::uint8_t, 16> sums_{};  ///< the least sum that has a digit, by its value
    std::vector<std::uint8_t> dots_;
    std::vector<std::uint8_t> planes_;
};

/// The mode of a raw dump that is made from a text dump.
const InputModeInfo& rawMode(std::optional<std::uint8_t> number) {
    std::vector<const InputModeInfo*> modes;
    for (const InputModeInfo& mode : inputModes()) {
        if (mode.rawFile) {
            modes.push_back(&mode);
        }
    }
    if (!number) {
        throw Error(Failure::ModeNeeded,
                    "a text dump does not tell in which input mode a raw dump is to be written; "
                    "there are " +
                        listOf(modes));
    }
    const InputModeInfo& mode = inputMode(*number);
    if (!mode.rawFile) {
        throw Error(Failure::ModeUnfit,
                    "captures in input mode " + std::to_string(*number) +
                        " write no raw dumps; those in these modes do: " + listOf(modes));
    }
    return mode;
}

std::unique_ptr<Writer> writerFor(const Recording& recording, Kind kind, OutputFile& file,
                                  const InputModeInfo* mode) {
    const dump::Geometry display = recording.display().value_or(dump::StandardDisplay);
    if (kind == Kind::Text) {
        return std::make_unique<TextWriter>(file, display);
    }
    if (mode != nullptr) {
        return std::make_unique<RawFromDigits>(file, *mode, display);
    }
    return std::make_unique<RawWriter>(file);
}

}  // namespace

std::optional<Range> allFrames(const Recording& recording) {
    if (recording.frames() == 0) {
        return std::nullopt;
    }
    return Range{0, recording.frames() - 1};
}

bool writeDump(Recording& recording, const Range& range, Kind kind,
               const std::filesystem::path& path, std::optional<std::uint8_t> mode,
               const Progress& progress) {
    if (range.first > range.last || range.last >= recording.frames()) {
        throw std::out_of_range("there are no frames " + std::to_string(range.first) + " to " +
                                std::to_string(range.last));
    }
    const bool fromText = kind == Kind::Raw && recording.kind() == Kind::Text;
    const InputModeInfo* const wanted = fromText ? &rawMode(mode) : nullptr;
    OutputFile file(path);
    const auto writer = writerFor(recording, kind, file, wanted);
    const std::uint64_t count = range.last - range.first + 1;
    Frame frame;
    for (std::uint64_t i = 0; i < count; ++i) {
        kind == Kind::Text ? recording.readDigits(range.first + i, frame)
                           : recording.read(range.first + i, frame);
        writer->write(frame);
        if (!goesOn(progress, i + 1, count)) {
            return false;
        }
    }
    file.finish();
    return true;
}

}  // namespace recording
