#include "simulator/server/requests.h"

#include "simulator/server/fields.h"

namespace simulator::usbip {

namespace {

constexpr std::uint32_t HighestEndpoint = 15;

std::string number(const char* what, std::uint32_t value) {
    return std::string(what) + " " + std::to_string(value);
}

}  // namespace

void RequestReader::feed(std::span<const std::uint8_t> bytes) {
    buffer_.erase(buffer_.begin(), buffer_.begin() + static_cast<std::ptrdiff_t>(start_));
    start_ = 0;
    if (problem_.empty()) {
        buffer_.insert(buffer_.end(), bytes.begin(), bytes.end());
    }
}

std::span<const std::uint8_t> RequestReader::waiting() const {
    return std::span(buffer_).subspan(start_);
}

std::optional<RequestReader::Request> RequestReader::next() {
    if (!problem_.empty()) {
        return std::nullopt;
    }
    return device_ ? nextUrb() : nextOperation();
}

std::optional<RequestReader::Request> RequestReader::refuse(std::string problem) {
    problem_ = std::move(problem);
    buffer_.clear();
    start_ = 0;
    return std::nullopt;
}

std::optional<RequestReader::Request> RequestReader::nextOperation() {
    const auto bytes = waiting();
    if (bytes.size() < OperationSize) {
        return std::nullopt;
    }
    Reader reader(bytes);
    if (const std::uint16_t version = reader.half(); version != Version) {
        return refuse(number("unknown protocol version", version));
    }
    const std::uint16_t code = reader.half();
    reader.skip(4);  // The status says nothing in a request.
    switch (static_cast<Operation>(code)) {
        case Operation::ListRequest:
            start_ += OperationSize;
            return ListRequest{};
        case Operation::ImportRequest:
            if (bytes.size() < OperationSize + BusIdSize) {
                return std::nullopt;
            }
            start_ += OperationSize + BusIdSize;
            return ImportRequest{reader.text(BusIdSize)};
        default:
            return refuse(number("unknown operation", code));
    }
}

std::optional<RequestReader::Request> RequestReader::nextUrb() {
    if (waiting().size() < UrbHeaderSize) {
        return std::nullopt;
    }
    Reader reader(waiting());
    const std::uint32_t code = reader.word();
    Submit submit;
    submit.sequence = reader.word();
    submit.device = reader.word();
    const std::uint32_t direction = reader.word();
    submit.direction = static_cast<Direction>(direction);
    submit.endpoint = reader.word();
    if (submit.device != *device_) {
        return refuse(number("request for another device,", submit.device));
    }
    switch (static_cast<UrbCode>(code)) {
        case UrbCode::Submit:
            break;
        case UrbCode::Unlink:
            start_ += UrbHeaderSize;
            return Unlink{submit.sequence, submit.device, reader.word()};
        default:
            return refuse(number("unknown command", code));
    }
    if (direction > static_cast<std::uint32_t>(Direction::In)) {
        return refuse(number("unknown direction", direction));
    }
    if (submit.endpoint > HighestEndpoint) {
        return refuse(number("no such endpoint,", submit.endpoint));
    }
    return readSubmit(std::move(submit));
}

/// Reads what follows the fields that all requests have.
std::optional<RequestReader::Request> RequestReader::readSubmit(Submit submit) {
    Reader reader(waiting());
    reader.skip(20);
    submit.flags = reader.word();
    submit.length = reader.word();
    reader.skip(4);
    if (const std::uint32_t packets = reader.word(); packets != 0 && packets != NoPackets) {
        return refuse(number("isochronous transfer of packets,", packets));
    }
    if (submit.length > LongestTransfer) {
        return refuse(number("transfer too long, bytes", submit.length));
    }
    const bool isOut = submit.direction == Direction::Out;
    const std::size_t size = UrbHeaderSize + (isOut ? submit.length : 0);
    if (waiting().size() < size) {
        return std::nullopt;
    }
    const auto message = waiting().first(size);
    const auto setup = message.subspan(UrbHeaderSize - SetupSize, SetupSize);
    std::copy(setup.begin(), setup.end(), submit.setup.begin());
    submit.data.assign(message.begin() + UrbHeaderSize, message.end());
    start_ += size;
    return submit;
}

}  // namespace simulator::usbip
