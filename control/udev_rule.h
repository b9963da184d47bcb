#ifndef LUMADOT_CONTROL_UDEV_RULE_H
#define LUMADOT_CONTROL_UDEV_RULE_H

#include <array>
#include <filesystem>
#include <span>

namespace control {

/// Where udev reads its rules.
inline const std::array<std::filesystem::path, 5> RuleFolders = {
    "/etc/udev/rules.d", "/run/udev/rules.d", "/usr/local/lib/udev/rules.d",
    "/usr/lib/udev/rules.d", "/lib/udev/rules.d"};

/// Whether a file "*.rules" in one of the folders names the controller's vendor and product.
bool isRuleInstalled(std::span<const std::filesystem::path> folders);

}  // namespace control

#endif
