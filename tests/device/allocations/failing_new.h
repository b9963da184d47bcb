#ifndef LUMADOT_TESTS_DEVICE_ALLOCATIONS_FAILING_NEW_H
#define LUMADOT_TESTS_DEVICE_ALLOCATIONS_FAILING_NEW_H

#include <cstddef>

/// A program with failing_new.cpp has allocation functions of its own, which tell who asks for a
/// block of C++'s heap, and can refuse one.
namespace allocations {

/// What was asked for during a watch.
struct Asked {
    int tool = 0;     ///< by the tool's code, and by the toolkit's that is compiled into it
    int toolkit = 0;  ///< by the toolkit's and the desktop's libraries
    int bus = 0;      ///< by the simulated bus
    bool refused = false;
    int kept = 0;  ///< of the tool's blocks, not given back
};

/// Starts a watch in which the nth block that the tool asks for is refused (0: none is).
void watch(int nth);
Asked endWatch();

/// While it lives nothing is counted and nothing refused: the test's own work.
class Unwatched {
public:
    Unwatched();
    ~Unwatched();
    Unwatched(const Unwatched&) = delete;
    Unwatched& operator=(const Unwatched&) = delete;

private:
    bool before_;
};

}  // namespace allocations

#endif
