#ifndef LUMADOT_TESTS_DEVICE_FAULTS_OPERATIONS_H
#define LUMADOT_TESTS_DEVICE_FAULTS_OPERATIONS_H

#include <functional>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "simulator/bus.h"
#include "tests/support/device_link.h"

namespace faults {

/// An operation of the device link, and what it does when nothing fails.
struct Operation {
    std::string name;
    std::function<std::optional<bool>()> run;  ///< returns what the operation reports, if it does
    support::Lines transfers;                  ///< as they are with device #0
    /// How much of its work has been done: `whole` when nothing fails.
    std::function<int(const simulator::Controller&)> done;
    int whole = 1;
    std::string message = {};  ///< of the box at the end, empty: none comes
    unsigned long pause = 0;   ///< ms, in every case
    bool keepsOpen = false;    ///< it leaves the controller open and claimed, on purpose
    simulator::SettingsLayout layout = simulator::SettingsLayout::Newer;
    simulator::Board board = simulator::Board::Standard;
};

inline std::ostream& operator<<(std::ostream& stream, const Operation& operation) {
    return stream << operation.name;
}

/// Every operation of the device link; reading the settings is there in both layouts, a capture
/// with and without a raw file, with the shortest, the longest and an XL controller's replies.
const std::vector<Operation>& operations();
const Operation& operationNamed(const std::string& name);

/// What the board of an operation is made with: settings that differ from the tool's in every byte.
simulator::ControllerOptions boardFor(const Operation& operation);
std::string productFor(const Operation& operation);

/// What the tool holds of a board.
struct Held {
    support::RecordBytes record{};
    std::string version, id;
    bool operator==(const Held&) const = default;
};

inline std::ostream& operator<<(std::ostream& stream, const Held& held) {
    return stream << support::byteText(held.record) << " '" << held.version << "' '" << held.id
                  << "'";
}

inline const std::string BoardId = "3A7F00C21D5E9B64";

/// The factory settings, and a version text and an id of another board.
const Held& heldBefore();
void setWhatTheToolHolds(const Held& held);
Held whatTheToolHolds();

/// The file that `uploadFile` uploads, 1100 bytes: three blocks.
const std::string& uploadedFile();

}  // namespace faults

#endif
