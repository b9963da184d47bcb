// The cost of a capture, side by side with what it cannot do without:
//
//   text     a frame into its text block and into an open file, against a formatted write a dot
//   capture  10,000 frames on the simulated bus, with the window there and its events handled,
//            against a loop that opens, appends the same bytes and closes
//
// Exit code 1: one of the figures is not what it has to be. Needs a display.

#include <benchmark/benchmark.h>
#include <libusb.h>
#include <wx/app.h>
#include <wx/evtloop.h>
#include <wx/init.h>
#include <wx/utils.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "bench/report.h"
#include "device/dump_format.h"
#include "device/file_stream.h"
#include "device/input_mode.h"
#include "device/interfaceUSB.h"
#include "simulator/bus.h"
#include "ui/MainFrame.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr double WantedTextGain = 50;
constexpr double WantedCaptureRate = 0.6;
constexpr double WantedOwnMicroseconds = 38;
constexpr int Frames = 10000;

const std::filesystem::path Folder = "/dev/shm/lumadot_dump_bench";
const std::filesystem::path Home = "/dev/shm/lumadot_dump_bench_home";

struct Format {
    const char* name;
    std::uint8_t mode;
    bool xl;
};
constexpr Format Formats[] = {{"4 planes", 2, false}, {"12 planes", 6, false}, {"XL", 2, true}};

const dump::Geometry& displayOf(const Format& format) {
    return format.xl ? dump::XlDisplay : dump::StandardDisplay;
}

const DotRule& ruleOf(const Format& format) {
    return format.xl ? dump::XlDots : inputMode(format.mode).dots;
}

Bytes randomPlanes(const Format& format) {
    std::mt19937 random(1);
    Bytes planes(ruleOf(format).planes * displayOf(format).planeBytes());
    for (std::uint8_t& byte : planes) {
        byte = static_cast<std::uint8_t>(random());
    }
    return planes;
}

/// Starts the file anew now and then, so that it stays small.
class Restart {
public:
    explicit Restart(std::FILE* stream) : stream_(stream) {}
    void frameWritten() {
        if (++frames_ % 64 == 0) {
            std::rewind(stream_);
        }
    }

private:
    std::FILE* stream_;
    int frames_ = 0;
};

file::Stream scratchFile() { return file::open((Folder / "scratch").c_str(), "wb"); }

/// The tool's way, with or without the writing.
void toolText(benchmark::State& state, const Format& format, bool writing) {
    const Bytes planes = randomPlanes(format);
    const file::Stream stream = scratchFile();
    Restart restart(stream.get());
    dump::TextEncoder encoder(ruleOf(format), displayOf(format));
    for (auto step : state) {
        const auto block = encoder.encode(0x12345678, planes);
        benchmark::DoNotOptimize(block.data());
        if (writing) {
            std::fwrite(block.data(), 1, block.size(), stream.get());
            restart.frameWritten();
        }
    }
}

/// A formatted write for each dot, whose shades are known beforehand.
void formattedText(benchmark::State& state, const Format& format) {
    const std::size_t rows = displayOf(format).rows;
    const std::size_t columns = displayOf(format).rowBytes * 8;
    const Bytes shades = [&] {
        std::mt19937 random(1);
        Bytes dots(rows * columns);
        for (std::uint8_t& dot : dots) {
            dot = random() % 16;
        }
        return dots;
    }();
    const file::Stream stream = scratchFile();
    Restart restart(stream.get());
    for (auto step : state) {
        std::fprintf(stream.get(), "0x%08x\r\n", 0x12345678U);
        for (std::size_t row = 0; row < rows; ++row) {
            for (std::size_t column = 0; column < columns; ++column) {
                std::fprintf(stream.get(), "%01x", shades[row * columns + column]);
            }
            std::fprintf(stream.get(), "\r\n");
        }
        std::fprintf(stream.get(), "\r\n");
        restart.frameWritten();
    }
}

/// Ends a capture when it has asked for this many frames.
class FrameLimit {
public:
    void arm(int frames) { left_ = frames; }
    void frameAsked() {
        if (--left_ == 0) {
            dump_running = false;
        }
    }

private:
    int left_ = 0;
};
FrameLimit frameLimit;

/// The bytes that a frame of the capture puts into its files.
std::size_t textSize() { return 12 + dump::StandardDisplay.rows * 130 + 2; }

void clearFolder() {
    std::filesystem::remove_all(Folder);
    std::filesystem::create_directory(Folder);
}

void capture(benchmark::State& state) {
    for (auto step : state) {
        state.PauseTiming();
        clearFolder();
        frameLimit.arm(Frames);
        dump_running = true;
        state.ResumeTiming();
        usb.receiveDump(2, wxString::FromUTF8(Folder.string()));
    }
    state.SetItemsProcessed(state.iterations() * Frames);
}

/// What no capture into a freshly opened file can do without.
void bareLoop(benchmark::State& state) {
    const std::string block(textSize(), 'x');
    const std::string path = Folder / "bare";
    for (auto step : state) {
        state.PauseTiming();
        clearFolder();
        state.ResumeTiming();
        for (int frame = 0; frame < Frames; ++frame) {
            const file::Stream stream(std::fopen(path.c_str(), "ab"));
            std::fwrite(block.data(), 1, block.size(), stream.get());
        }
    }
    state.SetItemsProcessed(state.iterations() * Frames);
}

