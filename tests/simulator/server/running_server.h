#ifndef LUMADOT_TESTS_SIMULATOR_SERVER_RUNNING_SERVER_H
#define LUMADOT_TESTS_SIMULATOR_SERVER_RUNNING_SERVER_H

#include <algorithm>
#include <chrono>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "simulator/server/server.h"

/// A server on loopback that serves while it lives. What it complains of and the transfers that it
/// sees are kept.
class RunningServer {
public:
    explicit RunningServer(simulator::ControllerOptions board = {}, std::uint16_t port = 0,
                           std::uint32_t patience = 5000)
        : server_(withClock(std::move(board)), options(port, patience)) {
        server_.withDevice([this](simulator::UsbDevice& device) {
            device.onTransfer(
                [this](const simulator::Transfer& transfer) { transfers_.push_back(transfer); });
        });
        thread_ = std::thread([this] { server_.run(); });
    }
    ~RunningServer() {
        server_.stop();
        thread_.join();
    }
    RunningServer(const RunningServer&) = delete;
    RunningServer& operator=(const RunningServer&) = delete;

    simulator::Server& server() { return server_; }
    std::uint16_t port() const { return server_.port(); }
    std::string place() const { return "127.0.0.1:" + std::to_string(port()); }

    template <class Work>
    auto withDevice(Work work) {
        return server_.withDevice(work);
    }
    template <class Condition>
    bool becomes(Condition condition) {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (!server_.withDevice(condition)) {
            if (std::chrono::steady_clock::now() > deadline) {
                return false;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        return true;
    }
    std::vector<std::string> complaints() {
        return server_.withDevice([this](auto&) { return complaints_; });
    }
    std::vector<simulator::Transfer> transfers() {
        return server_.withDevice([this](auto&) { return transfers_; });
    }

private:
    static simulator::ControllerOptions withClock(simulator::ControllerOptions board) {
        board.clock = [] {
            using namespace std::chrono;
            const auto time = steady_clock::now().time_since_epoch();
            return static_cast<std::uint64_t>(duration_cast<milliseconds>(time).count());
        };
        return board;
    }
    simulator::Server::Options options(std::uint16_t port, std::uint32_t patience) {
        return {.port = port,
                .patience = patience,
                .complain = [this](const std::string&, const std::string& problem) {
                    complaints_.push_back(problem);
                }};
    }

    std::vector<std::string> complaints_;
    std::vector<simulator::Transfer> transfers_;
    simulator::Server server_;
    std::thread thread_;
};

#endif
