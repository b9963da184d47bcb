// Files that are there whole or not at all.

#include "recording/output_file.h"

#include <gmock/gmock.h>
#ifndef _WIN32
#include <unistd.h>
#endif

#include <filesystem>
#include <string>

#include "recording/error.h"
#include "tests/device/faults/disk.h"
#include "tests/support/temporary_folder.h"

namespace {

using Bytes = std::vector<std::uint8_t>;
using recording::OutputFile;

const Bytes Before = {'b', 'e', 'f', 'o', 'r', 'e'};
const Bytes After = {'a', 'f', 't', 'e', 'r'};

class Output : public testing::Test {
protected:
    const support::TemporaryFolder folder;
    const std::filesystem::path path = folder.path() / "file";

    std::size_t files() const {
        return static_cast<std::size_t>(
            std::distance(std::filesystem::directory_iterator(folder.path()), {}));
    }

    template <class Call>
    static std::string failureOf(Call call) {
        try {
            call();
            return "";
        } catch (const recording::Error& error) {
            EXPECT_EQ(error.failure(), recording::Failure::CannotWrite);
            return error.what();
        }
    }
};

TEST_F(Output, IsThereOnlyWhenItIsFinished) {
    {
        OutputFile file(path);
        file.write(After);
        EXPECT_FALSE(std::filesystem::exists(path));
        file.finish();
    }
    EXPECT_EQ(support::readFile(path), After);
    EXPECT_EQ(files(), 1U);
}

TEST_F(Output, LeavesTheOldFileUntilThen) {
    support::writeFile(path, Before);
    {
        OutputFile file(path);
        file.write(After);
        file.complete();
        EXPECT_EQ(support::readFile(path), Before);
    }
    EXPECT_EQ(support::readFile(path), Before);
    EXPECT_EQ(files(), 1U);
}

TEST_F(Output, KeepsTheRightsOfTheOldFile) {
    support::writeFile(path, Before);
    std::filesystem::permissions(path, std::filesystem::perms(0640));
    OutputFile file(path);
    file.write(After);
    file.finish();
    EXPECT_EQ(support::readFile(path), After);
    EXPECT_EQ(std::filesystem::status(path).permissions(), std::filesystem::perms(0640));
}

TEST_F(Output, ReplacesTheFileBehindALink) {
    support::writeFile(path, Before);
    const auto link = folder.path() / "link";
    std::filesystem::create_symlink("file", link);
    OutputFile file(link);
    file.write(After);
    file.finish();
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    EXPECT_EQ(support::readFile(path), After);
}

TEST_F(Output, CanHaveTheLongestName) {
    const auto longest = folder.path() / std::string(255, 'x');
    OutputFile file(longest);
    file.write(After);
    file.finish();
    EXPECT_EQ(support::readFile(longest), After);
}

TEST_F(Output, TakesNoFoldersPlace) {
    EXPECT_EQ(failureOf([&] { OutputFile file(folder.path()); }),
              folder.path().string() + " cannot be written: there is something else of that name");
    EXPECT_EQ(failureOf([&] { OutputFile file("/dev/null"); }),
              "/dev/null cannot be written: there is something else of that name");
}

TEST_F(Output, SaysThatItsFolderIsNotThere) {
    const auto nowhere = folder.path() / "none" / "file";
    EXPECT_EQ(failureOf([&] { OutputFile file(nowhere); }),
              nowhere.string() + " cannot be written: No such file or directory");
}

#ifdef _WIN32

/// The file's own protection holds for everybody.
struct AsUser {
    explicit AsUser(const std::filesystem::path& /*folder*/) {}
};

#else

/// Until its end the process is a user who owns the folder, for root may write anywhere.
class AsUser {
public:
    explicit AsUser(const std::filesystem::path& folder) {
        constexpr uid_t Nobody = 65534;
        if (geteuid() == 0) {
            EXPECT_EQ(chown(folder.c_str(), Nobody, Nobody), 0);
            EXPECT_EQ(seteuid(Nobody), 0);
        }
    }
    ~AsUser() { EXPECT_EQ(seteuid(getuid()), 0); }
    AsUser(const AsUser&) = delete;
    AsUser& operator=(const AsUser&) = delete;
};

#endif

TEST_F(Output, DoesNotTakeTheProtectedFilesPlace) {
    const AsUser user(folder.path());
    support::writeFile(path, Before);
    std::filesystem::permissions(path, std::filesystem::perms(0444));
    EXPECT_EQ(failureOf([&] { OutputFile file(path); }),
              path.string() + " cannot be written: Permission denied");
    EXPECT_EQ(support::readFile(path), Before);
    EXPECT_EQ(files(), 1U);
}

TEST_F(Output, SaysThatItMayNotWriteIntoTheFolder) {
    const AsUser user(folder.path());
    support::writeFile(path, Before);
    std::filesystem::permissions(folder.path(), std::filesystem::perms(0555));
    EXPECT_EQ(failureOf([&] { OutputFile file(path); }),
              path.string() + " cannot be written: Permission denied");
    std::filesystem::permissions(folder.path(), std::filesystem::perms(0755));
    EXPECT_EQ(support::readFile(path), Before);
}

class OutputOnADisk : public Output {
protected:
    void SetUp() override {
        if (!disk.why().empty()) {
            GTEST_SKIP() << disk.why();
        }
        support::writeFile(target, Before);
    }
    faults::Disk disk;
    const std::filesystem::path target = disk.path() / "file";
};

TEST_F(OutputOnADisk, ThatIsFullSaysSoAndLeavesTheOldFile) {
    EXPECT_EQ(failureOf([&] {
                  OutputFile file(target);
                  const Bytes much(faults::Disk::Size);
                  file.write(much);
                  file.finish();
              }),
              target.string() + " cannot be written: No space left on device");
    EXPECT_EQ(support::readFile(target), Before);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(disk.path()), {}), 1);
}

TEST_F(OutputOnADisk, ThatIsFullSaysSoWhenLittleIsWritten) {
    disk.fill();
    EXPECT_EQ(failureOf([&] {
                  OutputFile file(target);
                  file.write(After);
                  file.finish();
              }),
              target.string() + " cannot be written: No space left on device");
    EXPECT_EQ(support::readFile(target), Before);
}

TEST_F(OutputOnADisk, ThatIsReadOnlySaysSo) {
    disk.setReadOnly(true);
    EXPECT_EQ(failureOf([&] { OutputFile file(target); }),
              target.string() + " cannot be written: Read-only file system");
    EXPECT_EQ(failureOf([&] { OutputFile file(disk.path() / "new"); }),
              (disk.path() / "new").string() + " cannot be written: Read-only file system");
    disk.setReadOnly(false);
}

TEST_F(OutputOnADisk, SaysNothingMoreOnceItHasFailed) {
    OutputFile file(target);
    const Bytes much(faults::Disk::Size);
    EXPECT_FALSE(file.put(much));
    EXPECT_FALSE(file.put(After));
    EXPECT_THAT(failureOf([&] { file.check(); }), testing::HasSubstr("No space left"));
}

}  // namespace
