#ifndef LUMADOT_RECORDING_INDEXER_H
#define LUMADOT_RECORDING_INDEXER_H

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "recording/damage.h"
#include "recording/format.h"
#include "recording/frame_index.h"
#include "recording/progress.h"
#include "recording/source.h"
#include "recording/span_scan.h"
#include "recording/summary.h"
#include "recording/window.h"

namespace recording {

/// Goes through a dump once, and further when it has grown: where its frames are, what there is to
/// be said about them, and what is damaged.
class Indexer {
public:
    /// Damaged places that are kept; of more than that only the number is known.
    static constexpr std::size_t MaxDamages = std::size_t{1} << 18U;

    /// `format` as the file starts. The source must outlive it.
    Indexer(Source& source, std::unique_ptr<Format> format);

    /// Goes on from where it is to the present end of the file. False: `progress`, which is told of
    /// bytes, wanted it to end; it can be gone on with later.
    bool extend(const Progress& progress);

    /// Whether the file has become shorter than what is indexed: it is not the same any more.
    bool isPastEnd() const { return source_.size() < limit_; }

    const FrameIndex& frames() const { return index_; }
    const Summary& summary() const { return summary_; }
    const std::vector<Damage>& damages() const { return damages_; }
    std::uint64_t damageCount() const { return damageCount_; }
    Format& format() const { return *format_; }

    /// The bytes of the file that are indexed.
    std::uint64_t limit() const { return limit_; }

private:
    bool scanWindow();
    bool isWorthThreads() const;
    bool scanAhead(const Progress& progress);
    void takeSpan(const ScannedSpan& span);
    void take(const Piece& piece, bool counted);
    void reopenEnd();
    const std::uint8_t* previous() const;

    Source& source_;
    Window window_;
    std::unique_ptr<Format> format_;
    FrameIndex index_;
    Summary summary_;
    std::vector<Damage> damages_;
    std::uint64_t damageCount_ = 0;
    std::vector<std::uint8_t> previous_;  ///< dots of the last frame
    std::uint64_t at_ = 0;                ///< everything before is indexed
    std::uint64_t limit_ = 0;
    std::uint64_t regularSince_ = 0;                ///< regular frames only from there to `at_`
    std::optional<Piece> end_;                      ///< the piece that the file broke off in
    std::vector<std::unique_ptr<Source>> helpers_;  ///< for the threads
};

}  // namespace recording

#endif
