#include "simulator/server/options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <asio/ip/address.hpp>

#include "platform/native_file.h"

namespace simulator {

namespace {

constexpr int WrongUsage = 2;
constexpr std::uint32_t UsualFrameInterval = 16;  // ms
constexpr std::uint32_t LongestFrameInterval = 60000;
constexpr std::size_t LongestUid = 62;

std::string checkFault(std::string& text) {
    return parseFault(text) ? "" : "not ENDPOINT:N:WHAT: " + text;
}

std::string checkAddress(std::string& text) {
    asio::error_code error;
    asio::ip::make_address(text, error);
    return error ? "not an address of this machine: " + text : "";
}

std::string checkUid(std::string& text) {
    return text.size() <= LongestUid ? "" : "longer than 62 letters";
}

/// One of a few words, told by its place among them.
template <class Value>
void addChoice(CLI::App& app, const char* name, Value& value, std::vector<std::string> words,
               const char* typeName, const char* help) {
    const auto choose = [&value, words](const std::string& word) {
        const auto place = std::find(words.begin(), words.end(), word) - words.begin();
        value = static_cast<Value>(place);
    };
    app.add_option_function<std::string>(name, choose, help)
        ->type_name(typeName)
        ->check(CLI::IsMember(words).description(""));
}

void addOptions(CLI::App& app, ProgramOptions& options, std::vector<std::string>& faults) {
    app.set_version_flag("--version", "lumadot-simulator " LUMADOT_VERSION);
    app.add_flag("--headless", options.headless, "No window: only USB over IP");
    app.add_option("--listen", options.server.address,
                   "Address to listen on (127.0.0.1: this machine only)")
        ->type_name("ADDRESS")
        ->check(CLI::Validator(checkAddress, ""));
    app.add_option("--port", options.server.port, "TCP port (3240; 0: any, printed)")
        ->type_name("N")
        ->check(CLI::Range(0, 65535).description(""));
    addChoice(app, "--board", options.controller.board, {"standard", "xl"}, "BOARD",
              "standard (128 x 32 dots) or xl (192 x 64)");
    addChoice(app, "--layout", options.controller.layout, {"newer", "older"}, "LAYOUT",
              "newer or older: the firmware's settings reply");
    app.add_flag("--windows-descriptors", options.controller.windowsDescriptors,
                 "Tell Windows to bind the driver WinUSB");
    app.add_option("--uid", options.controller.uniqueId, "The unique id, 62 letters at most")
        ->type_name("TEXT")
        ->check(CLI::Validator(checkUid, ""));
    const auto setStore = [&options](const std::string& folder) {
        options.controller.store = native_file::named(folder.c_str());
    };
    app.add_option_function<std::string>("--state", setStore, "Folder for what survives a restart")
        ->type_name("FOLDER");
    app.add_option("--frame-interval", options.controller.frameInterval,
                   "ms between two captured frames (16; 0: as fast as asked)")
        ->type_name("MS")
        ->check(CLI::Range(std::uint32_t{0}, LongestFrameInterval).description(""));
    app.add_option("--log", options.log, "File for the transfers, a JSON object a line")
        ->type_name("FILE");
    app.add_option("--fault", faults,
                   "What a transfer does instead: on out or in, the Nth (0: each), stall, timeout, "
                   "short=BYTES or unplug; may be given several times")
        ->type_name("ENDPOINT:N:WHAT")
        ->check(CLI::Validator(checkFault, ""))
        ->allow_extra_args(false);
}

}  // namespace

std::optional<ProgramOptions> parseArguments(int argc, const char* const* argv, int& exitCode) {
    ProgramOptions options;
    options.controller.frameInterval = UsualFrameInterval;
    std::vector<std::string> faults;
    CLI::App app(
        "The simulated display controller: a display to look at, and a USB device over IP.",
        "lumadot-simulator");
    addOptions(app, options, faults);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        exitCode = app.exit(error) == 0 ? 0 : WrongUsage;
        return std::nullopt;
    }
    for (const std::string& fault : faults) {
        options.faults.push_back(*parseFault(fault));
    }
    return options;
}

}  // namespace simulator
