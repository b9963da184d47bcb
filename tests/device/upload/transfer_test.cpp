// What an upload sends, and what arrives.

#include "tests/device/upload/upload_fixture.h"

namespace {

using support::callLines;
using support::pattern;
using support::sentFrames;
using testing::ElementsAre;
using testing::Pair;

constexpr const char* Success = "File Upload Successful !";

/// A data frame: its bytes 6 and 7, and the part of the file that it carries.
struct Block {
    std::uint8_t high, low;
    std::size_t offset, length;
};

struct Size {
    std::size_t size;
    std::vector<Block> blocks;
};

void PrintTo(const Size& each, std::ostream* out) { *out << each.size << " bytes"; }

class UploadOfSize : public Upload, public testing::WithParamInterface<Size> {
protected:
    UploadOfSize() { plug(); }
    Bytes content = pattern(GetParam().size);
};

TEST_P(UploadOfSize, MakesExactlyTheseCallsAndArrivesByteForByte) {
    std::vector<Bytes> frames = {openFrame("a.bin")};
    for (const Block& block : GetParam().blocks) {
        const auto begin = content.begin() + static_cast<std::ptrdiff_t>(block.offset);
        const Bytes part(begin, begin + static_cast<std::ptrdiff_t>(block.length));
        frames.push_back(dataFrame(block.high, block.low, part));
    }
    frames.push_back(closeFrame());
    expectOutcome(Success);
    upload(content, "a.bin");
    EXPECT_EQ(callLines(), uploadLines(frames));
    EXPECT_THAT(controller->files(), ElementsAre(Pair("a.bin", content)));
    EXPECT_EQ(support::timesOpen(folder.path() / "local.bin"), 0);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Sample, UploadOfSize, testing::Values(
    //   size   byte 6, byte 7, offset, length of each data frame
    Size{   0, {{0x00, 0x00, 0, 0}}},
    Size{   1, {{0x00, 0x01, 0, 1}}},
    Size{ 255, {{0x00, 0xFF, 0, 255}}},
    Size{ 256, {{0x01, 0x00, 0, 256}}},
    Size{ 511, {{0x01, 0xFF, 0, 511}}},
    Size{ 512, {{0x02, 0x00, 0, 512}, {0x00, 0x00, 512, 0}}},
    Size{ 513, {{0x02, 0x00, 0, 512}, {0x00, 0x01, 512, 1}}},
    Size{1000, {{0x02, 0x00, 0, 512}, {0x01, 0xE8, 512, 488}}},
    Size{1024, {{0x02, 0x00, 0, 512}, {0x02, 0x00, 512, 512}, {0x00, 0x00, 1024, 0}}}),
    [](const auto& test) { return "Of" + std::to_string(test.param.size) + "Bytes"; });
// clang-format on

class UploadTo : public Upload {
protected:
    UploadTo() { plug(); }
};

TEST_F(UploadTo, AControllerCarriesEightMebibytes) {
    bus.setLogging(false);
    const Bytes content = pattern(std::size_t{8} << 20);
    expectOutcome(Success);
    upload(content, "big.bin");
    ASSERT_EQ(controller->files().size(), 1U);
    EXPECT_TRUE(controller->files().at("big.bin") == content);
    expectReleased();
}

TEST_F(UploadTo, AControllerCarriesZerosAndEveryOtherByte) {
    Bytes content;
    for (int byte = 0; byte < 256; ++byte) {
        content.insert(content.end(), {0x00, static_cast<std::uint8_t>(byte), 0x00});
    }
    expectOutcome(Success);
    upload(content, "all");
    EXPECT_EQ(controller->files().at("all"), content);
}

TEST_F(UploadTo, AnXlControllerMakesTheSameCalls) {
    bus.reset();
    bus.plugController({.board = simulator::Board::Xl}, "LUMADOT XL");
    expectOutcome(Success);
    upload({0x07}, "a");
    EXPECT_EQ(callLines(),
              uploadLines({openFrame("a"), dataFrame(0x00, 0x01, {0x07}), closeFrame()}));
}

TEST_F(UploadTo, AControllerReplacesAnEarlierFileOfTheName) {
    for (const Bytes& content : {Bytes{1, 2, 3}, Bytes{4}}) {
        expectOutcome(Success);
        upload(content, "a");
    }
    EXPECT_THAT(controller->files(), ElementsAre(Pair("a", Bytes{4})));
}

TEST_F(UploadTo, AControllerIgnoresTheResultOfEverySend) {
    bus.inject({.function = "libusb_bulk_transfer", .nth = 0, .result = -7, .endpoint = 0x01});
    bus.inject({.function = "libusb_bulk_transfer", .nth = 0, .reply = Bytes{0}, .endpoint = 0x81});
    expectOutcome(Success);
    upload({0x07}, "a");
    expectReleased();
}

struct Name {
    std::string what;
    std::string name;
    std::string arrives;
    std::string openFrame;
};

void PrintTo(const Name& each, std::ostream* out) { *out << each.what; }

std::string repeated(int count, const std::string& text) {
    std::string all;
    for (int i = 0; i < count; ++i) {
        all += text;
    }
    return all;
}

class UploadUnderName : public UploadTo, public testing::WithParamInterface<Name> {};

TEST_P(UploadUnderName, PutsItIntoTheOpenFrameAndNowhereElse) {
    expectOutcome(Success);
    upload(Bytes{0x48, 0x69, 0x21}, GetParam().name);
    EXPECT_THAT(sentFrames(),
                ElementsAre(GetParam().openFrame, "81 C3 E7 FF 0A 01 00 03 48 69 21 00*2041",
                            "81 C3 E7 FF 0A FF 00*2046"));
    EXPECT_THAT(controller->files(),
                ElementsAre(Pair(GetParam().arrives, Bytes{0x48, 0x69, 0x21})));
}

INSTANTIATE_TEST_SUITE_P(
    Sample, UploadUnderName,
    testing::Values(Name{"Empty", "", "", "81 C3 E7 FF 0A 00*2047"},
                    Name{"OneLetter", "a", "a", "81 C3 E7 FF 0A 00 61 00*2045"},
                    Name{"BlanksAround", " a ", " a ", "81 C3 E7 FF 0A 00 20 61 20 00*2043"},
                    Name{"WithFolders", "../x/y", "../x/y",
                         "81 C3 E7 FF 0A 00 2E 2E 2F 78 2F 79 00*2040"},
                    Name{"NotAscii", "\xC3\xBC\xFF\x80", "\xC3\xBC\xFF\x80",
                         "81 C3 E7 FF 0A 00 C3 BC FF 80 00*2042"},
                    Name{"OneShortOfTheFrame", std::string(2045, 'n'), std::string(2045, 'n'),
                         "81 C3 E7 FF 0A 00" + repeated(2045, " 6E") + " 00"},
                    Name{"FillingTheFrame", std::string(2046, 'n'), std::string(2046, 'n'),
                         "81 C3 E7 FF 0A 00" + repeated(2046, " 6E")},
                    Name{"LongerThanTheFrame", std::string(5000, 'n'), std::string(2046, 'n'),
                         "81 C3 E7 FF 0A 00" + repeated(2046, " 6E")}),
    [](const auto& test) { return test.param.what; });

}  // namespace
