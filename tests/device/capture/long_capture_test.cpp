// A capture of hours: neither memory nor time grows with the frames that were taken.

#include <libusb.h>
#include <malloc.h>
#include <time.h>
#include <unistd.h>

#include <fstream>
#include <iostream>

#include "tests/device/capture/capture_link.h"

namespace {

using capture::CaptureLink;

#ifdef LUMADOT_INSTRUMENTED
constexpr int Frames = 10000;
constexpr bool Instrumented = true;
#else
constexpr int Frames = 200000;
constexpr bool Instrumented = false;
#endif

constexpr int Block = 50;    ///< frames that are timed together
constexpr int Timed = 1000;  ///< frames that are compared, at the start and at the end
constexpr int Retries = 20;
constexpr int Restart = 1000;  ///< frames after which the file starts anew

double processorMs() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

long residentKb() {
    long pages = 0;
    std::ifstream file("/proc/self/statm");
    file >> pages >> pages;
    return pages * sysconf(_SC_PAGESIZE) / 1024;
}

/// A fixed piece of work of a frame's kind, in ms: what else the machine does slows both.
double yardstick(const std::filesystem::path& file) {
    static const std::string bytes(4174, '0');  // As long as a frame's text block.
    const double start = processorMs();
    std::filesystem::remove(file);
    for (int i = 0; i < Block; ++i) {
        std::ofstream(file, std::ios::app | std::ios::binary) << bytes;
    }
    return processorMs() - start;
}

double median(std::vector<double> values) {
    std::ranges::sort(values);
    return values[values.size() / 2];
}

class LongCapture : public CaptureLink {
protected:
    LongCapture() {
        blocks.reserve((Frames + Retries * Timed) / Block + 1);
        bus.setLogging(false);
        rounds.setLimit(Frames + Retries * Timed);
    }

    void atRead(int frame) {
        if (frame % Restart == 1) {
            truncate();
        }
        if (frame % Block == 0) {
            const double took = processorMs() - last;
            blocks.push_back(took / yardstick(ruler.path() / "file"));
            last = processorMs();
        }
        if (frame == 100) {
            heap = mallinfo2().uordblks;
            resident = residentKb();
        }
        // Measured again when the core was busy with something else, or the kernel had not yet
        // counted or taken back every page: what grows stays slow, and large.
        if (frame >= Frames && frame % Timed == 0) {
            heapAtEnd = mallinfo2().uordblks;
            residentAtEnd = residentKb();
            const bool passed = Instrumented || (fastEnough() && smallEnough());
            dump_running = !passed && frame < Frames + Retries * Timed;
        }
    }
    double start() const {
        // The very first blocks hold the start: the connection, the animation's first frames.
        return median({blocks.begin() + 2, blocks.begin() + 2 + Timed / Block});
    }
    double end() const { return median({blocks.end() - Timed / Block, blocks.end()}); }
    bool fastEnough() const { return end() < 1.2 * start(); }
    // The toolkit and the C library may round up once; a byte a frame would be 200 KB.
    bool smallEnough() const {
        return residentAtEnd <= resident + 128 && heapAtEnd <= heap + 65536;
    }
    void truncate() const {
        for (const auto& entry : std::filesystem::directory_iterator(place.path())) {
            EXPECT_GT(entry.file_size(), 0U);
            std::filesystem::resize_file(entry.path(), 0);
        }
    }

    support::TemporaryFolder place{support::InMemory};  ///< where the capture goes
    support::TemporaryFolder ruler{support::InMemory};  ///< where the yardstick writes
    std::vector<double> blocks;  ///< what they took, by the yardstick's time beside them
    double last = processorMs();
    std::size_t heap = 0;
    std::size_t heapAtEnd = 0;
    long resident = 0;
    long residentAtEnd = 0;
};

TEST_F(LongCapture, TakesNoMoreMemoryAndNoLongerPerFrameAtItsEnd) {
    plug(9);
    rounds.onRead([&](int frame) { atRead(frame); });
    run(9, place.path());
    ASSERT_GE(rounds.frames(), Frames);
    std::cout << Frames << " frames"
              << (Instrumented ? " (fewer, as this build is instrumented)" : "") << ": " << start()
              << " times the yardstick at the start, " << end() << " at the end; resident "
              << resident << " and " << residentAtEnd << " KB, heap " << heap << " and "
              << heapAtEnd << " bytes\n";
    if (!Instrumented) {
        EXPECT_TRUE(fastEnough());
        EXPECT_TRUE(smallEnough());
    }
}

}  // namespace
