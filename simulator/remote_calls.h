#ifndef LUMADOT_SIMULATOR_REMOTE_CALLS_H
#define LUMADOT_SIMULATOR_REMOTE_CALLS_H

#include <optional>

#include "simulator/call_in_progress.h"

// The library calls about a device that is in a simulator elsewhere (`Device::remote`). Their
// results are libusb's; a device that turns out to have gone has left the bus.
namespace simulator {

/// Has the simulator keep the device for this process.
int openRemote(LibraryCalls::State::Slot& slot);
/// The last handle closed lets others have it.
void letGoRemote(CallInProgress& progress);
int readRemoteString(CallInProgress& progress, unsigned char* data);
int sendRemote(CallInProgress& progress, const unsigned char* data, std::optional<int>& moved);
int receiveRemote(CallInProgress& progress, unsigned char* data, std::optional<int>& moved);

}  // namespace simulator

#endif
