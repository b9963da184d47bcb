#include "control/names.h"

#include <algorithm>
#include <charconv>
#include <nlohmann/json.hpp>
#include <optional>

#include "control/failure.h"
#include "control/text.h"
#include "device/input_mode.h"
#include "ui/palette.h"

namespace control {

namespace {

Names makeModes() {
    Names names{"input mode", {}, {{0, "PinMame"}, {1, "Sega192x64"}}};
    for (const InputModeInfo& mode : inputModes()) {
        if (!mode.label.empty()) {
            names.labels.push_back({mode.number, mode.label});
        }
    }
    return names;
}

Names makePresets() {
    Names names{"palette preset", {}, {}};
    for (const std::string_view label : presets::Names) {
        names.labels.push_back({static_cast<std::uint8_t>(names.labels.size()), label});
    }
    return names;
}

/// What consists of digits only.
std::optional<int> numberIn(const std::string& text) {
    if (text.empty() || text.find_first_not_of("0123456789") != std::string::npos) {
        return std::nullopt;
    }
    int number = 0;
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() ? number : -1;
}

bool isExact(const Name& name, const std::string& text) { return lowerCase(name.text) == text; }

bool isPart(const Name& name, const std::string& text) {
    return lowerCase(name.text).find(text) != std::string::npos;
}

/// The numbers of the names that fit, each once.
std::vector<std::uint8_t> fitting(const Names& names, bool (*fits)(const Name&, const std::string&),
                                  const std::string& text) {
    std::vector<std::uint8_t> numbers;
    for (const auto* list : {&names.labels, &names.aliases}) {
        for (const Name& name : *list) {
            if (fits(name, text) && std::ranges::count(numbers, name.number) == 0) {
                numbers.push_back(name.number);
            }
        }
    }
    return numbers;
}

std::string listed(const Names& names, const std::vector<std::uint8_t>& numbers) {
    std::string text;
    for (const Name& name : names.labels) {
        if (numbers.empty() || std::ranges::count(numbers, name.number) > 0) {
            text += (text.empty() ? "" : ", ") + numberAndLabel(names, name.number);
        }
    }
    return text + ".";
}

Failure unknown(const Names& names, const std::string& text) {
    return {ExitCode::Usage, "There is no " + std::string(names.kind) + " \"" + text + "\".",
            "There are: " + listed(names, {})};
}

}  // namespace

const Names& modeNames() {
    static const Names names = makeModes();
    return names;
}

const Names& presetNames() {
    static const Names names = makePresets();
    return names;
}

std::uint8_t lookUp(const Names& names, const std::string& text) {
    if (const auto number = numberIn(text)) {
        const auto found = std::ranges::find_if(
            names.labels, [&](const Name& name) { return name.number == *number; });
        if (found == names.labels.end()) {
            throw unknown(names, text);
        }
        return found->number;
    }
    const std::string wanted = lowerCase(text);
    auto numbers = fitting(names, isExact, wanted);
    if (numbers.empty()) {
        numbers = fitting(names, isPart, wanted);
    }
    if (numbers.empty()) {
        throw unknown(names, text);
    }
    if (numbers.size() > 1) {
        throw Failure(ExitCode::Usage,
                      "\"" + text + "\" is more than one " + std::string(names.kind) + ".",
                      "Say more of the name, or the number: " + listed(names, numbers));
    }
    return numbers.front();
}

std::string_view labelOf(const Names& names, std::uint8_t number) {
    const auto found = std::ranges::find(names.labels, number, &Name::number);
    return found == names.labels.end() ? std::string_view() : found->text;
}

std::string numberAndLabel(const Names& names, std::uint8_t number) {
    const std::string_view label = labelOf(names, number);
    return std::to_string(number) + " " + (label.empty() ? "(no name)" : std::string(label));
}

nlohmann::ordered_json nameJson(const Names& names, std::uint8_t number) {
    using Json = nlohmann::ordered_json;
    const std::string_view label = labelOf(names, number);
    return {{"number", number}, {"name", label.empty() ? Json() : Json(label)}};
}

}  // namespace control
