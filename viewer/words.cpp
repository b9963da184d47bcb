#include "viewer/words.h"

#include <cstdio>

#include "recording/summary.h"

namespace viewer::words {

namespace {

const char* adviceFor(recording::Failure failure) {
    switch (failure) {
        case recording::Failure::NotARecording:
            return "Open a file that a recording has written: ..._lumadot_dump.txt or "
                   "..._lumadot_dump.raw.";
        case recording::Failure::NotAPicture:
            return "Choose a PNG that other programs can show.";
        case recording::Failure::Changed:
            return "Open it again with File, Reload.";
        case recording::Failure::ModeNeeded:
            return "Choose it under \"Input mode\".";
        case recording::Failure::ModeUnfit:
            return "Choose another input mode.";
        case recording::Failure::CannotWrite:
            return "Check the folder, its permissions and the room on the disk, or choose another "
                   "file.";
        case recording::Failure::CannotConvert:
            return "Choose fewer frames, a smaller scale, or another kind of file.";
        case recording::Failure::CannotRead:
            break;
    }
    return "Check its name and permissions, and open it again.";
}

std::string seconds(std::uint32_t ms) {
    constexpr std::uint32_t Tenth = 100;
    const std::uint32_t tenths = ms / Tenth + (ms % Tenth >= Tenth / 2 ? 1 : 0);
    return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + " s";
}

}  // namespace

std::string time(std::uint64_t ms) {
    constexpr std::uint64_t Second = 1000;
    constexpr std::uint64_t Minute = 60 * Second;
    constexpr std::uint64_t Hour = 60 * Minute;
    char text[48];
    std::snprintf(text, sizeof(text), "%llu:%02u:%02u.%03u",
                  static_cast<unsigned long long>(ms / Hour),
                  static_cast<unsigned>(ms % Hour / Minute),
                  static_cast<unsigned>(ms % Minute / Second), static_cast<unsigned>(ms % Second));
    return text;
}

std::string gap(const Gap& gap) {
    if (recording::isBackwards(gap.ms)) {
        return "A step of " + seconds(std::uint32_t{0} - gap.ms) + " back in time";
    }
    return seconds(gap.ms) + " without a frame";
}

std::string problem(const std::string& what, recording::Failure failure) {
    return what + ". " + adviceFor(failure);
}

}  // namespace viewer::words
