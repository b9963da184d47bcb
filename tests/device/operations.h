#ifndef LUMADOT_TESTS_DEVICE_OPERATIONS_H
#define LUMADOT_TESTS_DEVICE_OPERATIONS_H

#include <functional>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "tests/support/bus_log.h"

/// One operation of the device link, and what it transfers between `setup` and `release`.
struct Operation {
    std::string name;
    std::function<std::optional<bool>()> run;  ///< returns what the operation reports, if it does
    support::Lines transfers;                  ///< as they are with device #0
};

/// Every operation that opens a connection of its own, with the globals as at the program's start.
const std::vector<Operation>& operations();

inline std::ostream& operator<<(std::ostream& stream, const Operation& operation) {
    return stream << operation.name;
}

#endif
