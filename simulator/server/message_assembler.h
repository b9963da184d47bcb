#ifndef LUMADOT_SIMULATOR_SERVER_MESSAGE_ASSEMBLER_H
#define LUMADOT_SIMULATOR_SERVER_MESSAGE_ASSEMBLER_H

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace simulator {

/// Makes messages of the packets that arrive on the OUT endpoint, as the board's firmware does: a
/// frame or a dump request is told by its first bytes and ends when it has its size, whatever
/// packets it came in. Anything else ends with a short packet. A message that breaks off is dropped
/// when a short packet was its last and the next one starts a frame or a dump request.
class MessageAssembler {
public:
    using Bytes = std::vector<std::uint8_t>;

    /// One packet, of descriptors::BulkPacketSize bytes at most. Returns the messages it ended:
    /// none, one, or the one that it broke off and one more.
    std::vector<Bytes> take(std::span<const std::uint8_t> packet);

    bool collecting() const { return !bytes_.empty(); }
    /// What has been collected, to be read at the end of a message that will never be whole.
    const Bytes& collected() const { return bytes_; }
    void reset();

private:
    Bytes bytes_;
    bool afterShort_ = false;  // The last packet was a short one.
};

}  // namespace simulator

#endif
