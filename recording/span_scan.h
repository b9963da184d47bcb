#ifndef LUMADOT_RECORDING_SPAN_SCAN_H
#define LUMADOT_RECORDING_SPAN_SCAN_H

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "recording/format.h"
#include "recording/frame_index.h"
#include "recording/source.h"
#include "recording/summary.h"

namespace recording {

/// Regular frames in a row.
struct ScannedSpan {
    Summary summary;
    std::vector<FrameIndex::Mark> marks;  ///< counted from its first frame
    bool whole = false;                   ///< all its frames were regular
};

/// Scans the frames from `offset` up to `limit` with several threads, each with a source of its
/// own. A regular frame must end at `offset`. Hands over span after span, in the order of the file,
/// on the thread of the caller, until one is not whole, or the answer is false, or the file ends.
/// Throws what reading threw.
void scanSpans(const Format& format, const std::vector<std::unique_ptr<Source>>& sources,
               std::uint64_t offset, std::uint64_t limit,
               const std::function<bool(const ScannedSpan&)>& take);

}  // namespace recording

#endif
