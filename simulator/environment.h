#ifndef LUMADOT_SIMULATOR_ENVIRONMENT_H
#define LUMADOT_SIMULATOR_ENVIRONMENT_H

namespace simulator {

class Bus;

/// Sets up the bus for a program that knows nothing of it, from environment variables:
///
///   LUMADOT_SIM_BOARD     standard, xl, or none (no device; also when unset)
///   LUMADOT_SIM_LAYOUT    newer (when unset) or older: the settings reply
///   LUMADOT_SIM_UID       the unique id
///   LUMADOT_SIM_STORE     folder for what survives a restart
///   LUMADOT_SIM_FRAME_MS  ms between two captured frames, 0 (when unset) to 60000
///   LUMADOT_SIM_TIME      fast (when unset): waits end at once; or real
///   LUMADOT_SIM_LOG       file that a line for each call is appended to
///   LUMADOT_SIM_FAULT     faults, separated by commas: function:nth:result, for example
///                         "libusb_claim_interface:1:-6"
///   LUMADOT_SIM_CONNECT   HOST:PORT of a running simulator, which has the board then, so that the
///                         variables for the board have no effect
///
/// A value that makes no sense is said on stderr, with those that do, and the bus stays empty.
void configureFromEnvironment(Bus& bus);

}  // namespace simulator

#endif
