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
#include <random>
#include <string>
#include <vector>

#include "bench/report.h"
#include "device/dump_format.h"
#include "recording/recording.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr double WantedRawGain = 2;
constexpr double WantedTextGain = 1;
constexpr double WantedPeakMiB = 50;
constexpr int Rounds = 7;
constexpr std::size_t Different = 64;  ///< frames that are written again and again

const std::filesystem::path File = "/dev/shm/lumadot_recording_bench";

struct Case {
    const char* name;
    std::uint8_t rawPlanes;  ///< 0: text
    bool xl;
    bool equal;
};
constexpr Case Cases[] = {
    {"raw, 3 planes", 3, false, false},
    {"raw, 12 planes", 12, false, false},
    {"raw, 3 planes, all frames equal", 3, false, true},
    {"text", 0, false, false},
    {"text, all frames equal", 0, false, true},
    {"text of the XL board", 0, true, false},
};

Bytes randomBytes(std::size_t size, unsigned seed) {
    std::mt19937 random(seed);
    Bytes bytes(size);
    std::ranges::generate(bytes, [&] { return static_cast<std::uint8_t>(random()); });
    return bytes;
}

/// Frames as a capture writes them, 16 ms apart.
class Frames {
public:
    explicit Frames(const Case& chosen)
        : case_(chosen),
          encoder_(chosen.xl ? dump::XlDots : inputMode(InputMode::Stern).dots,
                   chosen.xl ? dump::XlDisplay : dump::StandardDisplay) {
        constexpr std::size_t Enough = 12 * dump::RawPlaneBytes;
        for (unsigned i = 0; i < Different; ++i) {
            planes_.push_back(randomBytes(Enough, chosen.equal ? 0 : i));
        }
    }

    Bytes next() {
        const Bytes& planes = planes_[number_ % Different];
        const auto stamp = static_cast<std::uint32_t>(0x4D5A2F11 + 16 * number_++);
        if (case_.rawPlanes != 0) {
            return dump::rawBlock(stamp, case_.rawPlanes, planes);
        }
        const auto block = encoder_.encode(stamp, planes);
        return {block.begin(), block.end()};
    }

private:
    const Case& case_;
    dump::TextEncoder encoder_;
    std::vector<Bytes> planes_;
    std::uint64_t number_ = 0;
};

/// Frames in the file.
std::uint64_t makeFile(const Case& chosen, std::uint64_t size) {
    std::ofstream file(File, std::ios::binary);
    const auto put = [&](const auto& bytes) {
        file.write(reinterpret_cast<const char*>(bytes.data()),
                   static_cast<std::streamsize>(bytes.size()));
    };
    if (chosen.rawPlanes != 0) {
        put(dump::rawHeader(chosen.rawPlanes));
    }
    Frames frames(chosen);
    std::uint64_t count = 0;
    for (std::uint64_t written = 0; written < size; ++count) {
        const Bytes frame = frames.next();
        put(frame);
        written += frame.size();
    }
    if (!file.flush()) {
        std::printf("%s cannot be written\n", File.c_str());
        std::exit(EXIT_FAILURE);
    }
    return count;
}

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
    const std::uint64_t equal = chosen.equal ? count - 1 : 0;
    if (summary.frames != count || summary.equalNeighbours != equal ||
        summary.durationMs != 16 * (count - 1) || dump.damageCount() != 0) {
        std::printf("FAIL  %s: read wrongly\n", chosen.name);
        std::exit(EXIT_FAILURE);
    }
}

bool judge(const Case& chosen, std::uint64_t size) {
    const std::uint64_t count = makeFile(chosen, size);
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
                          chosen.rawPlanes != 0 ? WantedRawGain : WantedTextGain);
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
