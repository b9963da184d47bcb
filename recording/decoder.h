#ifndef LUMADOT_RECORDING_DECODER_H
#define LUMADOT_RECORDING_DECODER_H

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "device/dot_sums.h"

namespace recording {

/// Turns bit planes into the digits of a text dump.
class Decoder {
public:
    /// `rule` must outlive it, as those of the input modes do.
    Decoder(const DotRule& rule, const dump::Geometry& display);

    /// The digits' values, row by row; what `planes` do not hold counts as zero.
    void decode(std::span<const std::uint8_t> planes, std::vector<std::uint8_t>& digits);

    const DotRule& rule() const { return *rule_; }

private:
    const DotRule* rule_;
    dump::Geometry display_;
    dump::DotSums sums_;
    std::array<std::uint8_t, 16> values_{};  ///< of the digits, by the dots' sums
};

/// The value of a digit, '0' to '9' or 'a' to 'f'.
constexpr std::uint8_t digitValue(char digit) {
    return static_cast<std::uint8_t>(digit <= '9' ? digit - '0' : digit - 'a' + 10);
}

}  // namespace recording

#endif
