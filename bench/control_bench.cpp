// lumadotctl as a process on the simulated bus, in turns with a program on libusb alone that does
// the same transfers:
//
//   mode     lumadotctl mode 2, from its start to its end
//   record   10,000 frames of four planes, each appended to a freshly opened file
//
// Exit code 1: one of the figures is not what it has to be.

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <initializer_list>
#include <string>
#include <vector>

namespace {

constexpr double WantedTime = 1.5;  // of the bare program's
constexpr double WantedRate = 0.8;
constexpr int ModeRuns = 301;
constexpr int RecordRuns = 11;
constexpr int Frames = 10000;

const std::filesystem::path Folder = "/dev/shm/lumadot_control_bench_" + std::to_string(getpid());

using Command = std::vector<std::string>;

/// Seconds from the start of a process to its end.
double run(const Command& command) {
    std::vector<char*> arguments;
    for (const std::string& word : command) {
        arguments.push_back(const_cast<char*>(word.c_str()));
    }
    arguments.push_back(nullptr);
    const auto start = std::chrono::steady_clock::now();
    pid_t process = 0;
    int status = -1;
    if (posix_spawn(&process, arguments[0], nullptr, nullptr, arguments.data(), environ) != 0 ||
        waitpid(process, &status, 0) != process || status != 0) {
        std::printf("FAIL  %s %s did not do its work\n", arguments[0], arguments[1]);
        std::exit(EXIT_FAILURE);
    }
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

struct Pair {
    double tool;
    double bare;
};

double medianOf(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

void emptyFolder() {
    std::filesystem::remove_all(Folder);
    std::filesystem::create_directory(Folder);
}

/// Medians of runs in turns: what disturbs one disturbs the other.
Pair measure(const Command& tool, const Command& bare, int runs) {
    std::vector<double> toolTimes;
    std::vector<double> bareTimes;
    for (int i = 0; i < runs; ++i) {
        emptyFolder();
        toolTimes.push_back(run(tool));
        emptyFolder();
        bareTimes.push_back(run(bare));
    }
    return {medianOf(toolTimes), medianOf(bareTimes)};
}

bool report(const char* what, double figure, const char* relation, double wanted, bool good) {
    std::printf("%s  %s: %.2f (wanted: %s %.2f)\n", good ? "pass" : "FAIL", what, figure, relation,
                wanted);
    return good;
}

bool judgeMode() {
    const Pair time =
        measure({LUMADOTCTL, "--quiet", "mode", "2"}, {BARE_PROGRAM, "mode", "2"}, ModeRuns);
    std::printf("mode 2: lumadotctl %.2f ms, bare program %.2f ms\n", time.tool * 1e3,
                time.bare * 1e3);
    const double share = time.tool / time.bare;
    return report("mode 2: the bare program's time", share, "at most", WantedTime,
                  share <= WantedTime);
}

bool judgeRecord() {
    const std::string frames = std::to_string(Frames);
    const Pair time =
        measure({LUMADOTCTL, "--quiet", "record", Folder, "--mode", "2", "--frames", frames},
                {BARE_PROGRAM, "record", Folder / "bare.txt", frames}, RecordRuns);
    std::printf("record: lumadotctl %.0f frames a second, bare program %.0f\n", Frames / time.tool,
                Frames / time.bare);
    const double share = time.bare / time.tool;
    return report("record: the bare program's frame rate", share, "at least", WantedRate,
                  share >= WantedRate);
}

}  // namespace

int main() {
    setenv("LD_LIBRARY_PATH", SIMULATED_BUS, 1);
    setenv("LUMADOT_SIM_BOARD", "standard", 1);
    const bool mode = judgeMode();
    const bool recording = judgeRecord();
    std::filesystem::remove_all(Folder);
    return mode && recording ? EXIT_SUCCESS : EXIT_FAILURE;
}
