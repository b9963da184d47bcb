#include "pictures/sequence.h"

#include <algorithm>
#include <memory>

namespace pictures {

Sequence sequenceOf(recording::Recording& recording, const recording::Range& range,
                    const DigitEntries& entries) {
    recording.needDigits();
    Sequence sequence;
    sequence.count = range.last - range.first + 1;
    sequence.spanMs = recording.elapsedMs(range.last) - recording.elapsedMs(range.first);
    const auto display = recording.display().value_or(dump::StandardDisplay);
    sequence.columns = display.columns();
    sequence.rows = display.rows;
    const auto frame = std::make_shared<recording::Frame>();
    sequence.read = [&recording, first = range.first, entries, frame](
                        std::uint64_t number, std::vector<std::uint8_t>& into) {
        recording.readDigits(first + number, *frame);
        into.resize(frame->digits.size());
        std::ranges::transform(frame->digits, into.begin(),
                               [&](std::uint8_t digit) { return entries[digit]; });
        return frame->stampMs;
    };
    return sequence;
}

bool findShades(recording::Recording& recording, const recording::Range& range, ShadeSet& shades,
                const recording::Progress& progress) {
    const std::uint64_t count = range.last - range.first + 1;
    std::uint8_t highest = 0;
    recording::Frame frame;
    for (std::uint64_t i = 0; i < count; ++i) {
        recording.readDigits(range.first + i, frame);
        highest = std::max(highest, *std::ranges::max_element(frame.digits));
        if (!recording::goesOn(progress, i + 1, count)) {
            return false;
        }
    }
    shades = shadesUpTo(highest);
    return true;
}

}  // namespace pictures
