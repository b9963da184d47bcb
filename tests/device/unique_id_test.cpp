// Reading the controller's unique id; what comes of failing calls stands in the tables of faults/.

#include <string>
#include <string_view>
#include <vector>

#include "tests/support/device_link.h"

namespace {

using namespace std::string_literals;

constexpr std::string_view Longest =
    "abcdefghijklmnopqrstuvwxyz0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ!";
static_assert(Longest.size() == 63);

/// A read into 64 bytes that are full of '#', with guards behind them.
class GetUniqueId : public support::DeviceLink {
protected:
    GetUniqueId() { buffer.fill('#'); }

    /// What the 64 bytes hold after a read that brings `reply`.
    std::string read(std::string_view reply) {
        answer({reply.begin(), reply.end()});
        return read();
    }
    std::string read() {
        usb.getUniqueId(buffer.data());
        EXPECT_EQ(std::string(buffer.begin() + 64, buffer.end()), "########");
        return {buffer.begin(), buffer.begin() + 64};
    }
    /// The text and zeros, 64 characters in all.
    static std::string padded(std::string text) {
        text.resize(64, '\0');
        return text;
    }

    std::shared_ptr<simulator::Controller> controller = bus.plugController();
    std::array<char, 72> buffer{};
};

struct ReplyCase {
    std::string name;
    std::string reply;
    std::string text;
};

class UniqueIdReply : public GetUniqueId, public testing::WithParamInterface<ReplyCase> {};

TEST_P(UniqueIdReply, IsTextUpToTheFirstZeroOrTheLastByte) {
    EXPECT_EQ(read(GetParam().reply), padded(GetParam().text));
    expectReleased();
}

INSTANTIATE_TEST_SUITE_P(
    Of, UniqueIdReply,
    testing::Values(
        ReplyCase{"TextAndAZero", "0123ABCD\0"s, "0123ABCD"},
        ReplyCase{"TextWithoutZero", "0123ABCD", "0123ABCD"},
        ReplyCase{"TextAndBytesBehindItsZero", "0123\0rest"s, "0123"},
        ReplyCase{"NothingAtAll", "", ""}, ReplyCase{"AZeroFirst", "\0hidden"s, ""},
        ReplyCase{"OneCharacter", "X", "X"},
        ReplyCase{"BytesAbove127", "\x81\xFF\xC3", "\x81\xFF\xC3"},
        ReplyCase{"SixtyTwoCharacters", std::string(Longest.substr(0, 62)),
                  std::string(Longest.substr(0, 62))},
        ReplyCase{"SixtyThreeBytesWithoutZero", std::string(Longest), std::string(Longest)},
        ReplyCase{"MoreThanAskedFor", std::string(Longest) + "more", std::string(Longest)}),
    [](const auto& test) { return test.param.name; });

struct CountCase {
    std::string name;
    int claimed;
    std::string reply;
    std::string text;
};

class UniqueIdCount : public GetUniqueId, public testing::WithParamInterface<CountCase> {};

TEST_P(UniqueIdCount, LimitsWhatCounts) {
    bus.inject(
        {.function = "libusb_bulk_transfer", .transferred = GetParam().claimed, .endpoint = 0x81});
    EXPECT_EQ(read(GetParam().reply), padded(GetParam().text));
}

INSTANTIATE_TEST_SUITE_P(Claimed, UniqueIdCount,
                         testing::Values(CountCase{"FourOfEight", 4, "0123ABCD", "0123"},
                                         CountCase{"NoneOfEight", 0, "0123ABCD", ""},
                                         CountCase{"BeyondTheBytes", 20, "0123ABCD", "0123ABCD"},
                                         CountCase{"BeyondTheBuffer", 64, std::string(Longest),
                                                   std::string(Longest)},
                                         CountCase{"FarBeyondTheBuffer", 100000,
                                                   std::string(Longest), std::string(Longest)},
                                         CountCase{"Negative", -1, "0123ABCD", ""},
                                         CountCase{"VeryNegative", -100000, "0123ABCD", ""}),
                         [](const auto& test) { return test.param.name; });

TEST_F(GetUniqueId, IgnoresTheResultOfTheRequest) {
    failTransfer(0x01, LIBUSB_ERROR_TIMEOUT);
    EXPECT_EQ(read("0123ABCD"), padded("0123ABCD"));
}

TEST_F(GetUniqueId, WritesWhereItIsToldOnly) {
    read();
    EXPECT_THAT(UIDString, testing::Each('\0'));
}

}  // namespace
