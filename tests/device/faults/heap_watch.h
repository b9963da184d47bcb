#ifndef LUMADOT_TESTS_DEVICE_FAULTS_HEAP_WATCH_H
#define LUMADOT_TESTS_DEVICE_FAULTS_HEAP_WATCH_H

#include <cstddef>
#include <functional>
#include <ostream>
#include <vector>

namespace faults {

/// What an action leaves behind in this process.
struct Kept {
    std::vector<std::size_t> blocks;  ///< sizes in bytes, ascending
    int files = 0;                    ///< open files in the tests' folders

    bool operator==(const Kept&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const Kept& kept);

/// Runs the action and tells what it took from C++'s heap and has not given back, and the files
/// that it left open. What the simulated bus takes for itself is left out. A program with this file
/// has allocation functions of its own.
Kept keptBy(const std::function<void()>& action);

}  // namespace faults

#endif
