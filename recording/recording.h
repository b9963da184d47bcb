#ifndef LUMADOT_RECORDING_RECORDING_H
#define LUMADOT_RECORDING_RECORDING_H

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "device/dot_sums.h"
#include "device/input_mode.h"
#include "recording/damage.h"
#include "recording/decoder.h"
#include "recording/frame.h"
#include "recording/frame_index.h"
#include "recording/indexer.h"
#include "recording/progress.h"
#include "recording/source.h"
#include "recording/summary.h"
#include "recording/window.h"

/// Dumps read back: what captures have written, in a file of any size, without holding more than a
/// few pieces of it in memory.
namespace recording {

enum class Kind { Text, Raw };

/// A dump, text or raw. Open it, let `extend` make its index, then read any frame by its number.
///
///     recording::Recording dump(path);
///     dump.extend();                        // again, now and then, follows a file that grows
///     recording::Frame frame = dump.frame(7);
///
/// One thread at a time may use it. Everything that reads throws Error (CannotRead).
class Recording {
public:
    /// Opens a file. Throws Error (CannotRead, NotARecording).
    explicit Recording(const std::filesystem::path& path);

    /// Any other source; `name` is for messages.
    Recording(std::unique_ptr<Source> source, std::string name);
    Recording(const Recording&) = delete;
    Recording& operator=(const Recording&) = delete;

    Kind kind() const { return kind_; }

    /// The dots of its frames. Nothing for a text dump as long as no frame is indexed. A raw dump's
    /// are 128 x 32, or 192 x 64 when it was recorded on the XL board.
    std::optional<dump::Geometry> display() const;

    /// Planes of a frame of a raw dump, as its first header says; nothing for a text dump.
    std::optional<std::uint8_t> planes() const;

    /// Brings the index up to the present end of the file; with a file that has become shorter it
    /// starts anew. False when `progress`, which counts bytes, wanted it to end: what is indexed so
    /// far can be used, and the next call goes on from there.
    bool extend(const Progress& progress = {});

    std::uint64_t frames() const { return indexer_->frames().frames(); }
    const Summary& summary() const { return indexer_->summary(); }

    /// The damaged places in the order of the file, and how many there are: only the first
    /// `Indexer::MaxDamages` are kept.
    const std::vector<Damage>& damages() const { return indexer_->damages(); }
    std::uint64_t damageCount() const { return indexer_->damageCount(); }

    /// Bytes of the file that the index covers.
    std::uint64_t indexedBytes() const { return indexer_->limit(); }

    /// Reads a frame; `into` can be used again and again. Throws std::out_of_range, or Error
    /// (Changed) when there is no such frame any more.
    void read(std::uint64_t number, Frame& into);
    Frame frame(std::uint64_t number);

    /// The same; throws Error (ModeNeeded), which lists the modes that fit, when it has no digits.
    void readDigits(std::uint64_t number, Frame& into);

    /// How long after the first frame this one comes: the steps between the stamps added up, each
    /// modulo 2^32. Throws std::out_of_range.
    std::uint64_t elapsedMs(std::uint64_t number);

    /// The last frame that does not come later than this after the first one. There must be frames.
    std::uint64_t frameAt(std::uint64_t elapsedMs);

    /// Reads a raw dump's dots as this input mode wants it; nothing: as its planes tell, if they
    /// do. A text dump's digits stand in the file, whatever the mode. Throws Error (ModeUnfit).
    void setMode(std::optional<std::uint8_t> mode);

    /// How a raw dump's dots are read; null when that is not known, and for a text dump.
    const DotRule* rule() const;

    /// Throws what `readDigits` would throw, judged by the first header.
    void needDigits() const;

    /// The text dump of the same capture beside a raw dump, when its frames are 192 x 64: then the
    /// raw dump was recorded on the XL board. Otherwise empty.
    const std::filesystem::path& xlTwin() const { return xlTwin_; }

    /// What a raw dump that was recorded on the XL board is missing, a sentence for people; empty
    /// when it is missing nothing, and for every other dump.
    std::string missing() const;

private:
    struct Next {
        std::uint64_t number;
        std::uint64_t offset;
    };

    std::unique_ptr<Format> identify();
    Piece find(std::uint64_t number);
    const DotRule* ruleFor(std::uint8_t planes) const;
    [[noreturn]] void askForMode(std::uint8_t planes) const;

    std::string name_;
    std::unique_ptr<Source> source_;
    std::filesystem::path xlTwin_;
    Kind kind_ = Kind::Text;
    std::uint8_t planes_ = 0;
    std::optional<std::uint8_t> mode_;
    std::unique_ptr<Indexer> indexer_;
    std::unique_ptr<Format> reader_;  ///< of single frames, from the window
    Window window_;
    std::optional<Next> next_;  ///< behind the frame that was read last
    std::optional<Decoder> decoder_;
};

}  // namespace recording

#endif
