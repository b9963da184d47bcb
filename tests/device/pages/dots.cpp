#include "tests/device/pages/dots.h"

#include "tests/device/pages/page.h"

namespace pages {

namespace {

std::string weights(int planes) {
    std::string sum = "b0";
    for (int plane = 1; plane < planes; ++plane) {
        sum += text(" + ", 1 << plane, " b", plane);
    }
    return sum;
}

int valueOf(char digit) { return std::stoi(std::string(1, digit), nullptr, 16); }

}  // namespace

std::string dotsOf(const dump::Geometry& display) {
    return text(display.rowBytes * 8, " x ", display.rows);
}

std::string rowsOf(const dump::Geometry& display) {
    return text(display.rows, " rows of ", display.rowBytes, " bytes");
}

std::string withCommas(const std::vector<int>& numbers) {
    std::string all;
    for (const int number : numbers) {
        all += (all.empty() ? "" : ", ") + std::to_string(number);
    }
    return all;
}

std::string ruleText(const DotRule& rule, int planes) {
    if (rule.planes == 0) {
        return "0";
    }
    bool plain = true;
    std::string through = ", through";
    for (std::size_t sum = 0; sum < rule.digits.size(); ++sum) {
        const int shade = valueOf(rule.digits[sum]);
        plain = plain && shade == static_cast<int>(sum);
        through += " " + std::to_string(shade);
    }
    std::string rules = rule.sum == DotRule::Sum::Weighted ? weights(rule.planes) : "bits set";
    rules += plain ? "" : through;
    return rules + (planes < rule.planes ? "; what did not arrive counts as zero" : "");
}

}  // namespace pages
