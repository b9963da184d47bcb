#ifndef LUMADOT_TESTS_SUPPORT_VARIABLES_H
#define LUMADOT_TESTS_SUPPORT_VARIABLES_H

#include <cstdlib>
#include <string>

namespace support {

/// Sets a variable of the environment; "": it is taken away.
inline void setVariable(const std::string& name, const std::string& value) {
#ifdef _WIN32
    _putenv_s(name.c_str(), value.c_str());
#else
    value.empty() ? unsetenv(name.c_str()) : setenv(name.c_str(), value.c_str(), 1);
#endif
}

}  // namespace support

#endif
