#include "simulator/server/requests.h"

#include <gtest/gtest.h>

#include "tests/simulator/server/hex.h"

namespace {

using namespace simulator::usbip;

const std::string ListBytes = "01 11 80 05 00 00 00 00";
const std::string ImportBytes = "01 11 80 03 00 00 00 00 31 2D 31 00*29";
const std::string UrbStart = "00 00 00 01 00 00 00 05 00 01 00 02 ";
const std::string WriteBytes =
    UrbStart +
    "00 00 00 00 00 00 00 01 00 00 00 00 00 00 00 02 00 00 00 00 FF FF FF FF 00*12 AA BB";

TEST(Requests, AreTheSameHoweverTheyArrive) {
    for (const std::size_t piece : {1U, 2U, 7U, 48U, 1000U}) {
        RequestReader reader;
        std::vector<RequestReader::Request> requests;
        const Bytes bytes = hex(ImportBytes + " " + WriteBytes + " " + WriteBytes);
        for (std::size_t at = 0; at < bytes.size(); at += piece) {
            reader.feed(std::span(bytes).subspan(at, std::min(piece, bytes.size() - at)));
            while (auto request = reader.next()) {
                requests.push_back(*request);
                reader.expectUrbs(0x00010002);
            }
        }
        ASSERT_EQ(requests.size(), 3U) << piece;
        EXPECT_EQ(requests[0], RequestReader::Request(ImportRequest{"1-1"}));
        EXPECT_EQ(std::get<Submit>(requests[1]).data, Bytes({0xAA, 0xBB}));
        EXPECT_EQ(requests[1], requests[2]);
        EXPECT_FALSE(reader.unfinished());
    }
}

TEST(Requests, OfOldKernelsCountNoPackets) {
    RequestReader reader;
    reader.expectUrbs(0x00010002);
    reader.feed(hex(UrbStart + "00 00 00 01 00 00 00 0F 00 00 00 00 00 00 00 02 00*20"));
    ASSERT_TRUE(reader.next());
}

TEST(Requests, LongestTransferIsTakenAndALongerOneIsNot) {
    RequestReader reader;
    reader.expectUrbs(0x00010002);
    reader.feed(hex(UrbStart + "00 00 00 00 00 00 00 01 00 00 00 00 01 00 00 00 00*20"));
    EXPECT_EQ(reader.next(), std::nullopt);
    EXPECT_EQ(reader.problem(), "");
    reader.feed(Bytes(16U << 20U));
    const auto request = reader.next();
    ASSERT_TRUE(request);
    EXPECT_EQ(std::get<Submit>(*request).data.size(), 16777216U);
}

struct Malformed {
    const char* what;
    bool urbs;
    std::string bytes;
    const char* problem;
};

class MalformedRequest : public testing::TestWithParam<Malformed> {};

TEST_P(MalformedRequest, IsRefusedForGood) {
    RequestReader reader;
    if (GetParam().urbs) {
        reader.expectUrbs(0x00010002);
    }
    reader.feed(hex(GetParam().bytes));
    EXPECT_EQ(reader.next(), std::nullopt);
    EXPECT_EQ(reader.problem(), GetParam().problem);
    reader.feed(hex(GetParam().urbs ? WriteBytes : ListBytes));
    EXPECT_EQ(reader.next(), std::nullopt);
    EXPECT_EQ(reader.problem(), GetParam().problem);
    EXPECT_FALSE(reader.unfinished());
}

INSTANTIATE_TEST_SUITE_P(
    Each, MalformedRequest,
    testing::Values(
        Malformed{"version", false, "01 06 80 05 00 00 00 00", "unknown protocol version 262"},
        Malformed{"operation", false, "01 11 80 04 00 00 00 00", "unknown operation 32772"},
        Malformed{"reply_as_operation", false, "01 11 00 05 00 00 00 00", "unknown operation 5"},
        Malformed{"command", true, "00 00 00 03 00 00 00 05 00 01 00 02 00*36",
                  "unknown command 3"},
        Malformed{"device", true, "00 00 00 01 00 00 00 05 00 01 00 03 00*36",
                  "request for another device, 65539"},
        Malformed{"device_of_unlink", true, "00 00 00 02 00 00 00 05 00 02 00 02 00*36",
                  "request for another device, 131074"},
        Malformed{"direction", true, UrbStart + "00 00 00 02 00*32", "unknown direction 2"},
        Malformed{"endpoint", true, UrbStart + "00 00 00 01 00 00 00 10 00*28",
                  "no such endpoint, 16"},
        Malformed{"packets", true, UrbStart + "00 00 00 01 00 00 00 01 00*12 00 00 00 08 00*12",
                  "isochronous transfer of packets, 8"},
        Malformed{"length_in", true,
                  UrbStart + "00 00 00 01 00 00 00 01 00 00 00 00 01 00 00 01 00*20",
                  "transfer too long, bytes 16777217"},
        Malformed{"length_out", true,
                  UrbStart + "00 00 00 00 00 00 00 01 00 00 00 00 FF FF FF FF 00*20",
                  "transfer too long, bytes 4294967295"}),
    [](const auto& test) { return test.param.what; });

}  // namespace
