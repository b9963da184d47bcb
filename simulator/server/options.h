#ifndef LUMADOT_SIMULATOR_SERVER_OPTIONS_H
#define LUMADOT_SIMULATOR_SERVER_OPTIONS_H

#include <optional>
#include <string>
#include <vector>

#include "simulator/controller.h"
#include "simulator/server/server.h"
#include "simulator/server/transfer.h"

namespace simulator {

/// What the command line of lumadot-simulator asks for.
struct ProgramOptions {
    bool headless = false;
    ControllerOptions controller = {};
    Server::Options server = {};
    std::string log = {};  ///< a file, made anew; empty: none
    std::vector<TransferFault> faults = {};
};

/// Nothing: there is nothing more to do, as for --help; `exitCode` is the program's, 0 or, for what
/// cannot be understood, 2. The reason has been printed.
std::optional<ProgramOptions> parseArguments(int argc, const char* const* argv, int& exitCode);

}  // namespace simulator

#endif
