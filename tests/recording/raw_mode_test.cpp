// In which input mode a raw dump was recorded, as far as its planes tell, and what one of the XL
// board is missing.

#include <gmock/gmock.h>

#include <optional>
#include <string>
#include <vector>

#include "recording/error.h"
#include "recording/raw_modes.h"
#include "tests/recording/dumps.h"
#include "tests/support/temporary_folder.h"

namespace {

using dumps::Bytes;
using namespace dumps::joining;
using dumps::Opened;
using recording::Failure;
using testing::HasSubstr;

/// What it throws, or nothing.
template <class Call>
std::optional<recording::Error> failureOf(Call call) {
    try {
        call();
    } catch (const recording::Error& error) {
        return error;
    }
    return std::nullopt;
}

std::vector<int> numbersOf(const std::vector<const InputModeInfo*>& modes) {
    std::vector<int> numbers;
    for (const auto* mode : modes) {
        numbers.push_back(mode->number);
    }
    return numbers;
}

struct PlanesCase {
    std::uint8_t planes;
    std::vector<int> modes;  ///< that fit
    bool told;               ///< they read the planes in one way
};

class Planes : public testing::TestWithParam<PlanesCase> {
protected:
    const Opened dump{dumps::rawHeader(GetParam().planes) +
                      dumps::plainRaw(1, GetParam().planes, 0x01)};
};

TEST_P(Planes, TellTheModesThatFit) {
    EXPECT_EQ(numbersOf(recording::modesOfPlanes(GetParam().planes)), GetParam().modes);
    EXPECT_EQ(dump->rule() != nullptr, GetParam().told);
    EXPECT_EQ(dump->frame(0).digits.empty(), !GetParam().told);
}

TEST_P(Planes, OrAskForTheMode) {
    const auto needed = failureOf([&] { dump->needDigits(); });
    recording::Frame frame;
    const auto read = failureOf([&] { dump->readDigits(0, frame); });
    ASSERT_EQ(needed.has_value(), !GetParam().told);
    ASSERT_EQ(read.has_value(), !GetParam().told);
    if (needed) {
        EXPECT_EQ(needed->failure(), Failure::ModeNeeded);
        EXPECT_STREQ(needed->what(), read->what());
        for (const int mode : GetParam().modes) {
            EXPECT_THAT(needed->what(), HasSubstr(" " + std::to_string(mode) + " ("));
        }
    }
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Of, Planes, testing::Values(
    PlanesCase{1,  {},      false},
    PlanesCase{2,  {},      false},
    PlanesCase{3,  {1, 13}, true},
    PlanesCase{4,  {9, 10}, false},
    PlanesCase{5,  {},      false},
    PlanesCase{6,  {7},     true},
    PlanesCase{8,  {8},     true},
    PlanesCase{12, {6},     true}),
    [](const auto& row) { return std::to_string(row.param.planes); });
// clang-format on

/// Four planes; the top left dot is set in all of them.
class FourPlanes : public testing::Test {
protected:
    FourPlanes() {
        for (std::size_t plane = 0; plane < 4; ++plane) {
            bytes[8 + 4 + 512 * plane] = 0x01;
        }
    }
    int topLeft(std::optional<std::uint8_t> mode) const {
        const Opened dump(bytes);
        dump->setMode(mode);
        return dump->frame(0).digits.at(0);
    }
    Bytes bytes = dumps::rawHeader(4) + dumps::plainRaw(1, 4);
};

TEST_F(FourPlanes, AreReadAsTheModeSays) {
    EXPECT_EQ(topLeft(9), 3);   // Capcom: 0 1 2 3 3
    EXPECT_EQ(topLeft(10), 4);  // AlvinG: as many as are set
    EXPECT_EQ(topLeft(2), 15);  // Stern, should somebody have made such a file
}

TEST_F(FourPlanes, CanBeReadAnewInAnotherMode) {
    const Opened dump(bytes);
    dump->setMode(9);
    EXPECT_EQ(dump->frame(0).digits.at(0), 3);
    dump->setMode(10);
    EXPECT_EQ(dump->frame(0).digits.at(0), 4);
    dump->setMode(std::nullopt);
    EXPECT_TRUE(dump->frame(0).digits.empty());
}

TEST_F(FourPlanes, FitNoModeOfOtherPlanes) {
    const Opened dump(bytes);
    for (const std::uint8_t mode : Bytes{0, 1, 6, 77, 239}) {
        const auto error = failureOf([&] { dump->setMode(mode); });
        ASSERT_TRUE(error) << int{mode};
        EXPECT_EQ(error->failure(), Failure::ModeUnfit);
        EXPECT_THAT(error->what(), HasSubstr("9 ("));
        EXPECT_THAT(error->what(), HasSubstr("10 ("));
    }
}

TEST(ATextDump, HasItsDigitsInTheFileWhateverTheMode) {
    const Opened dump(dumps::bytesOf(dumps::plainText(1, 'e')));
    dump->setMode(1);
    EXPECT_EQ(dump->frame(0).digits.at(0), 14);
    EXPECT_EQ(dump->rule(), nullptr);
}

TEST(ASecondCaptureInAnotherMode, IsReadByItsOwnPlanes) {
    Bytes bytes = dumps::rawHeader(4) + dumps::plainRaw(1, 4, 0xFF) + dumps::rawHeader(3) +
                  dumps::plainRaw(2, 3, 0xFF);
    const Opened dump(bytes);
    dump->setMode(10);
    EXPECT_EQ(dump->frame(0).digits.at(0), 4);
    EXPECT_EQ(dump->frame(1).digits.at(0), 3);
}

/// A raw dump and a text dump of the same name.
class XlRaw : public testing::Test {
protected:
    static constexpr std::size_t PlaneBytes = 1536;

