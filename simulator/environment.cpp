#include "simulator/environment.h"

#include <charconv>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

#include "simulator/bus.h"

namespace simulator {

namespace {

std::string variable(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

std::optional<int> number(std::string_view text) {
    int value = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || stop != end) {
        return std::nullopt;
    }
    return value;
}

/// Cuts off and returns what stands before the first separator; all of it when there is none.
std::string_view cutField(std::string_view& text, char separator) {
    const std::size_t end = text.find(separator);
    const std::string_view field = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return field;
}

void injectFaults(Bus& bus, std::string_view list) {
    while (!list.empty()) {
        std::string_view entry = cutField(list, ',');
        const std::string function(cutField(entry, ':'));
        const std::optional<int> nth = number(cutField(entry, ':'));
        const std::optional<int> result = number(entry);
        if (nth && *nth >= 0 && result) {
            bus.inject({.function = function, .nth = *nth, .result = result});
        }
    }
}

void plugBoard(Bus& bus) {
    const std::string board = variable("LUMADOT_SIM_BOARD");
    if (board != "standard" && board != "xl") {
        return;
    }
    ControllerOptions options;
    options.board = board == "xl" ? Board::Xl : Board::Standard;
    if (variable("LUMADOT_SIM_LAYOUT") == "older") {
        options.layout = SettingsLayout::Older;
    }
    if (const std::string id = variable("LUMADOT_SIM_UID"); !id.empty()) {
        options.uniqueId = id;
    }
    options.store = variable("LUMADOT_SIM_STORE");
    const int interval = number(variable("LUMADOT_SIM_FRAME_MS")).value_or(0);
    if (interval >= 0 && interval <= 60000) {
        options.frameInterval = static_cast<std::uint32_t>(interval);
    }
    bus.plugController(options, options.board == Board::Xl ? "LUMADOT XL" : "LUMADOT");
}

}  // namespace

void configureFromEnvironment(Bus& bus) {
    if (!bus.join(variable("LUMADOT_SIM_CONNECT"))) {
        plugBoard(bus);
    }
    bus.setRealTime(variable("LUMADOT_SIM_TIME") == "real");
    bus.logTo(variable("LUMADOT_SIM_LOG"));
    injectFaults(bus, variable("LUMADOT_SIM_FAULT"));
}

}  // namespace simulator
