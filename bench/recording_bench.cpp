// The index of a dump of 2 GiB with all that is to be said about it, beside `wc -l` of the same
// file, in turns: raw (frames that differ, and frames that are all equal) and text (the same, and
// the XL board's). The files are made in the file system in memory, one after the other.
//
//     recording_bench [MiB]          2048 unless said otherwise
//
// Exit code 1: raw is not twice as fast as `wc -l`, or text not as fast, or the peak memory of the
// process is 50 MiB or more. Reading takes two processors.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "bench/large_dump.h"
#include "bench/report.h"
#include "recording/recording.h"

namespace {

constexpr double WantedRawGain = 2;
constexpr double WantedTextGain = 1;
constexpr double WantedPeakMiB = 50;
constexpr int Rounds = 7;

const std::filesystem::path File = "/dev/shm/lumadot_recording_bench";

struct Case {
    const char* name;
    bench::DumpKind kind;
};
constexpr Case Cases[] = {
    {"raw, 3 planes", {.rawPlanes = 3}},
    {"raw, 12 planes", {.rawPlanes = 12}},
    {"raw, 3 planes, all frames equal", {.rawPlanes = 3, .equal = true}},
    {"text", {}},
    {"text, all frames equal", {.equal = true}},
    {"text of the XL board", {.xl = true}},
};

/// The most memory that the process had, mapped pages included.
double peakMiB() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("VmHWM:")) {
            return std::stod(line.substr(6)) / 1024;
        }
    }
    return 0;
}

/// All that is to be said about the dump, right or the benchmark ends.
void look(const Case& chosen, std::uint64_t count) {
    recording::Recording dump(File);
    dump.extend();
    const recording::Summary& summary = dump.summary();
    const std::uint64_t equal = chosen.kind.equal ? count - 1 : 0;
    if (summary.frames != count || summary.equalNeighbours != equal ||
        summary.durationMs != 16 * (count - 1) || dump.damageCount() != 0) {
        std::printf("FAIL  %s: read wrongly\n", chosen.name);
        std::exit(EXIT_FAILURE);
    }
}

bool judge(const Case& chosen, std::uint64_t size) {
    const std::uint64_t count = bench::makeLargeDump(File, chosen.kind, size);
    double own = 1e9;
    double lines = 1e9;
    for (int round = 0; round < Rounds; ++round) {
        own = std::min(own, bench::fastest(1, [&] { look(chosen, count); }));
        lines = std::min(lines, bench::fastest(1, [] {
                             const std::string command = "wc -l " + File.string() + " >/dev/null";
                             if (std::system(command.c_str()) != 0) {
                                 std::exit(EXIT_FAILURE);
                             }
                         }));
    }
    std::printf("%s: %llu frames in %.3f s, wc -l %.3f s, peak memory %.1f MiB\n", chosen.name,
                static_cast<unsigned long long>(count), own, lines, peakMiB());
    return bench::atLeast(std::string(chosen.name) + ": speed beside wc -l", lines / own,
                          chosen.kind.rawPlanes != 0 ? WantedRawGain : WantedTextGain);
}

}  // namespace

int main(int argc, char** argv) {
    const std::uint64_t mebibytes = argc > 1 ? std::stoull(argv[1]) : 2048;
    bool good = true;
    for (const Case& chosen : Cases) {
        good &= judge(chosen, mebibytes << 20U);
    }
    std::filesystem::remove(File);
    good &= bench::atMost("peak memory, MiB", peakMiB(), WantedPeakMiB);
    return good ? EXIT_SUCCESS : EXIT_FAILURE;
}
