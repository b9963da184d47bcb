#include <iterator>

#include "simulator/machine.h"
#include "simulator/window/words.h"
#include "simulator/window/words_of_values.h"

namespace simulator {

namespace {

constexpr const char* PresetNames[] = {"VGA",  "Red",    "Green", "Blue",  "Violet",
                                       "Cyan", "Yellow", "White", "Orange"};

/// Told by its colours: no two presets have the same.
std::string paletteInWords(const Palette& palette) {
    for (std::size_t i = 0; i < std::size(PresetNames); ++i) {
        const auto number = static_cast<std::uint8_t>(i);
        if (preset(number) == palette) {
            return words::presetName(number);
        }
    }
    return "Custom";
}

/// Settings that no client shows, by their places in the record.
std::string othersInWords(const Record& record) {
    std::string text;
    for (std::size_t i = PaletteIndexByte + 1; i < EnhancerByte; ++i) {
        text += (text.empty() ? "" : " ") + std::to_string(record[i]);
    }
    return text;
}

}  // namespace

std::string words::modeName(std::uint8_t mode) {
    const std::string name = machine(mode).name;
    return name.empty() ? "Unknown, number " + std::to_string(mode) : name;
}

std::string words::presetName(std::uint8_t index) {
    const std::string number = "Palette " + std::to_string(index);
    return index < std::size(PresetNames) ? number + " (" + PresetNames[index] + ")"
                                          : number + " (unknown)";
}

std::string words::onOff(std::uint8_t value) {
    return value == 0 ? "Off" : value == 1 ? "On" : "On, number " + std::to_string(value);
}

std::string words::bytes(std::size_t count) {
    return std::to_string(count) + (count == 1 ? " byte" : " bytes");
}

std::vector<Row> settingsInWords(const Controller& controller) {
    const Record& used = controller.working();
    const Record& kept = controller.permanent();
    return {
        {"Input mode", words::modeName(used[InputModeByte]), words::modeName(kept[InputModeByte])},
        {"Palette", paletteInWords(controller.palette()),
         paletteInWords(controller.permanentPalette())},
        {"Brightness", std::to_string(used[BrightnessByte]), std::to_string(kept[BrightnessByte])},
        {"Signal Enhancer", words::onOff(used[EnhancerByte]), words::onOff(kept[EnhancerByte])},
        {"Other settings", othersInWords(used), othersInWords(kept)}};
}

std::vector<Row> filesInWords(const Controller& controller) {
    std::vector<Row> rows;
    for (const auto& [name, data] : controller.files()) {
        rows.push_back({words::printable(name), words::bytes(data.size())});
    }
    return rows;
}

}  // namespace simulator
