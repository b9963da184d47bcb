#ifndef LUMADOT_CONTROL_HOLDER_H
#define LUMADOT_CONTROL_HOLDER_H

#include <filesystem>
#include <optional>
#include <string>

namespace control {

/// A program that has a device open.
struct Holder {
    std::string program;
    int pid;
};

/// Who but this process has the device with this address on this bus open, as far as the user may
/// see it. `processes` is the system's folder of processes; elsewhere than on Linux there is none.
std::optional<Holder> holderOf(int bus, int address,
                               const std::filesystem::path& processes = "/proc");

}  // namespace control

#endif