    const support::TemporaryFolder folder;
    const std::filesystem::path raw = folder.path() / "050324_140709_lumadot_dump.raw";
    const std::filesystem::path text = folder.path() / "050324_140709_lumadot_dump.txt";
    const Bytes sent = dumps::randomPlanes(2 * PlaneBytes, 5);

    void write(int mode, const std::string& twin) const {
        support::writeFile(raw, naive::rawHeader(mode) + naive::raw(mode, 16, sent));
        support::writeFile(text, dumps::bytesOf(twin));
    }

    /// What the second decoder makes of the bytes that the file holds.
    std::string wantedDigits(std::size_t held) const {
        Bytes planes(sent.begin(), sent.begin() + static_cast<std::ptrdiff_t>(held));
        std::string digits = naive::text(1, true, 0, planes).substr(12);
        std::erase_if(digits, [](char each) { return each == '\r' || each == '\n'; });
        return digits;
    }
};

struct XlCase {
    int mode;
    std::size_t held;     ///< bytes of the planes
    std::string missing;  ///< of the message
};

class XlRawOf : public XlRaw, public testing::WithParamInterface<XlCase> {};

TEST_P(XlRawOf, IsReadAsFarAsItGoesAndSaysWhatIsMissing) {
    write(GetParam().mode, naive::text(GetParam().mode, true, 16, sent));
    recording::Recording dump(raw);
    dump.extend();
    EXPECT_EQ(dump.xlTwin(), text);
    EXPECT_EQ(dump.display()->rows, 64U);
    EXPECT_EQ(dumps::digitsOf(dump.frame(0)), wantedDigits(GetParam().held));
    if (GetParam().missing.empty()) {
        EXPECT_EQ(dump.missing(), "");
    } else {
        EXPECT_EQ(dump.missing(),
                  "050324_140709_lumadot_dump.txt beside it shows that it was recorded on the XL "
                  "board, with two planes of 192 x 64 dots; of these it is missing " +
                      GetParam().missing + ", and shows too low shades there");
    }
}

INSTANTIATE_TEST_SUITE_P(Modes, XlRawOf,
                         testing::Values(XlCase{1, 1536, "the second"}, XlCase{6, 3072, ""},
                                         XlCase{7, 3072, ""}, XlCase{8, 3072, ""},
                                         XlCase{9, 2048, "the second from row 21 on"},
                                         XlCase{10, 2048, "the second from row 21 on"},
                                         XlCase{13, 1536, "the second"}),
                         [](const auto& row) { return std::to_string(row.param.mode); });

TEST_F(XlRaw, TakesAnyModeForItMakesNoDifference) {
    write(9, naive::text(9, true, 16, sent));
    recording::Recording dump(raw);
    dump.extend();
    EXPECT_NO_THROW(dump.needDigits());
    dump.setMode(1);
    EXPECT_EQ(dumps::digitsOf(dump.frame(0)), wantedDigits(2048));
}

TEST_F(XlRaw, IsFoundBesideATwinThatIsDamaged) {
    write(1, naive::text(1, true, 16, sent).erase(300, 5) + naive::text(1, true, 32, sent));
    EXPECT_EQ(recording::Recording(raw).xlTwin(), text);
}

TEST_F(XlRaw, IsNoneBesideOtherFiles) {
    for (const std::string& twin : {std::string(), dumps::plainText(1), std::string("a letter"),
                                    dumps::plainText(1, '0', true).substr(0, 9000)}) {
        write(1, twin);
        recording::Recording dump(raw);
        EXPECT_TRUE(dump.xlTwin().empty()) << twin.substr(0, 20);
        EXPECT_EQ(dump.display()->rows, 32U);
        EXPECT_EQ(dump.missing(), "");
    }
    std::filesystem::remove(text);
    std::filesystem::create_directory(text);
    EXPECT_TRUE(recording::Recording(raw).xlTwin().empty());
    std::filesystem::remove(text);
    EXPECT_TRUE(recording::Recording(raw).xlTwin().empty());
}

}  // namespace
