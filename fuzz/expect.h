#ifndef LUMADOT_FUZZ_EXPECT_H
#define LUMADOT_FUZZ_EXPECT_H

#include <cstdio>
#include <cstdlib>

/// Ends the run, which libFuzzer reports with the input, when the condition does not hold.
#define EXPECT(condition)                                                        \
    do {                                                                         \
        if (!(condition)) {                                                      \
            std::fprintf(stderr, "%s:%d: %s\n", __FILE__, __LINE__, #condition); \
            std::abort();                                                        \
        }                                                                        \
    } while (false)

#endif
