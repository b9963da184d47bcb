#ifndef LUMADOT_CONTROL_SETTINGS_EXCHANGE_H
#define LUMADOT_CONTROL_SETTINGS_EXCHANGE_H

#include <string>

#include "control/channel.h"
#include "device/settings_record.h"

namespace control {

/// What a controller tells of its settings.
struct Settings {
    configDescriptor record;
    /// Older firmware tells neither bytes 2 to 20 nor its version: they are zero and empty then.
    bool isWhole = false;
    std::string firmware;
};

/// Asks for the settings. Throws Failure, also when the reply is too short for what it has to hold.
Settings readSettings(Channel& channel);

/// The same for a command that needs every byte of the record: older firmware is a failure.
Settings readWholeSettings(Channel& channel, const std::string& purpose);

/// Asks for the unique id, any bytes but zero. Throws Failure.
std::string readUniqueId(Channel& channel);

}  // namespace control

#endif
