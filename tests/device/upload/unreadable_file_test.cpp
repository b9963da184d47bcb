// Uploads of what cannot be read, and of files that are not what their length says.

#include <libusb.h>

#include <chrono>

#include "tests/device/upload/upload_fixture.h"

namespace {

using std::filesystem::path;
using support::callLines;
using support::joined;
using support::setupLines;

class UploadOf : public Upload {
protected:
    UploadOf() { plug(); }

    /// "File Error" with the controller left open and claimed, which is meant.
    void expectNotOpened(const path& file) {
        expectOutcome("File Error", 1);
        send(file);
        EXPECT_EQ(callLines(), setupLines());
        EXPECT_EQ(bus.openHandles(), 1);
        EXPECT_EQ(bus.claimedInterfaces(), 1);
        EXPECT_NE(MyLibusbDeviceHandle, nullptr);
    }

    /// "File Error", nothing was sent, and the controller is given back.
    void expectRefused(const path& file) {
        expectOutcome("File Error", 0);
        send(file);
        EXPECT_EQ(callLines(), joined({setupLines(), support::releaseLines()}));
        EXPECT_EQ(support::timesOpen(file), 0);
        expectReleased();
    }
};

TEST_F(UploadOf, AMissingFileLeavesTheControllerOpenAndClaimed) {
    expectNotOpened(folder.path() / "missing");
}

TEST_F(UploadOf, AFileInAMissingFolderLeavesTheControllerOpenAndClaimed) {
    expectNotOpened(folder.path() / "missing" / "a.bin");
}

TEST_F(UploadOf, AnEmptyPathLeavesTheControllerOpenAndClaimed) { expectNotOpened(""); }

TEST_F(UploadOf, AFileWithoutReadPermissionLeavesTheControllerOpenAndClaimed) {
    const path file = makeFile({1, 2, 3});
    std::filesystem::permissions(file, std::filesystem::perms::none);
    support::closeFolder(folder.path());
    const support::WithoutPrivileges user;
    expectNotOpened(file);
}

TEST_F(UploadOf, APipeThatNobodyWritesIntoDoesNotWait) {
    support::makePipe(folder.path() / "pipe");
    expectRefused(folder.path() / "pipe");
}

TEST_F(UploadOf, ALinkToAPipeDoesNotWait) {
    support::makePipe(folder.path() / "pipe");
    std::filesystem::create_symlink(folder.path() / "pipe", folder.path() / "link");
    expectRefused(folder.path() / "link");
}

TEST_F(UploadOf, ACharacterDeviceIsRefused) { expectRefused("/dev/zero"); }

TEST_F(UploadOf, AFolderIsRefused) { expectRefused(folder.path()); }

TEST_F(UploadOf, AFolderInMemoryIsRefused) {
    const support::TemporaryFolder memory(support::InMemory);
    expectRefused(memory.path());
}

TEST_F(UploadOf, AFolderOfTheKernelIsRefused) {
    expectRefused("/proc");
    bus.clearCalls();
    expectRefused("/sys");
}

class UploadOfLength : public UploadOf, public testing::WithParamInterface<std::uintmax_t> {};

TEST_P(UploadOfLength, IsRefusedAtOnceAndTheControllerReleased) {
    const path file = folder.path() / "huge";
    support::makeSparseFile(file, GetParam());
    // One that is not refused shall end soon.
    bus.inject({.function = "libusb_bulk_transfer", .nth = 0, .result = LIBUSB_ERROR_IO});
    const auto start = std::chrono::steady_clock::now();
    expectRefused(file);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(30));
    EXPECT_EQ(std::filesystem::file_size(file), GetParam());
}

INSTANTIATE_TEST_SUITE_P(From2GibUp, UploadOfLength,
                         testing::Values(0x80000000, 0xFFFFFFFF, 0x100000000, 0x100000200,
                                         0x10000000000));

TEST_F(UploadOf, AFileThatIsShorterThanItsLengthEndsInZeros) {
    // The kernel's files of settings claim a page and hold a line.
    const path file = "/sys/devices/system/cpu/online";
    std::error_code error;
    if (std::filesystem::file_size(file, error) != 4096 || error) {
        GTEST_SKIP() << file << " does not claim a page here";
    }
    Bytes expected = support::readFile(file);
    ASSERT_GT(expected.size(), 0U);
    ASSERT_LT(expected.size(), 4096U);
    expected.resize(4096);
    expectOutcome("File Upload Successful !");
    send(file);
    EXPECT_EQ(controller->files().at("a.bin"), expected);
    expectReleased();
}

TEST_F(UploadOf, AFileThatIsLongerThanItsLengthIsCut) {
    // The kernel's files about processes claim to be empty.
    ASSERT_GT(support::readFile("/proc/self/status").size(), 0U);
    expectOutcome("File Upload Successful !");
    send("/proc/self/status");
    EXPECT_EQ(controller->files().at("a.bin"), Bytes());
    expectReleased();
}

TEST_F(UploadOf, AFileWithANonAsciiPathArrives) {
    const path file = folder.path() / u8"\u00FC \u20AC.bin";
    support::writeFile(file, Bytes{1, 2, 3});
    expectOutcome("File Upload Successful !");
    send(file);
    EXPECT_EQ(controller->files().at("a.bin"), (Bytes{1, 2, 3}));
}

}  // namespace
