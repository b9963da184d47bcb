#ifndef LUMADOT_BENCH_REPORT_H
#define LUMADOT_BENCH_REPORT_H

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <limits>
#include <string>

/// What the benchmarks that judge themselves have in common.
namespace bench {

/// The shortest time of `rounds` calls, in s: what other programs on the machine disturbed least.
template <class Run>
double fastest(int rounds, Run run) {
    using Clock = std::chrono::steady_clock;
    double best = std::numeric_limits<double>::max();
    for (int i = 0; i < rounds; ++i) {
        const auto start = Clock::now();
        run();
        best = std::min(best, std::chrono::duration<double>(Clock::now() - start).count());
    }
    return best;
}

inline bool report(const std::string& what, double value, const char* relation, double wanted,
                   bool holds) {
    std::printf("%s  %-52s %10.2f  (wanted: %s %.2f)\n", holds ? "pass" : "FAIL", what.c_str(),
                value, relation, wanted);
    return holds;
}

inline bool atLeast(const std::string& what, double value, double wanted) {
    return report(what, value, "at least", wanted, value >= wanted);
}

inline bool atMost(const std::string& what, double value, double wanted) {
    return report(what, value, "at most", wanted, value <= wanted);
}

}  // namespace bench

#endif
