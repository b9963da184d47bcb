#include "fuzz/command_line.h"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>

#include "control/clock.h"
#include "control/interrupt.h"
#include "control/run.h"
#include "fuzz/expect.h"
#include "simulator/bus.h"

namespace fuzz {

namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

std::map<std::string, std::string> files;

/// Starts empty but for the given files; the working folder of the process.
void prepareFolder() {
    static const fs::path folder = "/dev/shm/lumadot-fuzz-" + std::to_string(getpid()) + "-folder";
    static const bool made = fs::create_directory(folder);
    EXPECT(made || fs::is_directory(folder));
    fs::current_path(folder);
    for (const auto& entry : fs::directory_iterator(folder)) {
        fs::remove_all(entry.path());
    }
    for (const auto& [name, content] : files) {
        std::ofstream(name, std::ios::binary) << content;
    }
}

void expectDocument(const std::string& results, int code) {
    const Json document = Json::parse(results, nullptr, false);
    if (document.is_array()) {  // Of several files.
        const auto hasError = [](const Json& each) { return each.contains("error"); };
        EXPECT(std::ranges::any_of(document, hasError) == (code != 0));
        return;
    }
    EXPECT(document.is_object());
    // 1 is the code of a difference, too, which is no error.
    EXPECT(document.contains("error") ? code != 0 : code <= 1);
    if (document.contains("error")) {
        EXPECT(document["error"]["code"] == code);
        EXPECT(document["error"]["message"].is_string());
    }
}

}  // namespace

void giveFile(const std::string& name, const std::string& content) { files[name] = content; }

int runCommandLine(const std::vector<std::string>& arguments) {
    const fs::path before = fs::current_path();  // The fuzzer's own files are named from there.
    prepareFolder();
    std::vector<const char*> pointers;
    for (const std::string& argument : arguments) {
        pointers.push_back(argument.c_str());
    }
    std::ostringstream results;
    std::ostringstream messages;
    const int code = control::run(pointers, results, messages);
    fs::current_path(before);
    EXPECT(code >= 0 && code <= 7);
    const auto has = [&](const char* start) {
        return std::ranges::any_of(
            arguments, [=](const std::string& argument) { return argument.starts_with(start); });
    };
    const bool asksForText = has("-h") || has("--help") || has("--version");
    if (std::ranges::count(arguments, "--json") > 0 && !asksForText) {
        expectDocument(results.str(), code);
    }
    const auto& bus = simulator::Bus::instance();
    EXPECT(bus.openContexts() == 0);
    EXPECT(bus.deviceLists() == 0);
    EXPECT(bus.openHandles() == 0);
    EXPECT(bus.claimedInterfaces() == 0);
    return code;
}

}  // namespace fuzz

// Pauses take no time: the programs are linked with --wrap.
extern "C" void __wrap__ZN7control5pauseENSt6chrono8durationIlSt5ratioILl1ELl1000EEEE(
    std::chrono::milliseconds /*time*/) {
    control::interrupt::check();
}
