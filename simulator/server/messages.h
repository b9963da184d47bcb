#ifndef LUMADOT_SIMULATOR_SERVER_MESSAGES_H
#define LUMADOT_SIMULATOR_SERVER_MESSAGES_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <variant>
#include <vector>

/// The messages of USB/IP 1.1.1, to and from bytes; all numbers big-endian. A connection starts
/// with one operation (list or import); after an import that was granted it carries URBs.
namespace simulator::usbip {

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint16_t Version = 0x0111;
constexpr std::uint16_t DefaultPort = 3240;

constexpr std::size_t OperationSize = 8;  ///< version, code, status
constexpr std::size_t PathSize = 256;
constexpr std::size_t BusIdSize = 32;
constexpr std::size_t DeviceSize = PathSize + BusIdSize + 24;
constexpr std::size_t UrbHeaderSize = 48;
constexpr std::size_t SetupSize = 8;

/// No client needs more in one URB; usbfs does not let one have more in all of its URBs.
constexpr std::uint32_t LongestTransfer = 16U << 20U;

enum class Operation : std::uint16_t {
    ListRequest = 0x8005,
    ListReply = 0x0005,
    ImportRequest = 0x8003,
    ImportReply = 0x0003,
};

enum class UrbCode : std::uint32_t { Submit = 1, Unlink = 2, SubmitReply = 3, UnlinkReply = 4 };

/// The number of packets of a transfer that is not isochronous.
constexpr std::uint32_t NoPackets = 0xFFFFFFFF;

enum class Status : std::uint32_t { Ok = 0, Busy = 2, NoDevice = 4 };

enum class Direction : std::uint32_t { Out = 0, In = 1 };

/// How an URB ended: 0 or a negative error number of Linux, whatever system this runs on.
namespace result {
constexpr std::int32_t Done = 0;
constexpr std::int32_t Stall = -32;         ///< EPIPE
constexpr std::int32_t NoAnswer = -71;      ///< EPROTO
constexpr std::int32_t Overflow = -75;      ///< EOVERFLOW
constexpr std::int32_t Unlinked = -104;     ///< ECONNRESET
constexpr std::int32_t ShortPacket = -121;  ///< EREMOTEIO
}  // namespace result

namespace flag {
constexpr std::uint32_t ShortIsError = 0x0001;  ///< IN: less than asked for ends with ShortPacket
constexpr std::uint32_t ZeroPacket = 0x0040;    ///< OUT: an empty packet after a last full one
}  // namespace flag

/// A device as the server lists it. The path and the bus id are cut to what their fields hold.
struct ExportedDevice {
    std::string path = {};
    std::string busId = {};
    std::uint32_t busNumber = 0;
    std::uint32_t deviceNumber = 0;
    std::uint32_t speed = 0;
    std::uint16_t vendor = 0;
    std::uint16_t product = 0;
    std::uint16_t release = 0;
    std::array<std::uint8_t, 3> deviceClass = {};  ///< class, subclass, protocol
    std::uint8_t configuration = 0;
    std::uint8_t configurations = 0;
    std::uint8_t interfaces = 0;

    /// What names the device in URBs.
    std::uint32_t id() const { return busNumber << 16U | deviceNumber; }
    bool operator==(const ExportedDevice&) const = default;
};

/// Class, subclass and protocol of an interface.
using InterfaceClass = std::array<std::uint8_t, 3>;

struct ListedDevice {
    ExportedDevice device = {};
    std::vector<InterfaceClass> interfaces = {};
};

struct ListRequest {
    bool operator==(const ListRequest&) const = default;
};

struct ImportRequest {
    std::string busId = {};
    bool operator==(const ImportRequest&) const = default;
};

/// An URB.
struct Submit {
    std::uint32_t sequence = 0;
    std::uint32_t device = 0;
    Direction direction = Direction::Out;
    std::uint32_t endpoint = 0;  ///< 0..15
    std::uint32_t flags = 0;
    std::uint32_t length = 0;  ///< bytes offered or asked for
    std::array<std::uint8_t, SetupSize> setup = {};
    Bytes data = {};  ///< OUT: `length` bytes
    bool operator==(const Submit&) const = default;
};

/// Takes back the URB `target`, if it has not completed.
struct Unlink {
    std::uint32_t sequence = 0;
    std::uint32_t device = 0;
    std::uint32_t target = 0;
    bool operator==(const Unlink&) const = default;
};

/// What became of an URB.
struct SubmitReply {
    std::uint32_t sequence = 0;
    std::int32_t status = result::Done;
    std::uint32_t length = 0;  ///< bytes moved
    Bytes data = {};           ///< IN: `length` bytes
    bool operator==(const SubmitReply&) const = default;
};

/// `status` is result::Unlinked, or Done when the URB had completed before.
struct UnlinkReply {
    std::uint32_t sequence = 0;
    std::int32_t status = result::Done;
    bool operator==(const UnlinkReply&) const = default;
};

Bytes encode(const ListRequest& request);
Bytes encode(const ImportRequest& request);
Bytes encode(const Submit& request);
Bytes encode(const Unlink& request);
Bytes encodeList(std::span<const ListedDevice> devices);
/// `device` is sent with Status::Ok only.
Bytes encodeImportReply(Status status, const ExportedDevice& device);
Bytes encode(const SubmitReply& reply);
Bytes encode(const UnlinkReply& reply);

/// The status of a reply to this operation; nothing: the bytes are no such reply.
std::optional<std::uint32_t> decodeStatus(Operation operation,
                                          std::span<const std::uint8_t, OperationSize> bytes);
ExportedDevice decodeDevice(std::span<const std::uint8_t, DeviceSize> bytes);

/// The header of a reply in the URB phase. The bytes of an IN transfer follow it.
struct UrbReply {
    bool isUnlink = false;
    std::uint32_t sequence = 0;
    std::int32_t status = result::Done;
    std::uint32_t length = 0;
};
std::optional<UrbReply> decodeUrbReply(std::span<const std::uint8_t, UrbHeaderSize> bytes);

std::uint32_t decodeNumber(std::span<const std::uint8_t, 4> bytes);

}  // namespace simulator::usbip

#endif
