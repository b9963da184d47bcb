// lumadot-simulator: the simulated controller behind USB over IP, with or without a window.

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <system_error>

#include "platform/native_file.h"
#include "platform/start.h"
#include "simulator/server/options.h"
#include "simulator/server/server.h"
#include "simulator/window/window.h"

namespace {

using simulator::ProgramOptions;
using simulator::Server;

std::uint64_t milliseconds() {
    using namespace std::chrono;
    return static_cast<std::uint64_t>(
        duration_cast<std::chrono::milliseconds>(steady_clock::now().time_since_epoch()).count());
}

void complain(const std::string& client, const std::string& problem) {
    std::cerr << "lumadot-simulator: " << client << ": " << problem << '\n';
}

/// The board itself writes its memory without a word; here is who started it to be told.
void prepareState(const std::filesystem::path& folder) {
    std::error_code error;
    if (!folder.empty() && !std::filesystem::is_directory(folder, error)) {
        std::filesystem::create_directories(folder);
    }
}

/// The log, made anew; closed when no name is given.
std::ofstream openLog(const std::string& name) {
    std::ofstream log;
    if (!name.empty()) {
        log.open(native_file::named(name.c_str()), std::ios::trunc);
        if (!log) {
            throw std::runtime_error("cannot write the log " + name + "; give another --log");
        }
    }
    return log;
}

int serve(ProgramOptions options) {
    prepareState(options.controller.store);
    std::ofstream log = openLog(options.log);
    options.controller.clock = milliseconds;
    options.server.complain = complain;
    const std::string address = options.server.address;
    Server server(std::move(options.controller), std::move(options.server));
    server.withDevice([&](simulator::UsbDevice& device) {
        for (const simulator::TransferFault& fault : options.faults) {
            device.inject(fault);
        }
        if (log.is_open()) {
            device.onTransfer([&log](const simulator::Transfer& transfer) {
                log << logLine(transfer) << std::endl;  // Flushed: tests read it meanwhile.
            });
        }
    });
    std::cout << "port " << server.port() << std::endl;
    if (!options.headless) {
        start::leaveConsole();
        return showWindow(server);
    }
    server.stopOnSignals();
    server.run();
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    start::CommandLine line(argc, argv);
    int exitCode = 0;
    auto options = simulator::parseArguments(line.count(), line.values(), exitCode);
    if (!options) {
        return exitCode;
    }
    const std::string place =
        options->server.address + " port " + std::to_string(options->server.port);
    try {
        return serve(std::move(*options));
    } catch (const std::filesystem::filesystem_error& error) {
        std::cerr << "lumadot-simulator: cannot make the folder " << error.path1().string() << ": "
                  << error.code().message() << "; give another --state\n";
    } catch (const std::system_error& error) {
        std::cerr << "lumadot-simulator: cannot listen on " << place << ": "
                  << error.code().message() << "; give another --port (0: any) or --listen\n";
    } catch (const std::exception& error) {
        std::cerr << "lumadot-simulator: " << error.what() << '\n';
    }
    return 1;
}
