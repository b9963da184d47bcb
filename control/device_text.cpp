#include "control/device_text.h"

#include <nlohmann/json.hpp>

#include "control/names.h"
#include "control/text.h"

namespace control {

using Json = nlohmann::ordered_json;

std::string variantName(int variant) {
    switch (variant) {
        case variant::Standard:
            return "standard";
        case variant::Xl:
            return "xl";
        default:
            return "unknown";
    }
}

Json deviceJson(const DeviceInfo& device) {
    return {{"bus", device.bus},
            {"port", device.port},
            {"variant", variantName(device.variant)},
            {"product", device.product.empty() ? Json() : Json(device.product)}};
}

Json settingsJson(const Settings& settings) {
    const configDescriptor& record = settings.record;
    return {{"mode", nameJson(modeNames(), record.inputMode)},
            {"preset", nameJson(presetNames(), record.paletteIndex)},
            {"enhancer", record.enhancer != 0},
            {"brightness", record.brightness},
            {"record", settings.isWhole ? Json(hexDigits(settings::bytesOf(record))) : Json()}};
}

std::string textLine(const std::string& what, const std::string& value) {
    constexpr std::size_t Column = 13;
    return what + std::string(Column - what.size(), ' ') + value;
}

std::string settingsText(const Settings& settings) {
    constexpr std::size_t First = 2;
    constexpr std::size_t Count = 19;
    const configDescriptor& record = settings.record;
    const auto bytes = settings::bytesOf(record);
    const std::string rest = settings.isWhole
                                 ? hexDigits(std::span(bytes).subspan<First, Count>(), " ")
                                 : "not told by this firmware";
    return textLine("Mode", numberAndLabel(modeNames(), record.inputMode)) + "\n" +
           textLine("Preset", numberAndLabel(presetNames(), record.paletteIndex)) + "\n" +
           textLine("Enhancer", record.enhancer != 0 ? "on" : "off") + "\n" +
           textLine("Brightness", std::to_string(record.brightness)) + "\n" +
           textLine("Bytes 2-20", rest);
}

}  // namespace control
