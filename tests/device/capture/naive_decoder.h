#ifndef LUMADOT_TESTS_DEVICE_CAPTURE_NAIVE_DECODER_H
#define LUMADOT_TESTS_DEVICE_CAPTURE_NAIVE_DECODER_H

#include <cstdint>
#include <string>
#include <vector>

/// A second reading of the dump format, one dot at a time and as slow as it likes. It includes
/// nothing of the tool, so that a mistake there cannot cancel out here.
namespace naive {

using Bytes = std::vector<std::uint8_t>;

/// The modes with an entry of their own in the format's tables, and one without.
const std::vector<int>& allModes();

/// Planes that a capture asks the standard controller for.
int planes(int mode);
bool hasRawFile(int mode);

/// The controller's time stamp in a reply of at least four bytes.
std::uint32_t clockOf(const Bytes& reply);

/// The text of a frame; `planeData` is the reply from byte 4 on, whatever there is of it.
std::string text(int mode, bool xl, std::uint32_t stamp, const Bytes& planeData);

/// The frame in a raw file, which looks the same on both controllers.
Bytes raw(int mode, std::uint32_t stamp, const Bytes& planeData);
Bytes rawHeader(int mode);

}  // namespace naive

#endif
