#include "simulator/server/messages.h"

#include "simulator/server/fields.h"

namespace simulator::usbip {

namespace {

void putOperation(Writer& writer, Operation operation, Status status = Status::Ok) {
    writer.half(Version)
        .half(static_cast<std::uint16_t>(operation))
        .word(static_cast<std::uint32_t>(status));
}

void putDevice(Writer& writer, const ExportedDevice& device) {
    writer.text(device.path, PathSize)
        .text(device.busId, BusIdSize)
        .word(device.busNumber)
        .word(device.deviceNumber)
        .word(device.speed)
        .half(device.vendor)
        .half(device.product)
        .half(device.release)
        .bytes(device.deviceClass)
        .byte(device.configuration)
        .byte(device.configurations)
        .byte(device.interfaces);
}

/// The start of each message of the URB phase. The last three fields are the client's only.
void putUrbStart(Writer& writer, UrbCode code, std::uint32_t sequence, std::uint32_t device = 0,
                 Direction direction = Direction::Out, std::uint32_t endpoint = 0) {
    writer.word(static_cast<std::uint32_t>(code))
        .word(sequence)
        .word(device)
        .word(static_cast<std::uint32_t>(direction))
        .word(endpoint);
}

}  // namespace

Bytes encode(const ListRequest&) {
    Writer writer(OperationSize);
    putOperation(writer, Operation::ListRequest);
    return writer.take();
}

Bytes encode(const ImportRequest& request) {
    Writer writer(OperationSize + BusIdSize);
    putOperation(writer, Operation::ImportRequest);
    return writer.text(request.busId, BusIdSize).take();
}

Bytes encode(const Submit& request) {
    Writer writer(UrbHeaderSize + request.data.size());
    putUrbStart(writer, UrbCode::Submit, request.sequence, request.device, request.direction,
                request.endpoint);
    writer.word(request.flags).word(request.length);
    writer.word(0).word(NoPackets).word(0);  // Start frame, packets, interval.
    return writer.bytes(request.setup).bytes(request.data).take();
}

Bytes encode(const Unlink& request) {
    Writer writer(UrbHeaderSize);
    putUrbStart(writer, UrbCode::Unlink, request.sequence, request.device);
    return writer.word(request.target).zeros(24).take();
}

Bytes encodeList(std::span<const ListedDevice> devices) {
    Writer writer(OperationSize + 4 + devices.size() * (DeviceSize + 4));
    putOperation(writer, Operation::ListReply);
    writer.word(static_cast<std::uint32_t>(devices.size()));
    for (const ListedDevice& listed : devices) {
        putDevice(writer, listed.device);
        for (const InterfaceClass& interface : listed.interfaces) {
            writer.bytes(interface).byte(0);
        }
    }
    return writer.take();
}

Bytes encodeImportReply(Status status, const ExportedDevice& device) {
    Writer writer(OperationSize + DeviceSize);
    putOperation(writer, Operation::ImportReply, status);
    if (status == Status::Ok) {
        putDevice(writer, device);
    }
    return writer.take();
}

Bytes encode(const SubmitReply& reply) {
    Writer writer(UrbHeaderSize + reply.data.size());
    putUrbStart(writer, UrbCode::SubmitReply, reply.sequence);
    writer.word(static_cast<std::uint32_t>(reply.status)).word(reply.length);
    writer.word(0).word(NoPackets).word(0);  // Start frame, packets, errors.
    return writer.zeros(SetupSize).bytes(reply.data).take();
}

Bytes encode(const UnlinkReply& reply) {
    Writer writer(UrbHeaderSize);
    putUrbStart(writer, UrbCode::UnlinkReply, reply.sequence);
    return writer.word(static_cast<std::uint32_t>(reply.status)).zeros(24).take();
}

std::optional<std::uint32_t> decodeStatus(Operation operation,
                                          std::span<const std::uint8_t, OperationSize> bytes) {
    Reader reader(bytes);
    const bool isReply =
        reader.half() == Version && reader.half() == static_cast<std::uint16_t>(operation);
    return isReply ? std::optional(reader.word()) : std::nullopt;
}

ExportedDevice decodeDevice(std::span<const std::uint8_t, DeviceSize> bytes) {
    Reader reader(bytes);
    ExportedDevice device;
    device.path = reader.text(PathSize);
    device.busId = reader.text(BusIdSize);
    device.busNumber = reader.word();
    device.deviceNumber = reader.word();
    device.speed = reader.word();
    device.vendor = reader.half();
    device.product = reader.half();
    device.release = reader.half();
    for (std::uint8_t& part : device.deviceClass) {
        part = reader.byte();
    }
    device.configuration = reader.byte();
    device.configurations = reader.byte();
    device.interfaces = reader.byte();
    return device;
}

std::optional<UrbReply> decodeUrbReply(std::span<const std::uint8_t, UrbHeaderSize> bytes) {
    Reader reader(bytes);
    const auto code = static_cast<UrbCode>(reader.word());
    if (code != UrbCode::SubmitReply && code != UrbCode::UnlinkReply) {
        return std::nullopt;
    }
    UrbReply reply;
    reply.isUnlink = code == UrbCode::UnlinkReply;
    reply.sequence = reader.word();
    reader.skip(12);
    reply.status = static_cast<std::int32_t>(reader.word());
    reply.length = reply.isUnlink ? 0 : reader.word();
    return reply;
}

std::uint32_t decodeNumber(std::span<const std::uint8_t, 4> bytes) { return Reader(bytes).word(); }

}  // namespace simulator::usbip
