#ifndef LUMADOT_TESTS_SUPPORT_BUS_LOG_H
#define LUMADOT_TESTS_SUPPORT_BUS_LOG_H

#include <initializer_list>
#include <string>
#include <vector>

#include "simulator/bus.h"

namespace support {

/// The log of the simulated bus as text, one line a call. "#0" is the device that it is about,
/// "stale" a handle that is not open:
///
///     libusb_open #0
///     libusb_get_string_descriptor_ascii index 2 length 256 #0
///     libusb_claim_interface 0 #0
///     out 0x01 2052 1000ms #0: 81 C3 E7 FF 10 00*2047
///     in 0x81 63 1000ms counted #0
///
/// A transfer to the device shows the bytes that went over the wire; "counted" says that the
/// transferred count was asked for.
using Lines = std::vector<std::string>;

std::string lineOf(const simulator::Call& call);

/// All calls that the bus has logged.
Lines callLines();

/// Only the bytes of the packets that were sent, as "81 C3 E7 FF 10 00*2047".
Lines sentFrames();

/// One list of lines after the other.
Lines joined(std::initializer_list<Lines> parts);

/// The calls of a `setup` that finds #0 as the only device on the bus.
Lines setupLines();
/// The calls of a `setup` on an empty bus.
Lines emptyBusLines();
Lines releaseLines();
/// The calls of a whole connection around these transfers.
Lines connection(const Lines& transfers);

/// The lines as they are about another device than #0.
Lines aboutDevice(int number, Lines lines);
/// The lines as they are with a handle that is no longer open: nothing goes over the wire.
Lines withStaleHandle(Lines lines);

}  // namespace support

#endif
