#ifndef LUMADOT_VIEWER_SHADES_H
#define LUMADOT_VIEWER_SHADES_H

#include <cstdint>
#include <optional>

#include "device/input_mode.h"
#include "recording/recording.h"
#include "ui/palette.h"

namespace viewer {

/// What is known of the display that was recorded; where nothing is said the frames tell.
struct Shades {
    std::optional<std::uint8_t> mode;  ///< number of the input mode
    std::optional<ShadeSet> set;

    bool operator==(const Shades&) const = default;
};

/// The palette entry of each digit. `highestDigit` of the frames counts where nothing is said.
inline DigitEntries entriesOf(const Shades& shades, std::uint8_t highestDigit) {
    if (shades.set) {
        return digitEntries(*shades.set);
    }
    return shades.mode ? digitEntries(inputMode(*shades.mode))
                       : digitEntries(shadesUpTo(highestDigit));
}

/// Whether a recording can be read as one of this mode.
bool fits(const InputModeInfo& mode, const recording::Recording& recording);

}  // namespace viewer

#endif
