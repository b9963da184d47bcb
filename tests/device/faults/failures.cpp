// The failures that the library documents, for each call.

#include <libusb.h>

#include <limits>
#include <set>

#include "tests/device/faults/results.h"

namespace faults {

namespace {

using simulator::Packet;

constexpr int Errors[] = {
    LIBUSB_ERROR_IO,          LIBUSB_ERROR_INVALID_PARAM, LIBUSB_ERROR_ACCESS,
    LIBUSB_ERROR_NO_DEVICE,   LIBUSB_ERROR_NOT_FOUND,     LIBUSB_ERROR_BUSY,
    LIBUSB_ERROR_TIMEOUT,     LIBUSB_ERROR_OVERFLOW,      LIBUSB_ERROR_PIPE,
    LIBUSB_ERROR_INTERRUPTED, LIBUSB_ERROR_NO_MEM,        LIBUSB_ERROR_NOT_SUPPORTED,
    LIBUSB_ERROR_OTHER,
};

/// Counts that a transfer may claim to have moved, true or not.
constexpr int Claims[] = {std::numeric_limits<int>::min(), -1, 0, 1, 62, 63, 64, 100000,
                          std::numeric_limits<int>::max()};

/// How a read can fail though bytes have arrived.
constexpr int ErrorsWithBytes[] = {LIBUSB_ERROR_IO, LIBUSB_ERROR_TIMEOUT, LIBUSB_ERROR_OVERFLOW,
                                   LIBUSB_ERROR_NO_DEVICE};

/// Collects the failures of one call.
class Collector {
public:
    Collector(std::vector<Failure>& all, int call, std::string line)
        : all_(all), call_(call), line_(std::move(line)) {}

    void add(Kind kind, const std::string& what, simulator::Fault fault) {
        fault.nth = call_;
        all_.push_back({"call " + std::to_string(call_) + ", " + line_ + ": " + what, call_, kind,
                        std::move(fault)});
    }
    void addErrors() {
        for (const int error : Errors) {
            add(Kind::Error, "error " + std::to_string(error), {.result = error});
        }
    }
    void addReply(const std::string& what, Packet bytes, Kind kind = Kind::Reply) {
        add(kind, what, {.reply = std::move(bytes)});
    }
    void addErrorsWith(const Packet& bytes) {
        for (const int error : ErrorsWithBytes) {
            add(Kind::Error, "error " + std::to_string(error) + " with bytes",
                {.result = error, .reply = bytes});
        }
    }
    void addClaims() {
        for (const int claim : Claims) {
            add(Kind::Reply, "claims " + std::to_string(claim), {.transferred = claim});
        }
    }

private:
    std::vector<Failure>& all_;
    int call_;
    std::string line_;
};

/// Lengths around those of "LUMADOT", "LUMADOT XL" and the buffer; more than there is of a name is
/// only claimed.
void addNames(Collector& call) {
    call.add(Kind::NoName, "no name", {.result = 0});
    for (const int length :
         {1, 6, 7, 8, 9, 10, 11, 255, 256, 257, std::numeric_limits<int>::max()}) {
        call.add(Kind::Reply, "length " + std::to_string(length), {.result = length});
    }
}

/// Lengths around the ends of what a reply holds: of a time stamp, a version, a record.
void addReplies(Collector& call, std::size_t longest) {
    std::set<std::size_t> lengths = {0, 1, 3, 4, 5, 9, 10, 11, 32, 33, longest / 2, longest - 1};
    lengths.erase(lengths.lower_bound(longest), lengths.end());
    lengths.insert({longest, longest + 1000});
    for (const std::size_t length : lengths) {
        call.addReply("length " + std::to_string(length), Packet(length, 0x56));
    }
    call.addErrorsWith(Packet(longest, 0x56));
    call.addErrorsWith(Packet(longest / 2, 0x56));
}

void addAcknowledgements(Collector& call) {
    for (const std::uint8_t value : Packet{0x00, 0x02, 0x03, 0x7F, 0x80, 0x81, 0xFE, 0xFF}) {
        call.addReply("acknowledged with " + std::to_string(value), {value});
    }
    call.addReply("refused", {0x01}, Kind::Error);
    call.addReply("acknowledged with nothing", {});
    call.addReply("acknowledged with two bytes", {0x00, 0x01});
    call.addReply("refused with two bytes", {0x01, 0x00}, Kind::Error);
    call.addErrorsWith({0x00});
}

void addTransferReplies(Collector& call, const std::string& line) {
    if (line.find("counted") != std::string::npos) {
        call.addClaims();  // Nobody hears of the others.
    }
    if (!line.starts_with("in ")) {
        return;
    }
    const std::size_t length = std::stoul(line.substr(std::string("in 0x81 ").size()));
    if (length == 1) {
        addAcknowledgements(call);
    } else {
        addReplies(call, length);
    }
}

}  // namespace

std::vector<Failure> failuresOf(const support::Lines& calls) {
    std::vector<Failure> all;
    int number = 0;
    for (const std::string& line : calls) {
        Collector call(all, ++number, line.substr(0, line.find(':')));
        const bool hasResult =
            !line.starts_with("libusb_free_device_list") && !line.starts_with("libusb_close");
        if (hasResult) {
            call.addErrors();
        }
        if (line.starts_with("libusb_get_string_descriptor_ascii")) {
            addNames(call);
        }
        if (!line.starts_with("libusb_")) {
            addTransferReplies(call, line);
        }
        // That call is about no device: leaving with it is leaving with the one after it.
        if (!line.starts_with("libusb_free_device_list")) {
            call.add(Kind::Unplugged, "unplugged", {.unplug = true});
        }
    }
    return all;
}

}  // namespace faults
