#ifndef LUMADOT_SIMULATOR_SERVER_TRANSFER_H
#define LUMADOT_SIMULATOR_SERVER_TRANSFER_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace simulator {

/// A bulk transfer that is over: one message to the board or one reply of it, in however many URBs.
struct Transfer {
    std::uint8_t endpoint = 0;            ///< descriptors::OutEndpoint or InEndpoint
    std::vector<std::uint8_t> data = {};  ///< the bytes that went over the wire
    /// Why it ended badly: "stall", "overflow", "unlinked" by the client, "replaced" by a newer
    /// reply, "not configured", "disconnected", "unplugged"; empty: it ended well.
    std::string error = {};
};

/// A transfer as a line of the log, without line end: a JSON object with `ep` (1, 129), `len` in
/// bytes, `data` in hexadecimal without the zeros at its end, `zeros`, their number, and `error` if
/// there is one.
std::string logLine(const Transfer& transfer);

/// What a chosen transfer does instead of what it should.
struct TransferFault {
    enum class What { Stall, Timeout, Short, Unplug };

    std::uint8_t endpoint = 0;
    int nth = 1;  ///< which transfer of the endpoint from now, 1 = the next; 0 = every one
    What what = What::Stall;
    std::size_t bytes = 0;  ///< Short: what is left of the transfer

    bool operator==(const TransferFault&) const = default;
};

/// From "ENDPOINT:N:WHAT": `out` or `in`, the Nth transfer (0: every one), and `stall`, `timeout`
/// (it is never answered), `short=BYTES` or `unplug`; nothing: it is something else.
std::optional<TransferFault> parseFault(std::string_view text);

/// Faults that wait for their transfer.
class FaultList {
public:
    void add(const TransferFault& fault) { faults_.push_back(fault); }
    void clear() { faults_.clear(); }
    /// The fault of the transfer that begins now. Of several the one added first happens.
    std::optional<TransferFault> begin(std::uint8_t endpoint);

private:
    std::vector<TransferFault> faults_;
};

}  // namespace simulator

#endif
