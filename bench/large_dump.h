#ifndef LUMADOT_BENCH_LARGE_DUMP_H
#define LUMADOT_BENCH_LARGE_DUMP_H

#include <cstdint>
#include <filesystem>

namespace bench {

struct DumpKind {
    std::uint8_t rawPlanes = 0;  ///< 0: text
    bool xl = false;
    bool equal = false;  ///< all frames
};

/// Writes a dump of this many bytes at least, as a capture writes it: frames 16 ms apart, 64
/// different ones again and again. Returns how many. Ends the benchmark when the file cannot be
/// written.
std::uint64_t makeLargeDump(const std::filesystem::path& path, const DumpKind& kind,
                            std::uint64_t size);

}  // namespace bench

#endif
