#ifndef LUMADOT_TESTS_CONTROL_RAN_H
#define LUMADOT_TESTS_CONTROL_RAN_H

#include <ostream>
#include <sstream>
#include <string>
#include <vector>

#include "control/run.h"

namespace support {

/// What a run of lumadotctl has left.
struct Ran {
    int code = 0;
    std::string out = {};
    std::string err = {};
    bool operator==(const Ran&) const = default;
};

inline std::ostream& operator<<(std::ostream& stream, const Ran& ran) {
    return stream << "exit code " << ran.code << "\n--- out\n" << ran.out << "--- err\n" << ran.err;
}

using Arguments = std::vector<std::string>;

inline Ran lumadotctl(const Arguments& arguments) {
    std::vector<const char*> pointers;
    for (const std::string& argument : arguments) {
        pointers.push_back(argument.c_str());
    }
    std::ostringstream out;
    std::ostringstream err;
    const int code = control::run(pointers, out, err);
    return {code, out.str(), err.str()};
}

}  // namespace support

#endif
