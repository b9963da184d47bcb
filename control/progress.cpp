#include "control/progress.h"

#include <algorithm>

#include "control/text.h"

namespace control {

namespace {

constexpr std::size_t BarWidth = 20;
constexpr std::size_t NameWidth = 24;  // Leaves room for the rest in 80 columns.

std::string bar(double share) {
    const auto filled = static_cast<std::size_t>(share * BarWidth);
    return "[" + std::string(filled, '#') + std::string(BarWidth - filled, '-') + "]";
}

std::string twoDigits(int number) { return (number < 10 ? "0" : "") + std::to_string(number); }

std::string framesText(std::size_t frames, double seconds) {
    return seconds > 0 ? decimal(static_cast<double>(frames) / seconds) + " frames/s" : "-";
}

std::string minutes(double seconds) {
    constexpr double Longest = 100.0 * 60;
    const int whole = static_cast<int>(std::clamp(seconds, 0.0, Longest));
    return std::to_string(whole / 60) + ":" + twoDigits(whole % 60);
}

}  // namespace

std::string rateText(std::size_t bytes, double seconds) {
    return seconds > 0 ? sizeText(static_cast<double>(bytes) / seconds) + "/s" : "-";
}

Progress::Progress(Output& output, const std::string& name, std::size_t total, Unit unit)
    : output_(output), name_(printable(name).substr(0, NameWidth)), total_(total), unit_(unit) {}

void Progress::update(std::size_t done) {
    constexpr Milliseconds Between{100};
    if (!output_.showsProgress() || now() - drawn_ < Between) {
        return;
    }
    drawn_ = now();
    const double share = total_ > 0 ? static_cast<double>(done) / static_cast<double>(total_) : 1.0;
    const double seconds = secondsSince(start_);
    const std::string left = share > 0 ? minutes(seconds / share - seconds) : "-:--";
    output_.progress(name_ + "  " + bar(share) + "  " +
                     std::to_string(static_cast<int>(share * 100)) + " %  " +
                     (unit_ == Unit::Bytes ? rateText(done, seconds) : framesText(done, seconds)) +
                     "  " + left + " left");
}

}  // namespace control
