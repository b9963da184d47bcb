#include "simulator/store.h"

#include <gtest/gtest.h>

#include <fstream>

#include "tests/simulator/packets.h"
#include "tests/support/temporary_folder.h"

using packets::block;
using packets::closeUpload;
using packets::command;
using packets::openUpload;
using simulator::Controller;
using simulator::ControllerOptions;
using simulator::Packet;

namespace fs = std::filesystem;

namespace {

struct StoreTest : testing::Test {
    Controller start() {
        ControllerOptions options;
        options.store = folder / "board" / "memory";
        return Controller(options);
    }
    void write(const std::string& file, const std::string& bytes) {
        const fs::path path = folder / "board" / "memory" / file;
        fs::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << bytes;
    }

    const support::TemporaryFolder temporary;
    const fs::path folder = temporary.path();
};

void upload(Controller& board, const std::string& name, const std::string& text) {
    for (const Packet& packet : {openUpload(name), block(text), closeUpload()}) {
        board.receive(packet);
        ASSERT_EQ(board.takeReply(), Packet({0x00}));
    }
}

Packet textBytes(const std::string& text) { return Packet(text.begin(), text.end()); }

}  // namespace

TEST_F(StoreTest, StoredSettingsAndPaletteSurviveTheProcess) {
    {
        Controller board = start();
        board.receive(command({0x02, 6}));
        board.receive(command({0x03, 8}));
        board.receive(command({0x01}));
        board.receive(command({0x12}));
        board.receive(command({0x02, 7}));
        board.receive(command({0x03, 1}));
    }
    const Controller board = start();
    EXPECT_EQ(board.working()[0], 6);
    EXPECT_EQ(board.working()[1], 8);
    EXPECT_EQ(board.permanent(), board.working());
    EXPECT_EQ(board.palette()[46], 135);
    EXPECT_EQ(board.permanentPalette(), board.palette());
}

TEST_F(StoreTest, FilesAreTheBareBytes) {
    Controller board = start();
    board.receive(command({0x01}));
    board.receive(command({0x12}));
    upload(board, "logo-1.bin", "text");
    EXPECT_EQ(fs::file_size(folder / "board/memory/settings"), 23U);
    EXPECT_EQ(fs::file_size(folder / "board/memory/palette"), 48U);
    EXPECT_EQ(fs::file_size(folder / "board/memory/files/logo-1.bin"), 4U);
}

TEST_F(StoreTest, UploadsOfAnyNameSurviveAndStayInTheFolder) {
    const std::string names[] = {"a.bin",
                                 "",
                                 ".",
                                 "..",
                                 "../../escaped",
                                 "/tmp/lumadot-escaped",
                                 "a/b\\c",
                                 "%",
                                 "%41",
                                 "%long-0",
                                 "%unfinished",
                                 "\xC3\xA4 \n\x01",
                                 std::string(200, 'x'),
                                 std::string(201, 'x'),
                                 std::string(2046, '/'),
                                 std::string(2045, '/') + "x"};
    {
        Controller board = start();
        for (const std::string& name : names) {
            upload(board, name, "<" + name.substr(0, 500) + ">");
        }
    }
    const Controller board = start();
    EXPECT_EQ(board.files().size(), std::size(names));
    for (const std::string& name : names) {
        ASSERT_EQ(board.files().count(name), 1U) << name;
        EXPECT_EQ(board.files().at(name), textBytes("<" + name.substr(0, 500) + ">"));
    }
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 1);
    EXPECT_EQ(std::distance(fs::directory_iterator(folder / "board"), {}), 1);
    EXPECT_FALSE(fs::exists("/tmp/lumadot-escaped"));
}

// Windows has devices of these names in every folder, drops dots at the end, and takes "A" for "a".
TEST_F(StoreTest, NamesOfFilesAreTakenAsTheyAreByEverySystem) {
    constexpr std::pair<const char*, const char*> Names[] = {{"a.bin", "a.bin"},
                                                             {"A.bin", "%41.bin"},
                                                             {"a.", "a%2E"},
                                                             {"a..", "a.%2E"},
                                                             {".", "%2E"},
                                                             {"con", "%63on"},
                                                             {"CON", "%43%4F%4E"},
                                                             {"nul.txt", "%6Eul.txt"},
                                                             {"prn", "%70rn"},
                                                             {"aux.", "%61ux%2E"},
                                                             {"com0", "%63om0"},
                                                             {"lpt9.a.b", "%6Cpt9.a.b"},
                                                             {"com", "com"},
                                                             {"com10", "com10"},
                                                             {"comx", "comx"},
                                                             {"a.con", "a.con"},
                                                             {"console.txt", "console.txt"}};
    Controller board = start();
    for (const auto& [name, file] : Names) {
        upload(board, name, name);
        EXPECT_EQ(support::readFile(folder / "board/memory/files" / file), textBytes(name)) << name;
    }
    const Controller later = start();
    EXPECT_EQ(later.files().size(), std::size(Names));
    for (const auto& [name, file] : Names) {
        ASSERT_EQ(later.files().count(name), 1U) << name;
        EXPECT_EQ(later.files().at(name), textBytes(name));
    }
}

TEST_F(StoreTest, FilesOfOddSizeLeaveTheDefaults) {
    for (const std::size_t size : {0U, 1U, 22U, 24U, 47U, 49U, 5000U}) {
        write("settings", std::string(size, 'x'));
        write("palette", std::string(size, 'x'));
        const Controller board = start();
        EXPECT_EQ(board.working()[22], 30) << size;
        EXPECT_EQ(board.palette()[3], 128) << size;
    }
}

TEST_F(StoreTest, FoldersInTheWayOfFilesAreSurvived) {
    fs::create_directories(folder / "board/memory/settings/x");
    fs::create_directories(folder / "board/memory/files/a.bin/x");
    Controller board = start();
    board.receive(command({0x01}));
    upload(board, "a.bin", "text");
    EXPECT_EQ(board.files().at("a.bin"), textBytes("text"));
    EXPECT_TRUE(start().files().empty());
}

TEST_F(StoreTest, FilesThatNoUploadMadeAreReadOrSkipped) {
    write("files/by hand.txt", "1");
    write("files/bad%4", "2");
    write("files/bad%zz", "3");
    write("files/%long-0123456789abcdef", "4");
    write("files/%name-0123456789abcdee", "5");
    const Controller board = start();
    EXPECT_EQ(board.files().size(), 1U);
    EXPECT_EQ(board.files().at("by hand.txt"), textBytes("1"));
}

TEST_F(StoreTest, FileInPlaceOfTheFolderIsSurvived) {
    std::ofstream(folder / "board") << "x";
    Controller board = start();
    board.receive(command({0x01}));
    upload(board, "a", "text");
    EXPECT_EQ(board.files().at("a"), textBytes("text"));
}

TEST_F(StoreTest, BoardWithoutAFolderForgets) {
    {
        Controller board;
        board.receive(command({0x02, 6}));
        board.receive(command({0x01}));
        upload(board, "a", "text");
    }
    const Controller board;
    EXPECT_EQ(board.working()[0], 0);
    EXPECT_TRUE(board.files().empty());
}
