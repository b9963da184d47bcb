// What is a recording, and what is not.

#include <gmock/gmock.h>

#include <filesystem>
#include <string>

#include "recording/error.h"
#include "tests/recording/dumps.h"
#include "tests/support/odd_files.h"
#include "tests/support/temporary_folder.h"

namespace {

using dumps::Bytes;
using namespace dumps::joining;
using dumps::Opened;
using recording::Failure;
using recording::Kind;

struct FileCase {
    std::string name;
    Bytes bytes;
};

class Foreign : public testing::TestWithParam<FileCase> {};

TEST_P(Foreign, FileIsNoRecording) {
    const support::TemporaryFolder folder;
    support::writeFile(folder.path() / "file", GetParam().bytes);
    try {
        const recording::Recording dump(folder.path() / "file");
        FAIL() << "taken for a recording";
    } catch (const recording::Error& error) {
        EXPECT_EQ(error.failure(), Failure::NotARecording);
        EXPECT_THAT(error.what(), testing::HasSubstr((folder.path() / "file").string()));
    }
}

Bytes noise(std::size_t size) { return dumps::randomPlanes(size, 3); }

// clang-format off
INSTANTIATE_TEST_SUITE_P(Files, Foreign, testing::Values(
    FileCase{"Prose", dumps::bytesOf("Dear reader,\r\n\r\nthis is a letter.\r\n")},
    FileCase{"Addresses", dumps::bytesOf("addresses:\n0x00001000\n0x00002000\n0x00003000\n")},
    FileCase{"Hexadecimal", dumps::bytesOf(std::string(128, '0') + "\r\n")},
    FileCase{"Noise", noise(200000)},
    FileCase{"ALittleNoise", noise(9)},
    FileCase{"Zeros", Bytes(5000)},
    FileCase{"LineEnds", Bytes(100000, '\n')},
    FileCase{"RawWithoutPlanes", dumps::rawHeader(0) + dumps::plainRaw(1)},
    FileCase{"RawWithTooManyPlanes", dumps::rawHeader(13) + dumps::plainRaw(1, 13)},
    FileCase{"RawOfAnotherSize", Bytes{'R', 'A', 'W', 0, 1, 192, 64, 3}},
    FileCase{"RawOfAnotherVersion", Bytes{'R', 'A', 'W', 0, 2, 128, 32, 3}},
    FileCase{"RawHeaderNotWhole", Bytes{'R', 'A', 'W', 0, 1, 128, 32}},
    FileCase{"TextOfAnotherSize", dumps::bytesOf("0x00000001\r\n" + std::string(160, '0') + "\r\n\r\n")}),
    [](const auto& row) { return row.param.name; });
// clang-format on

struct KindCase {
    std::string name;
    Bytes bytes;
    Kind kind;
    std::uint64_t frames;
};

class Recognised : public testing::TestWithParam<KindCase> {};

TEST_P(Recognised, ByItsContent) {
    const Opened dump(GetParam().bytes);
    EXPECT_EQ(dump->kind(), GetParam().kind);
    EXPECT_EQ(dump->frames(), GetParam().frames);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Files, Recognised, testing::Values(
    KindCase{"ACaptureThatGotNoFrame", {}, Kind::Text, 0},
    KindCase{"ATextDump", dumps::bytesOf(dumps::plainText(1)), Kind::Text, 1},
    KindCase{"TheStartOfAStamp", dumps::bytesOf("0x00"), Kind::Text, 0},
    KindCase{"TheStartOfAFrame", dumps::bytesOf(dumps::plainText(1).substr(0, 300)), Kind::Text, 0},
    KindCase{"ATextDumpBehindLettering", dumps::bytesOf("\xEF\xBB\xBF hello\n" + dumps::plainText(1)),
             Kind::Text, 1},
    KindCase{"ARawDumpWithoutFrames", dumps::rawHeader(12), Kind::Raw, 0},
    KindCase{"ARawDump", dumps::rawHeader(1) + dumps::plainRaw(1, 1), Kind::Raw, 1}),
    [](const auto& row) { return row.param.name; });
// clang-format on

TEST(AnEmptyTextDump, KnowsNoDisplayYet) {
    const Opened dump{Bytes()};
    EXPECT_EQ(dump->display(), std::nullopt);
    EXPECT_EQ(dump->summary().frames, 0U);
    EXPECT_THROW(dump->frame(0), std::out_of_range);
    EXPECT_THROW(dump->elapsedMs(0), std::out_of_range);
}

class Unreadable : public testing::Test {
protected:
    const support::TemporaryFolder folder;

    void expect(const std::filesystem::path& path, const std::string& why) const {
        try {
            const recording::Recording dump(path);
            FAIL() << "could be opened";
        } catch (const recording::Error& error) {
            EXPECT_EQ(error.failure(), Failure::CannotRead);
            EXPECT_EQ(error.what(), path.string() + " cannot be read: " + why);
        }
    }
};

TEST_F(Unreadable, FileThatIsNotThere) {
    expect(folder.path() / "none", "No such file or directory");
}

TEST_F(Unreadable, Folder) { expect(folder.path(), "it is no file"); }

TEST_F(Unreadable, PipeIsNotWaitedFor) {
    const auto pipe = folder.path() / "pipe";
    support::makePipe(pipe);
    expect(pipe, "it is no file");
}

TEST(AFile, ThatGivesAnErrorWhenItIsReadIsReported) {
    // The start of a process's memory cannot be read.
    const std::filesystem::path memory = "/proc/self/mem";
    if (!std::filesystem::exists(memory)) {
        GTEST_SKIP() << "no such file here";
    }
    recording::FileSource source(memory);
    Bytes bytes(8);
    try {
        source.read(0, bytes);
        FAIL() << "could be read";
    } catch (const recording::Error& error) {
        EXPECT_EQ(error.failure(), Failure::CannotRead);
        EXPECT_STREQ(error.what(), "/proc/self/mem cannot be read: Input/output error");
    }
}

TEST(AFileWithAForeignName, IsOpenedAndNamedInMessages) {
    const support::TemporaryFolder folder;
    const auto path = folder.path() / std::filesystem::path(u8"Gr\u00FC\u00DFe \u65E5.raw");
    support::writeFile(path, dumps::rawHeader(4) + dumps::plainRaw(7, 4));
    recording::Recording dump(path);
    EXPECT_TRUE(dump.extend());
    EXPECT_EQ(dump.frame(0).stampMs, 7U);
    try {
        dump.needDigits();
        FAIL() << "knows its mode";
    } catch (const recording::Error& error) {
        EXPECT_THAT(error.what(), testing::HasSubstr("Gr\xC3\xBC\xC3\x9F"
                                                     "e \xE6\x97\xA5.raw"));
    }
}

}  // namespace
