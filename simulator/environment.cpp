#include "simulator/environment.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <initializer_list>
#include <iostream>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/native_file.h"
#include "platform/start.h"
#include "simulator/bus.h"

namespace simulator {

namespace {

using start::variable;

std::filesystem::path pathVariable(const char* name) {
    return native_file::named(variable(name).c_str());
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

std::optional<Fault> parseFault(std::string_view entry) {
    const std::string function(cutField(entry, ':'));
    const std::optional<int> nth = number(cutField(entry, ':'));
    const std::optional<int> result = number(entry);
    if (function.empty() || !nth || *nth < 0 || !result) {
        return std::nullopt;
    }
    return Fault{.function = function, .nth = *nth, .result = *result};
}

/// Reads the variables. What cannot be understood is said on stderr, and remembered.
class Reader {
public:
    bool understood() const { return understood_; }

    /// The place of the value among the words; the first one stands for an unset variable, too.
    std::size_t choice(const char* name, std::initializer_list<std::string_view> words) {
        const std::string value = variable(name);
        const auto* const found = std::ranges::find(words, value);
        if (value.empty() || found != words.end()) {
            return value.empty() ? 0 : static_cast<std::size_t>(found - words.begin());
        }
        std::string allowed;
        for (const std::string_view word : words) {
            allowed += (allowed.empty() ? "" : ", ") + std::string(word);
        }
        complain(name, allowed);
        return 0;
    }

    std::uint32_t frameInterval() {
        constexpr int Longest = 60000;
        const std::string value = variable("LUMADOT_SIM_FRAME_MS");
        const std::optional<int> ms = value.empty() ? 0 : number(value);
        if (!ms || *ms < 0 || *ms > Longest) {
            complain("LUMADOT_SIM_FRAME_MS", "0 to 60000, in ms");
            return 0;
        }
        return static_cast<std::uint32_t>(*ms);
    }

    std::vector<Fault> faults() {
        std::vector<Fault> faults;
        const std::string value = variable("LUMADOT_SIM_FAULT");
        for (std::string_view list = value; !list.empty();) {
            if (auto fault = parseFault(cutField(list, ','))) {
                faults.push_back(std::move(*fault));
            } else {
                complain("LUMADOT_SIM_FAULT",
                         "FUNCTION:N:RESULT, with commas between several, for example "
                         "libusb_claim_interface:1:-6");
            }
        }
        return faults;
    }

    /// Whether there is a simulator to join.
    bool join(Bus& bus) {
        const std::string value = variable("LUMADOT_SIM_CONNECT");
        if (!value.empty() && !bus.join(value)) {
            complain("LUMADOT_SIM_CONNECT",
                     "HOST:PORT, an address or the name of a machine that can be found, and 1 to "
                     "65535");
        }
        return !value.empty();
    }

private:
    void complain(const char* name, const std::string& allowed) {
        std::cerr << "simulated bus: " << name << " is \"" << variable(name)
                  << "\"; allowed: " << allowed << ". The bus stays empty.\n";
        understood_ = false;
    }

    bool understood_ = true;
};

}  // namespace

void configureFromEnvironment(Bus& bus) {
    Reader reader;
    const std::size_t board = reader.choice("LUMADOT_SIM_BOARD", {"none", "standard", "xl"});
    const std::size_t layout = reader.choice("LUMADOT_SIM_LAYOUT", {"newer", "older"});
    ControllerOptions options;
    options.board = board == 2 ? Board::Xl : Board::Standard;
    options.layout = layout == 1 ? SettingsLayout::Older : SettingsLayout::Newer;
    options.frameInterval = reader.frameInterval();
    options.store = pathVariable("LUMADOT_SIM_STORE");
    if (const std::string id = variable("LUMADOT_SIM_UID"); !id.empty()) {
        options.uniqueId = id;
    }
    bus.setRealTime(reader.choice("LUMADOT_SIM_TIME", {"fast", "real"}) == 1);
    bus.logTo(pathVariable("LUMADOT_SIM_LOG"));
    for (Fault& fault : reader.faults()) {
        bus.inject(std::move(fault));
    }
    const bool joined = reader.join(bus);
    if (!reader.understood()) {
        bus.leave();
    } else if (!joined && board != 0) {
        bus.plugController(options, options.board == Board::Xl ? "LUMADOT XL" : "LUMADOT");
    }
}

}  // namespace simulator
