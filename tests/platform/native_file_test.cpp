// File names and long files, on every system.

#include "platform/native_file.h"

#include <gmock/gmock.h>

#include <memory>
#include <string>

#include "tests/support/odd_files.h"
#include "tests/support/temporary_folder.h"

namespace {

using Stream = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

Stream open(const std::filesystem::path& path, const char* mode) {
    const std::u8string name = path.u8string();
    return {native_file::open(std::string(name.begin(), name.end()).c_str(), mode), std::fclose};
}

class NativeFile : public testing::Test {
protected:
    const support::TemporaryFolder folder;
};

TEST_F(NativeFile, HasANameInAnyScript) {
    const auto path = folder.path() / u8"Größe 日本語 🎯";
    {
        const Stream file = open(path, "wb");
        ASSERT_NE(file, nullptr);
        std::fputs("abc", file.get());
    }
    EXPECT_EQ(std::filesystem::file_size(path), 3U);
}

TEST_F(NativeFile, ThatShallBeNewIsNotOpenedWhenItIsThere) {
    const auto path = folder.path() / "a";
    EXPECT_NE(open(path, "wbx"), nullptr);
    EXPECT_EQ(open(path, "wbx"), nullptr);
}

TEST_F(NativeFile, OfThreeGibibytesHasThatLength) {
    const auto path = folder.path() / "large";
    support::makeSparseFile(path, std::uintmax_t{3} << 30U);
    const Stream file = open(path, "rb");
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(native_file::seekEnd(file.get()), std::int64_t{3} << 30U);
}

TEST_F(NativeFile, CanBeInAVeryLongFolder) {
    const auto path =
        native_file::reachable(folder.path() / std::string(150, 'a') / std::string(150, 'b') / "c");
    std::filesystem::create_directories(
        native_file::reachable(folder.path() / std::string(150, 'a') / std::string(150, 'b')));
    EXPECT_NE(open(path, "wb"), nullptr);
    EXPECT_TRUE(std::filesystem::exists(path));
    EXPECT_NE(open(native_file::target(path), "rb"), nullptr);
}

TEST_F(NativeFile, ThatCannotBeReplacedStaysReadOnly) {
    using std::filesystem::perms;
    support::writeFile(folder.path() / "old", {});
    std::filesystem::permissions(folder.path() / "old", perms::owner_read);
    std::error_code error;
    native_file::replace(folder.path() / "old", folder.path() / "missing", error);
    EXPECT_TRUE(error);
    EXPECT_EQ(std::filesystem::status(folder.path() / "old").permissions() & perms::owner_write,
              perms::none);
    std::filesystem::permissions(folder.path() / "old", perms::owner_all);
}

TEST(Utf8, IsTheNameAsText) {
    EXPECT_EQ(native_file::utf8(std::filesystem::path(u8"ü 日.txt")), "\xC3\xBC \xE6\x97\xA5.txt");
    EXPECT_EQ(native_file::utf8({}), "");
}

#ifdef _WIN32

TEST(Utf8, HasAReplacementForWhatIsNoText) {
    EXPECT_EQ(native_file::utf8(L"a\xD83C.txt"), "a\xEF\xBF\xBD.txt");
}

TEST(Reachable, IsAShortNameAsItIs) {
    for (const wchar_t* name : {L"a", LR"(C:\a\b)", LR"(\\server\share\a)"}) {
        EXPECT_EQ(native_file::reachable(name).native(), name);
    }
}

TEST(Reachable, IsALongNameInTheSpecialWay) {
    const std::wstring rest(300, L'x');
    EXPECT_EQ(native_file::reachable(LR"(C:\)" + rest).native(), LR"(\\?\C:\)" + rest);
    EXPECT_EQ(native_file::reachable(L"C:/" + rest).native(), LR"(\\?\C:\)" + rest);
    EXPECT_EQ(native_file::reachable(LR"(\\server\share\)" + rest).native(),
              LR"(\\?\UNC\server\share\)" + rest);
    EXPECT_EQ(native_file::reachable(LR"(\\?\C:\)" + rest).native(), LR"(\\?\C:\)" + rest);
}

TEST(Reachable, HasRoomForWhatIsAppended) {
    const std::wstring longest = LR"(C:\)" + std::wstring(217, L'x');
    EXPECT_EQ(native_file::reachable(longest).native(), longest);
    EXPECT_EQ(native_file::reachable(longest + L"x").native(), LR"(\\?\)" + longest + L"x");
}

TEST(Reachable, TakesSlashesForBackslashesInTheSpecialWay) {
    EXPECT_EQ(native_file::reachable(LR"(\\?\C:\a/b)").native(), LR"(\\?\C:\a\b)");
    const std::wstring rest(300, L'x');
    EXPECT_EQ(native_file::reachable(L"//?/C:/" + rest).native(), LR"(\\?\C:\)" + rest);
}

TEST_F(NativeFile, IsReachedFromADeepFolder) {
    const auto deep = folder.path() / std::wstring(220 - folder.path().native().size(), L'a');
    std::filesystem::create_directory(deep);
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(deep);
    const auto path = native_file::reachable("b");
    const auto target = native_file::target("b");
    std::filesystem::current_path(before);
    EXPECT_EQ(path.native(), LR"(\\?\)" + deep.native() + LR"(\b)");
    EXPECT_EQ(target.native(), path.native());
}

TEST(Target, KeepsTheNameOfAShare) {
    EXPECT_EQ(native_file::target(LR"(\\server\share\a\b)").native(), LR"(\\server\share\a\b)");
}

#else

TEST(Reachable, IsEveryNameAsItIs) {
    const std::string name = "/a/" + std::string(300, 'x') + "/../b";
    EXPECT_EQ(native_file::reachable(name), name);
}

TEST_F(NativeFile, IsTheOneBehindItsLinks) {
    const auto real = std::filesystem::canonical(folder.path()) / "real";
    std::filesystem::create_symlink(real, folder.path() / "link");
    support::writeFile(real, {});
    EXPECT_EQ(native_file::target(folder.path() / "link"), real);
}

#endif

}  // namespace
