#include "recording/decoder.h"

#include <algorithm>

namespace recording {

Decoder::Decoder(const DotRule& rule, const dump::Geometry& display)
    : rule_(&rule), display_(display), sums_(rule, display) {
    const std::size_t sums = std::min(rule.digits.size(), values_.size());
    std::ranges::transform(rule.digits.substr(0, sums), values_.begin(), digitValue);
}

void Decoder::decode(std::span<const std::uint8_t> planes, std::vector<std::uint8_t>& digits) {
    sums_.take(planes);
    digits.resize(display_.rows * display_.columns());
    std::uint8_t* digit = digits.data();
    for (std::size_t row = 0; row < display_.rows; ++row) {
        const dump::DotSums::Row sums = sums_.row(row);
        for (std::size_t byte = 0; byte < display_.rowBytes; ++byte) {
            std::uint64_t dots = sums.eightDots(byte);
            for (std::size_t dot = 0; dot < dump::DotsPerByte; ++dot, dots >>= 8U) {
                *digit++ = values_[dots & 0xFU];
            }
        }
    }
}

}  // namespace recording
