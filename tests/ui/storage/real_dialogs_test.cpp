// Files through the toolkit's own dialogs, with real keys.

#include <gmock/gmock.h>
#include <wx/defs.h>

#include <bit>
#include <clocale>

#include "device/interfaceUSB.h"
#include "simulator/bus.h"
#include "tests/support/members.h"
#include "tests/support/odd_files.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/toolkit.h"
#include "tests/ui/storage/user.h"
#include "ui/MainFrame.h"
#include "ui/palette.h"

namespace {

using support::Members;
using support::readFile;
using testing::ElementsAreArray;
using Bytes = std::vector<std::uint8_t>;
using RecordBytes = std::array<std::uint8_t, 23>;

constexpr RecordBytes SomeRecord = {9,  7,  32, 33, 34, 35, 36, 37, 38, 39, 40, 41,
                                    42, 43, 44, 45, 46, 47, 48, 49, 50, 0,  77};

class RealDialogs : public testing::Test {
protected:
    RealDialogs() {
        std::setlocale(LC_CTYPE, "C.UTF-8");
        bus.reset();
        MyLibusbDeviceHandle = nullptr;
        window_ = new MainFrame(nullptr);
        support::showAndWait(*window_);
        EXPECT_TRUE(support::runUntil([this] { return window_->IsActive(); }));
        config = std::bit_cast<configDescriptor>(SomeRecord);
        bus.clearCalls();
    }
    ~RealDialogs() override {
        window_->Destroy();
        support::deleteClosedWindows();
        std::setlocale(LC_CTYPE, "C");
    }

    /// Runs the menu item's handler until the user has done with its dialogs.
    void choose(wxMenuItem* MainFrameBaseClass::*item) {
        wxCommandEvent event(wxEVT_MENU, (window_->*item)->GetId());
        EXPECT_TRUE(window_->GetEventHandler()->ProcessEvent(event));
        EXPECT_TRUE(support::runUntil([this] { return user.isDone(); }));
        EXPECT_TRUE(support::runUntil([this] { return window_->IsActive(); }));
    }

    std::string pathOf(const std::string& name) const { return (folder.path() / name).string(); }

    simulator::Bus& bus = simulator::Bus::instance();
    const support::TemporaryFolder folder;
    User user;

private:
    MainFrame* window_;
};

TEST_F(RealDialogs, SaveSettingsThatAreLoadedAgain) {
    const std::string file = pathOf("lumadot.dat");
    user.savesFile("Save Config file", "lumadot.dat", file);
    choose(&Members::save_config);
    ASSERT_THAT(readFile(file), ElementsAreArray(SomeRecord));

    config = std::bit_cast<configDescriptor>(RecordBytes{});
    user.opensFile("Open Config file", file);
    choose(&Members::load_config);
    EXPECT_EQ(std::bit_cast<RecordBytes>(config), SomeRecord);
    EXPECT_TRUE(bus.calls().empty());
}

TEST_F(RealDialogs, SaveAPaletteThatIsLoadedAgain) {
    const std::string file = pathOf("mine.pal");
    const auto before = palette;
    palette.fill(0x5A);
    user.savesFile("Save PAL file", "lumadot.pal", file);
    choose(&Members::save_palette);
    ASSERT_EQ(readFile(file).size(), 56U);

    palette = before;
    user.opensFile("Open PAL file", file);
    choose(&Members::load_palette);
    EXPECT_THAT(palette, testing::Each(0x5A));
    palette = before;
}

TEST_F(RealDialogs, AskBeforeAFileIsReplaced) {
    const std::string file = pathOf("lumadot.dat");
    support::writeFile(file, Bytes{1, 2, 3});
    user.savesFile("Save Config file", "lumadot.dat", file);
    user.answersBox("A file named", WXK_ESCAPE);
    user.pressesInFileDialog("Save Config file", WXK_ESCAPE);
    choose(&Members::save_config);
    EXPECT_EQ(readFile(file), (Bytes{1, 2, 3}));

    user.savesFile("Save Config file", "lumadot.dat", file);
    user.answersBox("A file named", WXK_RETURN);
    choose(&Members::save_config);
    EXPECT_THAT(readFile(file), ElementsAreArray(SomeRecord));
}

TEST_F(RealDialogs, ReportAFileOfTheWrongLength) {
    const std::string file = pathOf("lumadot.dat");
    support::writeFile(file, Bytes(24, 3));
    user.opensFile("Open Config file", file);
    user.answersBox("File Error", WXK_RETURN);
    choose(&Members::load_config);
    EXPECT_EQ(std::bit_cast<RecordBytes>(config), SomeRecord);
}

TEST_F(RealDialogs, UploadAFileUnderTheProposedName) {
    const auto board = bus.plugController();
    const Bytes content = support::pattern(1000);
    support::writeFile(pathOf("a.bin"), content);
    user.opensFile("Upload File", pathOf("a.bin"));
    user.entersText("Upload File", "a.bin", "a.bin");
    user.answersBox("File Upload Successful !", WXK_RETURN);
    choose(&Members::upload_Device);
    EXPECT_THAT(board->files(), testing::ElementsAre(testing::Pair("a.bin", content)));
}

TEST_F(RealDialogs, UploadAFileUnderAnotherName) {
    const auto board = bus.plugController();
    support::writeFile(pathOf("a.bin"), Bytes{1, 2, 3});
    user.opensFile("Upload File", pathOf("a.bin"));
    user.entersText("Upload File", "a.bin", "Other/NAME 1");
    user.answersBox("File Upload Successful !", WXK_RETURN);
    choose(&Members::upload_Device);
    EXPECT_THAT(board->files(),
                testing::ElementsAre(testing::Pair("Other/NAME 1", Bytes{1, 2, 3})));
}

TEST_F(RealDialogs, UploadNothingAfterEscape) {
    bus.plugController();
    user.pressesInFileDialog("Upload File", WXK_ESCAPE);
    choose(&Members::upload_Device);
    EXPECT_TRUE(bus.calls().empty());
}

}  // namespace
