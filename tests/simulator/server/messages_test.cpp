// Every message of the protocol, byte by byte, in the direction in which each side writes or reads
// it.

#include "simulator/server/messages.h"

#include <gmock/gmock.h>

#include "simulator/server/requests.h"
#include "tests/simulator/server/hex.h"

namespace {

using namespace simulator::usbip;
using support::byteText;

const ExportedDevice Device = {.path = "/sys/a",
                               .busId = "3-2",
                               .busNumber = 3,
                               .deviceNumber = 0x0102,
                               .speed = 3,
                               .vendor = 0x0314,
                               .product = 0xE457,
                               .release = 0x0102,
                               .deviceClass = {0xEF, 0x02, 0x01},
                               .configuration = 1,
                               .configurations = 2,
                               .interfaces = 2};

const std::string DeviceBytes =
    "2F 73 79 73 2F 61 00*250 33 2D 32 00*29 00 00 00 03 00 00 01 02 00 00 00 03 03 14 E4 57 "
    "01 02 EF 02 01 01 02 02";

/// One zero after another one is counted together with it.
std::string joined(const std::string& first, const std::string& second) {
    return byteText(hex(first + " " + second));
}

template <std::size_t Size>
std::array<std::uint8_t, Size> fixed(const std::string& text) {
    const Bytes bytes = hex(text);
    EXPECT_EQ(bytes.size(), Size);
    std::array<std::uint8_t, Size> result = {};
    std::copy_n(bytes.begin(), std::min(bytes.size(), Size), result.begin());
    return result;
}

TEST(Message, OperationsOfTheClientAreWritten) {
    EXPECT_EQ(byteText(encode(ListRequest{})), "01 11 80 05 00 00 00 00");
    EXPECT_EQ(byteText(encode(ImportRequest{"1-1"})), "01 11 80 03 00 00 00 00 31 2D 31 00*29");
}

TEST(Message, ListTellsDevicesAndInterfaces) {
    EXPECT_EQ(byteText(encodeList({})), "01 11 00 05 00*8");
    const ListedDevice listed = {Device, {{0xFF, 0x00, 0x00}, {0x03, 0x01, 0x02}}};
    EXPECT_EQ(byteText(encodeList({&listed, 1})), joined("01 11 00 05 00 00 00 00 00 00 00 01",
                                                         DeviceBytes + " FF 00 00 00 03 01 02 00"));
}

TEST(Message, ImportReplyHasTheDeviceOnlyWhenItIsGranted) {
    EXPECT_EQ(byteText(encodeImportReply(Status::Ok, Device)),
              joined("01 11 00 03 00 00 00 00", DeviceBytes));
    EXPECT_EQ(byteText(encodeImportReply(Status::Busy, Device)), "01 11 00 03 00 00 00 02");
    EXPECT_EQ(byteText(encodeImportReply(Status::NoDevice, Device)), "01 11 00 03 00 00 00 04");
}

TEST(Message, NamesAreCutSoThatAZeroEndsThem) {
    const ExportedDevice device = {.path = std::string(300, 'p'), .busId = std::string(40, 'b')};
    const Bytes bytes = encodeImportReply(Status::Ok, device);
    ASSERT_EQ(bytes.size(), 8U + 312U);
    EXPECT_EQ(std::string(bytes.begin() + 8, bytes.begin() + 8 + 256),
              std::string(255, 'p') + '\0');
    EXPECT_EQ(std::string(bytes.begin() + 264, bytes.begin() + 264 + 32),
              std::string(31, 'b') + '\0');
}

TEST(Message, RepliesToOperationsAreRead) {
    const auto status = [](Operation operation, const std::string& text) {
        return decodeStatus(operation, fixed<8>(text));
    };
    EXPECT_EQ(status(Operation::ListReply, "01 11 00 05 00 00 00 00"), 0U);
    EXPECT_EQ(status(Operation::ImportReply, "01 11 00 03 00 00 00 02"), 2U);
    EXPECT_EQ(status(Operation::ImportReply, "01 11 00 03 01 02 03 04"), 0x01020304U);
    EXPECT_EQ(status(Operation::ImportReply, "01 11 00 05 00 00 00 00"), std::nullopt);
    EXPECT_EQ(status(Operation::ListReply, "01 06 00 05 00 00 00 00"), std::nullopt);
    EXPECT_EQ(decodeDevice(fixed<312>(DeviceBytes)), Device);
    EXPECT_EQ(Device.id(), 0x00030102U);
    EXPECT_EQ(decodeNumber(fixed<4>("01 02 03 04")), 0x01020304U);
}

struct UrbCase {
    std::string what;
    RequestReader::Request request;
    std::string bytes;
};

const Submit Read = {.sequence = 0x0D05,
                     .device = 0x0001000F,
                     .direction = Direction::In,
                     .endpoint = 1,
                     .flags = 0x0200,
                     .length = 0x40};
const Submit Write = {.sequence = 0x0D06,
                      .device = 0x0001000F,
                      .endpoint = 1,
                      .length = 3,
                      .data = {0x81, 0xC3, 0xE7}};
const Submit Control = {.sequence = 7,
                        .device = 0x0001000F,
                        .direction = Direction::In,
                        .length = 18,
                        .setup = {0x80, 0x06, 0x00, 0x01, 0x00, 0x00, 0x12, 0x00}};

const UrbCase UrbCases[] = {
    {"read", Read,
     "00 00 00 01 00 00 0D 05 00 01 00 0F 00 00 00 01 00 00 00 01 00 00 02 00 00 00 00 40 "
     "00 00 00 00 FF FF FF FF 00 00 00 00 00 00 00 00 00 00 00 00"},
    {"write", Write,
     "00 00 00 01 00 00 0D 06 00 01 00 0F 00 00 00 00 00 00 00 01 00 00 00 00 00 00 00 03 "
     "00 00 00 00 FF FF FF FF 00 00 00 00 00 00 00 00 00 00 00 00 81 C3 E7"},
    {"control", Control,
     "00 00 00 01 00 00 00 07 00 01 00 0F 00 00 00 01 00 00 00 00 00 00 00 00 00 00 00 12 "
     "00 00 00 00 FF FF FF FF 00 00 00 00 80 06 00 01 00 00 12 00"},
    {"unlink", Unlink{.sequence = 8, .device = 0x0001000F, .target = 7},
     "00 00 00 02 00 00 00 08 00 01 00 0F 00 00 00 00 00 00 00 00 00 00 00 07 00*24"},
};

TEST(Message, RequestsAreWrittenAndRead) {
    for (const UrbCase& each : UrbCases) {
        std::visit(
            [&](const auto& request) { EXPECT_EQ(encode(request), hex(each.bytes)) << each.what; },
            each.request);
        RequestReader reader;
        reader.expectUrbs(0x0001000F);
        reader.feed(hex(each.bytes));
        EXPECT_EQ(reader.next(), each.request) << each.what;
        EXPECT_FALSE(reader.unfinished()) << each.what;
    }
}

struct ReplyCase {
    std::string what;
    Bytes written;
    std::string bytes;
    UrbReply read;
};

const ReplyCase ReplyCases[] = {
    {"read",
     encode(SubmitReply{0x0D05, 0, 3, {0x61, 0x62, 0x63}}),
     "00 00 00 03 00 00 0D 05 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 03 "
     "00 00 00 00 FF FF FF FF 00 00 00 00 00 00 00 00 00 00 00 00 61 62 63",
     {false, 0x0D05, 0, 3}},
    {"written",
     encode(SubmitReply{0x0D06, 0, 2052, {}}),
     "00 00 00 03 00 00 0D 06 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 08 04 "
     "00 00 00 00 FF FF FF FF 00 00 00 00 00 00 00 00 00 00 00 00",
     {false, 0x0D06, 0, 2052}},
    {"stall",
     encode(SubmitReply{1, -32, 0, {}}),
     "00 00 00 03 00 00 00 01 00 00 00 00 00 00 00 00 00 00 00 00 FF FF FF E0 00 00 00 00 "
     "00 00 00 00 FF FF FF FF 00 00 00 00 00 00 00 00 00 00 00 00",
     {false, 1, -32, 0}},
    {"unlinked",
     encode(UnlinkReply{9, -104}),
     "00 00 00 04 00 00 00 09 00 00 00 00 00 00 00 00 00 00 00 00 FF FF FF 98 00*24",
     {true, 9, -104, 0}},
    {"too late to unlink",
     encode(UnlinkReply{9, 0}),
     "00 00 00 04 00 00 00 09 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00*24",
     {true, 9, 0, 0}},
};

TEST(Message, RepliesAreWrittenAndRead) {
    for (const ReplyCase& each : ReplyCases) {
        EXPECT_EQ(each.written, hex(each.bytes)) << each.what;
        Bytes header = hex(each.bytes);
        header.resize(48);
        const auto read = decodeUrbReply(fixed<48>(byteText(header)));
        ASSERT_TRUE(read) << each.what;
        EXPECT_EQ(read->isUnlink, each.read.isUnlink) << each.what;
        EXPECT_EQ(read->sequence, each.read.sequence) << each.what;
        EXPECT_EQ(read->status, each.read.status) << each.what;
        EXPECT_EQ(read->length, each.read.length) << each.what;
    }
    EXPECT_EQ(decodeUrbReply(fixed<48>("00 00 00 01 00*44")), std::nullopt);
}

}  // namespace
