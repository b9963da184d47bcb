// The simulator over loopback, side by side with the simulated bus inside the process:
//
//   settings   the request and its reply, on a claimed interface
//   operation  the same as the tool does it: find, open, name, claim, exchange, release, close
//   upload     the frames of a file of 64 KiB, each with its answer
//   frames     1,000 captured frames of 4 planes
//
// Exit code 1: a settings exchange over loopback takes 1 ms or more in the median.

#include <benchmark/benchmark.h>
#include <libusb.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include "simulator/bus.h"
#include "simulator/server/server.h"

namespace {

constexpr double WantedMicroseconds = 1000;
constexpr int Frames = 1000;
constexpr int UploadFrames = 1 + 129 + 1;  // Open, 64 KiB in blocks of 512 and an empty one, close.

using Bytes = std::vector<unsigned char>;

Bytes frame(std::initializer_list<unsigned char> operands) {
    constexpr std::array<unsigned char, 4> Header = {0x81, 0xC3, 0xE7, 0xFF};
    Bytes bytes(2052);
    std::copy(operands.begin(), operands.end(),
              std::copy(Header.begin(), Header.end(), bytes.begin()));
    return bytes;
}

/// A request and its reply; ends the program when they fail.
void exchange(libusb_device_handle* handle, Bytes& request, Bytes& reply) {
    const int sent = libusb_bulk_transfer(handle, 0x01, request.data(),
                                          static_cast<int>(request.size()), nullptr, 2000);
    const int received = libusb_bulk_transfer(handle, 0x81, reply.data(),
                                              static_cast<int>(reply.size()), nullptr, 10000);
    if (sent != 0 || received != 0) {
        std::printf("FAIL  a transfer ended with %d, %d\n", sent, received);
        std::exit(EXIT_FAILURE);
    }
}

libusb_device_handle* open() {
    libusb_device** list = nullptr;
    const ssize_t count = libusb_get_device_list(nullptr, &list);
    libusb_device_handle* handle = nullptr;
    if (count < 1 || libusb_open(list[0], &handle) != 0) {
        std::puts("FAIL  there is no device");
        std::exit(EXIT_FAILURE);
    }
    std::array<unsigned char, 256> name = {};
    libusb_get_string_descriptor_ascii(handle, 2, name.data(), static_cast<int>(name.size()));
    libusb_free_device_list(list, 1);
    libusb_claim_interface(handle, 0);
    return handle;
}

void close(libusb_device_handle* handle) {
    libusb_release_interface(handle, 0);
    libusb_close(handle);
}

void settings(benchmark::State& state) {
    libusb_device_handle* handle = open();
    Bytes request = frame({0x10});
    Bytes reply(63);
    for (auto step : state) {
        exchange(handle, request, reply);
    }
    close(handle);
}

void operation(benchmark::State& state) {
    Bytes request = frame({0x10});
    Bytes reply(63);
    for (auto step : state) {
        libusb_device_handle* handle = open();
        exchange(handle, request, reply);
        close(handle);
    }
}

void upload(benchmark::State& state) {
    libusb_device_handle* handle = open();
    Bytes start = frame({0x0A, 0x00, 'a'});
    Bytes block = frame({0x0A, 0x01, 0x02, 0x00, 1, 2, 3});
    Bytes last = frame({0x0A, 0x01, 0x00, 0x00});
    Bytes end = frame({0x0A, 0xFF});
    Bytes answer(1);
    for (auto step : state) {
        exchange(handle, start, answer);
        for (int i = 0; i < UploadFrames - 3; ++i) {
            exchange(handle, block, answer);
        }
        exchange(handle, last, answer);
        exchange(handle, end, answer);
    }
    close(handle);
}

void frames(benchmark::State& state) {
    libusb_device_handle* handle = open();
    Bytes request(64);
    request[0] = 0x02;
    request[1] = 0xC3;
    request[2] = 0xE8;
    request[3] = 4;
    Bytes reply(4 * 512 + 5);
    for (auto step : state) {
        for (int i = 0; i < Frames; ++i) {
            exchange(handle, request, reply);
        }
    }
    close(handle);
}

/// Keeps each benchmark's median, in microseconds of real time, besides printing it.
class Medians : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.aggregate_name == "median") {
                const double unit = benchmark::GetTimeUnitMultiplier(run.time_unit);
                values[run.run_name.function_name] = run.GetAdjustedRealTime() / unit * 1e6;
            }
        }
    }
    std::map<std::string, double> values;
};

std::uint64_t clockMs() {
    using namespace std::chrono;
    const auto time = steady_clock::now().time_since_epoch();
    return static_cast<std::uint64_t>(duration_cast<milliseconds>(time).count());
}

void registerAll(const std::string& place, void (*prepare)()) {
    const std::pair<const char*, void (*)(benchmark::State&)> all[] = {
        {"settings", settings}, {"operation", operation}, {"upload", upload}, {"frames", frames}};
    for (const auto& [name, run] : all) {
        const auto prepared = [prepare, body = run](benchmark::State& state) {
            prepare();
            body(state);
        };
        benchmark::RegisterBenchmark((std::string(name) + "/" + place).c_str(), prepared)
            ->Repetitions(7)
            ->ReportAggregatesOnly()
            ->Unit(benchmark::kMicrosecond)
            ->UseRealTime()
            ->MinTime(0.1);
    }
}

std::string place;

void onTheBus() {
    auto& bus = simulator::Bus::instance();
    bus.reset();
    bus.setLogging(false);
    bus.plugController();
}

void overLoopback() {
    auto& bus = simulator::Bus::instance();
    bus.reset();
    bus.setLogging(false);
    bus.join(place);
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    libusb_init(nullptr);
    simulator::Server server({.clock = clockMs}, {.port = 0});
    place = "127.0.0.1:" + std::to_string(server.port());
    std::thread thread([&server] { server.run(); });
    registerAll("bus", onTheBus);
    registerAll("loopback", overLoopback);
    Medians medians;
    benchmark::RunSpecifiedBenchmarks(&medians);
    server.stop();
    thread.join();
    libusb_exit(nullptr);

    const auto median = medians.values.find("settings/loopback");
    if (median == medians.values.end()) {
        std::puts("not judged: it was filtered out");
        return EXIT_FAILURE;
    }
    const bool good = median->second < WantedMicroseconds;
    std::printf("%s  a settings exchange over loopback, us: %.1f  (wanted: under %.0f)\n",
                good ? "pass" : "FAIL", median->second, WantedMicroseconds);
    return good ? EXIT_SUCCESS : EXIT_FAILURE;
}