/// The bus's share: the requests and replies of a capture, and nothing else.
void busOnly(benchmark::State& state) {
    usb.setup();
    dump::Request request = dump::request(4);
    Bytes reply(dump::replyLength(4, dump::StandardDisplay));
    for (auto step : state) {
        for (int frame = 0; frame < Frames; ++frame) {
            libusb_bulk_transfer(MyLibusbDeviceHandle, 0x01, request.data(),
                                 static_cast<int>(request.size()), nullptr, 2000);
            libusb_bulk_transfer(MyLibusbDeviceHandle, 0x81, reply.data(),
                                 static_cast<int>(reply.size()), nullptr, 10000);
        }
    }
    usb.release();
    state.SetItemsProcessed(state.iterations() * Frames);
}

/// For the eye: the toolkit's share.
void yieldsOnly(benchmark::State& state) {
    for (auto step : state) {
        for (int frame = 0; frame < Frames; ++frame) {
            wxYieldIfNeeded();
        }
    }
    state.SetItemsProcessed(state.iterations() * Frames);
}

/// Keeps each benchmark's median besides printing it: processor time in microseconds, which other
/// programs on the machine disturb less.
class Medians : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.aggregate_name == "median") {
                const double unit = benchmark::GetTimeUnitMultiplier(run.time_unit);
                values_[run.run_name.function_name] = run.GetAdjustedCPUTime() / unit * 1e6;
            }
        }
    }
    double of(const std::string& name) const { return values_.at(name); }
    std::size_t count() const { return values_.size(); }

private:
    std::map<std::string, double> values_;
};

void registerAll() {
    const auto add = [](const std::string& name, auto run, int iterations) {
        auto* const made = benchmark::RegisterBenchmark(name.c_str(), run);
        made->Repetitions(7)->ReportAggregatesOnly()->Unit(benchmark::kMicrosecond);
        if (iterations > 0) {
            made->Iterations(iterations)->MeasureProcessCPUTime();
        } else {
            made->MinTime(0.1);
        }
    };
    for (const Format& format : Formats) {
        const std::string name = format.name;
        add(
            name + "/encode", [=](benchmark::State& state) { toolText(state, format, false); }, 0);
        add(
            name + "/tool", [=](benchmark::State& state) { toolText(state, format, true); }, 0);
        add(
            name + "/formatted", [=](benchmark::State& state) { formattedText(state, format); }, 0);
    }
    add("bare loop", bareLoop, 1);
    add("capture", capture, 1);
    add("bus", busOnly, 1);
    add("yields", yieldsOnly, 1);
}

bool judge(const Medians& medians) {
    constexpr std::size_t All = 3 * std::size(Formats) + 4;
    if (medians.count() != All) {
        std::printf("not judged: some were filtered out\n");
        return false;
    }
    bool good = true;
    std::printf("\n");
    for (const Format& format : Formats) {
        const std::string name = format.name;
        const double formatted = medians.of(name + "/formatted");
        std::printf("%s: formatted %.1f us, tool %.2f us, without writing %.2f us\n", format.name,
                    formatted, medians.of(name + "/tool"), medians.of(name + "/encode"));
        good &= bench::atLeast(name + ": faster than a formatted write a dot",
                               formatted / medians.of(name + "/tool"), WantedTextGain);
        good &= bench::atLeast(name + ": the same without writing",
                               formatted / medians.of(name + "/encode"), WantedTextGain);
    }
    const double bare = medians.of("bare loop") / Frames;
    const double whole = medians.of("capture") / Frames;
    const double bus = medians.of("bus") / Frames;
    std::printf("a frame: capture %.2f us, bare loop %.2f us, bus %.2f us, window events %.2f us\n",
                whole, bare, bus, medians.of("yields") / Frames);
    good &= bench::atLeast("capture: frame rate against the bare loop's", bare / whole,
                           WantedCaptureRate);
    const double own = whole - bare - bus;
    good &= bench::report("capture: own time a frame, us", own, "under", WantedOwnMicroseconds,
                          own < WantedOwnMicroseconds);
    return good;
}

void plugController() {
    auto& bus = simulator::Bus::instance();
    bus.reset();
    bus.setLogging(false);
    simulator::ControllerOptions options;
    options.settings[0] = 2;
    bus.plugController(options);
}

}  // namespace

extern "C" {

int __real_libusb_bulk_transfer(libusb_device_handle*, unsigned char, unsigned char*, int, int*,
                                unsigned int);

/// In front of the library's function: the program is linked with --wrap.
int __wrap_libusb_bulk_transfer(libusb_device_handle* handle, unsigned char endpoint,
                                unsigned char* data, int length, int* transferred,
                                unsigned int timeout) {
    if (endpoint == 0x01) {
        frameLimit.frameAsked();
    }
    return __real_libusb_bulk_transfer(handle, endpoint, data, length, transferred, timeout);
}
}

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    plugController();
    clearFolder();
    std::filesystem::create_directory(Home);
    setenv("HOME", Home.c_str(), 1);  // The window's geometry is none of the user's business.
    wxApp::SetInstance(new wxApp);
    if (!wxEntryStart(argc, argv)) {
        return EXIT_FAILURE;
    }
    bool good = false;
    {
        wxEventLoop loop;
        const wxEventLoopActivator active(&loop);
        auto* const window = new MainFrame(nullptr);
        window->Show();
        for (int i = 0; i < 100; ++i) {
            wxYield();
            wxMilliSleep(5);
        }
        registerAll();
        Medians medians;
        benchmark::RunSpecifiedBenchmarks(&medians);
        good = judge(medians);
        std::filesystem::remove_all(Folder);
        window->Destroy();
        while (wxTheApp->ProcessIdle()) {
        }
    }
    wxEntryCleanup();
    std::filesystem::remove_all(Home);
    return good ? EXIT_SUCCESS : EXIT_FAILURE;
}
