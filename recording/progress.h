#ifndef LUMADOT_RECORDING_PROGRESS_H
#define LUMADOT_RECORDING_PROGRESS_H

#include <cstdint>
#include <functional>

namespace recording {

/// Called now and then by long work, on the thread that asked for it, with how much of it is done.
/// The work ends as soon as the answer is false. May be empty.
using Progress = std::function<bool(std::uint64_t done, std::uint64_t total)>;

/// Asks `progress`, if there is one, whether to go on.
inline bool goesOn(const Progress& progress, std::uint64_t done, std::uint64_t total) {
    return !progress || progress(done, total);
}

}  // namespace recording

#endif
