#ifndef LUMADOT_VIEWER_WORDS_H
#define LUMADOT_VIEWER_WORDS_H

#include <cstdint>
#include <filesystem>
#include <string>

#include "recording/error.h"
#include "viewer/survey.h"

/// What the window says, in words: UTF-8.
namespace viewer::words {

/// "0:01:02.345".
std::string time(std::uint64_t ms);

/// "2.5 s without a frame", "A step of 0.1 s back in time".
std::string gap(const Gap& gap);

/// What went wrong, and what to do now.
std::string problem(const std::string& what, recording::Failure failure);

}  // namespace viewer::words

#endif
