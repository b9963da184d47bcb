// Each command against a controller whose every reply is the input: the first byte chooses the
// command, then comes for each read how it ends, how long the reply is (two bytes) and its bytes.

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdint>

#include "fuzz/command_line.h"
#include "simulator/bus.h"

namespace {

using Arguments = std::vector<std::string>;

const std::vector<Arguments>& commands() {
    static const std::vector<Arguments> all = {
        {"list"},
        {"check"},
        {"info"},
        {"mode"},
        {"brightness"},
        {"enhancer", "on"},
        {"settings", "save", "b.dat"},
        {"settings", "diff", "a.dat"},
        {"upload", "a.bin"},
        {"record", "--frames", "3"},
        {"record", "--frames", "2", "--mode", "6", "--reconnect"},
        {"--device", "3A7F00C21D5E9B64", "mode", "2"},
        {"reset", "--wait"}};
    return all;
}

constexpr std::array Results = {0, 0, 0, 0, 0, -1, -4, -5, -6, -7, -8, -9, -10, -11, -12, -99};
constexpr int MostReads = 8;

/// Takes bytes from the front of the input; zeros when there are none left.
class Input {
public:
    Input(const std::uint8_t* data, std::size_t size) : data_(data), left_(size) {}

    std::uint8_t byte() { return left_ > 0 ? (--left_, *data_++) : 0; }
    simulator::Packet bytes(std::size_t count) {
        simulator::Packet packet(std::min(count, left_));
        for (std::uint8_t& each : packet) {
            each = byte();
        }
        return packet;
    }
    bool isEmpty() const { return left_ == 0; }

private:
    const std::uint8_t* data_;
    std::size_t left_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    auto& bus = simulator::Bus::instance();
    bus.reset();
    bus.setLogging(false);
    Input input(data, size);
    const std::uint8_t choice = input.byte();
    const bool isXl = choice >= 0x80;
    bus.plugController({}, isXl ? "LUMADOT XL" : "LUMADOT");
    for (int read = 1; read <= MostReads && !input.isEmpty(); ++read) {
        const int result = Results.at(input.byte() % Results.size());
        const std::size_t length = input.byte() + 256 * (input.byte() % 32);
        bus.inject({.function = "libusb_bulk_transfer",
                    .nth = read,
                    .result = result,
                    .reply = input.bytes(length),
                    .endpoint = 0x81});
    }
    bus.inject({.nth = 300, .meanwhile = [] { std::raise(SIGTERM); }});
    fuzz::giveFile("a.dat", std::string(23, '\1'));
    fuzz::giveFile("a.bin", std::string(700, 'x'));
    Arguments arguments = commands()[choice % commands().size()];
    if (choice % 2 == 0) {
        arguments.emplace_back("--json");
    }
    fuzz::runCommandLine(arguments);
    return 0;
}
