#ifndef LUMADOT_TESTS_SUPPORT_LEAKS_MEANT_H
#define LUMADOT_TESTS_SUPPORT_LEAKS_MEANT_H

// There only in builds with the leak checker.
extern "C" {
void __lsan_disable() __attribute__((weak));  // NOLINT(bugprone-reserved-identifier)
void __lsan_enable() __attribute__((weak));   // NOLINT(bugprone-reserved-identifier)
}

namespace support {

/// What is allocated while it lives may stay allocated: for tests of the paths on which the tool
/// keeps its blocks on purpose.
class LeaksMeant {
public:
    LeaksMeant() {
        if (__lsan_disable != nullptr) {
            __lsan_disable();
        }
    }
    ~LeaksMeant() {
        if (__lsan_enable != nullptr) {
            __lsan_enable();
        }
    }
    LeaksMeant(const LeaksMeant&) = delete;
    LeaksMeant& operator=(const LeaksMeant&) = delete;
};

}  // namespace support

#endif
