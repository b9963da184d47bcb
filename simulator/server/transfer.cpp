#include "simulator/server/transfer.h"

#include <algorithm>
#include <charconv>
#include <nlohmann/json.hpp>
#include <utility>

#include "simulator/server/descriptors.h"

namespace simulator {

namespace {

std::string hex(const std::vector<std::uint8_t>& bytes, std::size_t count) {
    constexpr char Digits[] = "0123456789abcdef";
    std::string text;
    text.reserve(2 * count);
    for (std::size_t i = 0; i < count; ++i) {
        text += {Digits[bytes[i] >> 4U], Digits[bytes[i] & 0xFU]};
    }
    return text;
}

template <class Number>
std::optional<Number> number(std::string_view text) {
    Number value = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    return error == std::errc() && stop == end && value >= 0 ? std::optional(value) : std::nullopt;
}

std::string_view cutField(std::string_view& text) {
    const std::size_t end = std::min(text.find(':'), text.size());
    const std::string_view field = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return field;
}

bool parseEndpoint(std::string_view text, TransferFault& fault) {
    fault.endpoint = text == "out" ? descriptors::OutEndpoint : descriptors::InEndpoint;
    return text == "out" || text == "in";
}

bool parseWhat(std::string_view text, TransferFault& fault) {
    constexpr std::string_view ShortBy = "short=";
    if (text.starts_with(ShortBy)) {
        const auto bytes = number<std::uint32_t>(text.substr(ShortBy.size()));
        fault.what = TransferFault::What::Short;
        fault.bytes = bytes.value_or(0);
        return bytes.has_value();
    }
    constexpr std::pair<std::string_view, TransferFault::What> Names[] = {
        {"stall", TransferFault::What::Stall},
        {"timeout", TransferFault::What::Timeout},
        {"unplug", TransferFault::What::Unplug}};
    for (const auto& [name, what] : Names) {
        if (text == name) {
            fault.what = what;
            return true;
        }
    }
    return false;
}

}  // namespace

std::string logLine(const Transfer& transfer) {
    const auto& data = transfer.data;
    const auto isSet = [](std::uint8_t byte) { return byte != 0; };
    const auto zeros =
        static_cast<std::size_t>(std::find_if(data.rbegin(), data.rend(), isSet) - data.rbegin());
    nlohmann::ordered_json line = {{"ep", transfer.endpoint},
                                   {"len", data.size()},
                                   {"data", hex(data, data.size() - zeros)},
                                   {"zeros", zeros}};
    if (!transfer.error.empty()) {
        line["error"] = transfer.error;
    }
    return line.dump();
}

std::optional<TransferFault> parseFault(std::string_view text) {
    TransferFault fault;
    const bool knowsEndpoint = parseEndpoint(cutField(text), fault);
    const auto nth = number<int>(cutField(text));
    fault.nth = nth.value_or(0);
    const bool understood = knowsEndpoint && nth && parseWhat(text, fault);
    return understood ? std::optional(fault) : std::nullopt;
}

std::optional<TransferFault> FaultList::begin(std::uint8_t endpoint) {
    std::optional<TransferFault> happening;
    std::vector<TransferFault> remaining;
    for (TransferFault& fault : faults_) {
        const bool concerned = fault.endpoint == endpoint;
        if (concerned && fault.nth <= 1 && !happening) {
            happening = fault;
        }
        const bool usedUp = concerned && fault.nth == 1;
        if (concerned && fault.nth > 1) {
            --fault.nth;
        }
        if (!usedUp) {
            remaining.push_back(fault);
        }
    }
    faults_ = std::move(remaining);
    return happening;
}

}  // namespace simulator
