// The cost of an upload of 8 MiB on the simulated bus, side by side with what it cannot do without:
//
//   upload    the tool's operation, whole
//   bare      the transfers of the same frames, made beforehand
//
// and where the tool's own time goes, for the eye (the simulated bus is as fast as memory; on a
// real one the transfers take some hundred times as long):
//
//   own       the tool's operation with transfers that take no time
//   reading   of that, the file into a zeroed block of memory
//   clearing  of that, the zeroing of every frame
//
// Exit code 1: what the tool adds to the bare transfers is not under 10 % of the upload's time.
// Needs a display.

#include <benchmark/benchmark.h>
#include <libusb.h>
#include <unistd.h>
#include <wx/app.h>
#include <wx/init.h>
#include <wx/modalhook.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "device/command_frame.h"
#include "device/file_stream.h"
#include "device/interfaceUSB.h"
#include "simulator/bus.h"

namespace {

constexpr double WantedShare = 0.10;

constexpr std::size_t FileSize = std::size_t{8} << 20;
constexpr std::size_t BlockSize = 512;
constexpr std::size_t FrameSize = 2052;
using Frame = std::array<unsigned char, FrameSize>;

const std::filesystem::path File = "/dev/shm/lumadot_upload_bench_" + std::to_string(getpid());

/// True: a transfer does nothing and accepts at once.
bool transfersTakeNoTime = false;

std::vector<unsigned char> content() {
    std::vector<unsigned char> bytes(FileSize);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<unsigned char>(i % 251);
    }
    return bytes;
}

Frame frameOf(std::initializer_list<unsigned char> operands) {
    Frame frame = {0x81, 0xC3, 0xE7, 0xFF, 0x0A};
    std::copy(operands.begin(), operands.end(), frame.begin() + 5);
    return frame;
}

std::vector<Frame> allFrames() {
    const auto bytes = content();
    std::vector<Frame> frames = {frameOf({0x00, 'a'})};
    for (std::size_t sent = 0; sent < FileSize; sent += BlockSize) {
        frames.push_back(frameOf({0x01, 0x02, 0x00}));
        std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(sent), BlockSize,
                    frames.back().begin() + 8);
    }
    frames.push_back(frameOf({0x01}));
    frames.push_back(frameOf({0xFF}));
    return frames;
}

/// Answers every dialog with OK before it comes to the screen.
class PressOk : public wxModalDialogHook {
public:
    PressOk() { Register(); }
    ~PressOk() override { Unregister(); }
    PressOk(const PressOk&) = delete;
    PressOk& operator=(const PressOk&) = delete;

protected:
    int Enter(wxDialog*) override { return wxID_OK; }
};

void upload(benchmark::State& state, bool withoutTransfers) {
    transfersTakeNoTime = withoutTransfers;
    for (auto step : state) {
        usb.uploadFile(File.c_str(), "a");
    }
    transfersTakeNoTime = false;
}

void bare(benchmark::State& state) {
    static std::vector<Frame> frames = allFrames();
    unsigned char answer = 0;
    for (auto step : state) {
        usb.setup();
        for (Frame& frame : frames) {
            libusb_bulk_transfer(MyLibusbDeviceHandle, 0x01, frame.data(), FrameSize, nullptr,
                                 1000);
            libusb_bulk_transfer(MyLibusbDeviceHandle, 0x81, &answer, 1, nullptr, 1000);
        }
        usb.release();
    }
}

void reading(benchmark::State& state) {
    for (auto step : state) {
        const file::Stream stream = file::open(File.c_str(), "rb");
        const std::unique_ptr<std::uint8_t[]> bytes(new std::uint8_t[FileSize]{});
        benchmark::DoNotOptimize(std::fread(bytes.get(), 1, FileSize, stream.get()));
    }
}

void clearing(benchmark::State& state) {
    CommandFrame frame(Command::Upload);
    for (auto step : state) {
        for (std::size_t sent = 0; sent <= FileSize; sent += BlockSize) {
            frame.clear();
            benchmark::DoNotOptimize(frame.data());
            benchmark::ClobberMemory();
        }
    }
}

/// Keeps each benchmark's median, in ms of processor time, besides printing it.
class Medians : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.aggregate_name == "median") {
                values_[run.run_name.function_name] = run.GetAdjustedCPUTime();
            }
        }
    }
    double of(const std::string& name) const { return values_.at(name); }

private:
    std::map<std::string, double> values_;
};

void registerAll() {
    const auto add = [](const char* name, auto run) {
        benchmark::RegisterBenchmark(name, run)
            ->Unit(benchmark::kMillisecond)
            ->Iterations(5)
            ->Repetitions(11)
            ->ReportAggregatesOnly()
            ->MeasureProcessCPUTime();
    };
    add("upload", [](benchmark::State& state) { upload(state, false); });
    add("bare", bare);
    add("own", [](benchmark::State& state) { upload(state, true); });
    add("reading", reading);
    add("clearing", clearing);
}

bool judge(const Medians& medians) {
    const double whole = medians.of("upload");
    const double share = (whole - medians.of("bare")) / whole;
    const bool good = share < WantedShare;
    std::printf("\nupload %.2f ms, bare transfers %.2f ms\n", whole, medians.of("bare"));
    std::printf("the tool's own work %.2f ms, of that reading %.2f ms and clearing %.2f ms\n",
                medians.of("own"), medians.of("reading"), medians.of("clearing"));
    std::printf("%s  added to the bare transfers: %.1f %% (wanted: under %.0f %%)\n",
                good ? "pass" : "FAIL", share * 100, WantedShare * 100);
    return good;
}

/// The file arrives whole, so that nothing else is measured than an upload that succeeds.
bool arrives() {
    auto& bus = simulator::Bus::instance();
    bus.reset();
    bus.setLogging(false);
    const auto controller = bus.plugController();
    usb.uploadFile(File.c_str(), "a");
    return controller->files().count("a") == 1 && controller->files().at("a") == content();
}

}  // namespace

extern "C" {

int __real_libusb_bulk_transfer(libusb_device_handle*, unsigned char, unsigned char*, int, int*,
                                unsigned int);

/// In front of the library's function: the program is linked with --wrap.
int __wrap_libusb_bulk_transfer(libusb_device_handle* handle, unsigned char endpoint,
                                unsigned char* data, int length, int* transferred,
                                unsigned int timeout) {
    if (transfersTakeNoTime) {
        benchmark::DoNotOptimize(data);
        benchmark::ClobberMemory();
        data[0] = endpoint == 0x81 ? 0 : data[0];
        return 0;
    }
    return __real_libusb_bulk_transfer(handle, endpoint, data, length, transferred, timeout);
}
}

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    wxApp::SetInstance(new wxApp);
    if (!wxEntryStart(argc, argv)) {
        return EXIT_FAILURE;
    }
    bool good = false;
    {
        const PressOk answers;
        const auto bytes = content();
        std::ofstream(File, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()),
                   static_cast<std::streamsize>(bytes.size()));
        if (arrives()) {
            registerAll();
            Medians medians;
            benchmark::RunSpecifiedBenchmarks(&medians);
            good = judge(medians);
        } else {
            std::puts("FAIL  the file did not arrive");
        }
        std::filesystem::remove(File);
    }
    wxEntryCleanup();
    return good ? EXIT_SUCCESS : EXIT_FAILURE;
}
