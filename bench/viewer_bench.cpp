// The whole viewer on a recording of several GiB, raw and text: the time from the start of its
// process until the first frame is on the screen. The files are made in the file system in memory,
// one after the other. Needs a display.
//
//     viewer_bench [MiB]          3072 unless said otherwise
//
// Exit code 1: at the median a recording is not there after 2 s.

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "bench/large_dump.h"
#include "bench/report.h"

// Last: its macros are called like other people's functions.
#include <X11/Xlib.h>
#include <X11/Xutil.h>

namespace {

constexpr double WantedSeconds = 2;
constexpr double Patience = 60;  // s
constexpr int Runs = 5;

/// The brightest entry of the preset that the viewer starts with; no theme has it.
constexpr unsigned long LitDot = 0xFF8700;
constexpr int EnoughPixels = 1000;

class Screen {
public:
    Screen() : display_(XOpenDisplay(nullptr)) {
        if (display_ == nullptr) {
            std::printf("FAIL  there is no display; run it with scripts/on_display.sh\n");
            std::exit(EXIT_FAILURE);
        }
    }
    ~Screen() { XCloseDisplay(display_); }
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;

    bool showsAFrame() const {
        const auto width = static_cast<unsigned>(DisplayWidth(display_, 0));
        const auto height = static_cast<unsigned>(DisplayHeight(display_, 0));
        XImage* const image = XGetImage(display_, DefaultRootWindow(display_), 0, 0, width, height,
                                        AllPlanes, ZPixmap);
        int lit = 0;
        for (int y = 0; y < image->height; ++y) {
            for (int x = 0; x < image->width; ++x) {
                lit += (XGetPixel(image, x, y) & 0xFFFFFFU) == LitDot ? 1 : 0;
            }
        }
        XDestroyImage(image);
        return lit >= EnoughPixels;
    }

private:
    Display* display_;
};

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

/// Seconds until the first frame is seen.
double open(const std::string& file) {
    const Screen screen;
    std::string program = LUMADOT_VIEWER;
    std::string name = file;
    char* arguments[] = {program.data(), name.data(), nullptr};
    const auto start = Clock::now();
    pid_t viewer = 0;
    if (posix_spawn(&viewer, program.c_str(), nullptr, nullptr, arguments, environ) != 0) {
        std::printf("FAIL  %s does not start\n", program.c_str());
        std::exit(EXIT_FAILURE);
    }
    while (!screen.showsAFrame() && secondsSince(start) < Patience) {
        usleep(1000);
    }
    const double seconds = secondsSince(start);
    kill(viewer, SIGKILL);
    waitpid(viewer, nullptr, 0);
    while (screen.showsAFrame()) {
        usleep(1000);
    }
    return seconds;
}

bool judge(const char* kindName, const std::string& file, const bench::DumpKind& kind,
           std::uint64_t size) {
    const std::uint64_t frames = bench::makeLargeDump(file, kind, size);
    const std::string small = file + "_small" + file.substr(file.rfind('.'));
    bench::makeLargeDump(small, kind, 1);
    std::vector<double> all;
    for (int run = 0; run < Runs; ++run) {
        const double seconds = open(file);
        std::printf("%s of %.1f GiB, %llu frames: %.2f s; of one frame: %.2f s\n", kindName,
                    static_cast<double>(size) / (1U << 30U),
                    static_cast<unsigned long long>(frames), seconds, open(small));
        all.push_back(seconds);
    }
    std::filesystem::remove(file);
    std::filesystem::remove(small);
    std::ranges::sort(all);
    return bench::atMost(std::string(kindName) + ": s until the first frame", all[Runs / 2],
                         WantedSeconds);
}

}  // namespace

int main(int argc, char** argv) {
    const std::uint64_t size = (argc > 1 ? std::stoull(argv[1]) : 3072) << 20U;
    const std::string start = "/dev/shm/lumadot_viewer_bench_lumadot_dump";
    const bool raw = judge("a raw dump", start + ".raw", {.rawPlanes = 3}, size);
    const bool text = judge("a text dump", start + ".txt", {}, size);
    return raw && text ? EXIT_SUCCESS : EXIT_FAILURE;
}
