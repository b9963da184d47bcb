#ifndef LUMADOT_TESTS_SUPPORT_GTK_H
#define LUMADOT_TESTS_SUPPORT_GTK_H

#include <dlfcn.h>

#include <stdexcept>
#include <string>

namespace support {

/// A function of the GTK library that the toolkit has loaded, as `gtk<int(void*)>("gtk_...")`; it
/// spares the tests GTK's headers, which nothing else here needs.
template <typename Function>
Function* gtk(const char* name) {
    auto* const function = reinterpret_cast<Function*>(dlsym(RTLD_DEFAULT, name));
    if (function == nullptr) {
        throw std::runtime_error(std::string("GTK has no ") + name);
    }
    return function;
}

}  // namespace support

#endif
