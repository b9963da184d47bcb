#ifndef LUMADOT_DEVICE_WIRE_H
#define LUMADOT_DEVICE_WIRE_H

#include <cstdint>

/// The controller on the bus, and how long the tool waits for it. All times in ms.
namespace wire {

inline constexpr std::uint16_t VendorId = 0x0314;
inline constexpr std::uint16_t ProductId = 0xE457;
inline constexpr int Interface = 0;
inline constexpr std::uint8_t EndpointOut = 0x01;
inline constexpr std::uint8_t EndpointIn = 0x81;

inline constexpr unsigned int Timeout = 1000;  ///< every transfer but those of a frame dump
inline constexpr unsigned int DumpRequestTimeout = 2000;
inline constexpr unsigned int DumpReplyTimeout = 10000;

inline constexpr unsigned long BrightnessPause = 50;  ///< after a brightness frame
inline constexpr unsigned long StorePause = 1000;     ///< from writing the settings to storing them
inline constexpr unsigned long RestartPause = 3000;   ///< that the controller may take to come back

}  // namespace wire

#endif
