#ifndef LUMADOT_SIMULATOR_SERVER_REQUESTS_H
#define LUMADOT_SIMULATOR_SERVER_REQUESTS_H

#include "simulator/server/messages.h"

namespace simulator::usbip {

/// Cuts what a client sends into its requests, however the bytes arrive. Keeps no more than one
/// request that is still to be completed, and that is never longer than LongestTransfer and its
/// header.
class RequestReader {
public:
    using Request = std::variant<ListRequest, ImportRequest, Submit, Unlink>;

    void feed(std::span<const std::uint8_t> bytes);

    /// The next whole request; nothing: more bytes are needed, or the client does not speak the
    /// protocol (`problem`).
    std::optional<Request> next();

    /// From here on URBs are expected. They are about this device, or wrong.
    void expectUrbs(std::uint32_t device) { device_ = device; }

    /// What is wrong with the bytes, in words; empty: nothing. It stays wrong.
    const std::string& problem() const { return problem_; }

    /// True: the bytes end in the middle of a request.
    bool unfinished() const { return start_ < buffer_.size(); }

private:
    std::optional<Request> nextOperation();
    std::optional<Request> nextUrb();
    std::optional<Request> readSubmit(Submit submit);
    std::optional<Request> refuse(std::string problem);
    std::span<const std::uint8_t> waiting() const;

    Bytes buffer_;
    std::size_t start_ = 0;  // What lies before it has been taken.
    std::optional<std::uint32_t> device_;
    std::string problem_;
};

}  // namespace simulator::usbip

#endif
