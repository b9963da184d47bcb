#ifndef LUMADOT_CONTROL_DEVICE_TEXT_H
#define LUMADOT_CONTROL_DEVICE_TEXT_H

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "control/channel.h"
#include "control/settings_exchange.h"

namespace control {

/// "standard", "xl", "unknown".
std::string variantName(int variant);

/// {"bus", "port", "variant", "product"}, the product null when it is unreadable.
nlohmann::ordered_json deviceJson(const DeviceInfo& device);

/// {"mode", "preset", "enhancer", "brightness", "record"}, the record null where it is not whole.
nlohmann::ordered_json settingsJson(const Settings& settings);

/// The same as lines "Mode         2 Stern S.A.M.".
std::string settingsText(const Settings& settings);

/// A line of such a text, without line end.
std::string textLine(const std::string& what, const std::string& value);

}  // namespace control

#endif
