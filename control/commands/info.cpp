#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>
#include <optional>

#include "control/commands/commands.h"
#include "control/device_text.h"
#include "control/text.h"

namespace control {

namespace {

/// Newer firmware has to tell its id; from the older one it is taken if it comes.
std::optional<std::string> uniqueIdOf(Channel& channel, const Settings& settings) {
    try {
        return readUniqueId(channel);
    } catch (const Interrupted&) {
        throw;
    } catch (const Failure& failure) {
        if (settings.isWhole || failure.code != ExitCode::NoAnswer) {
            throw;
        }
        return std::nullopt;
    }
}

std::string deviceText(const DeviceInfo& device) {
    return "bus " + std::to_string(device.bus) + ", port " + device.port + ", " +
           variantName(device.variant) +
           (device.product.empty() ? "" : " (" + printable(device.product) + ")");
}

ExitCode info(Session& session) {
    const auto channel = session.connect();
    const Settings settings = readSettings(*channel);
    const std::optional<std::string> id = uniqueIdOf(*channel, settings);

    Json& document = session.document();
    document["firmware"] = settings.isWhole ? Json(settings.firmware) : Json();
    document["uniqueId"] = id ? Json(*id) : Json();
    document["settings"] = settingsJson(settings);
    Output& output = session.output();
    output.result(textLine("Device", deviceText(*channel->device())));
    output.result(
        textLine("Firmware", settings.isWhole ? printable(settings.firmware) : "unknown"));
    output.result(textLine("Unique id", id ? printable(*id) : "unknown"));
    output.result(settingsText(settings));
    return ExitCode::Done;
}

}  // namespace

void defineInfo(CLI::App& app, Action& chosen) {
    app.callback([&chosen] { chosen = info; });
}

}  // namespace control
