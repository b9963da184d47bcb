// Disks that are full, read-only, or change under a capture, and a machine without memory.

#include <wx/filedlg.h>

#include <cstdlib>
#include <limits>
#include <new>

#include "device/interfaceUSB.h"
#include "tests/device/capture/capture_link.h"
#include "tests/device/faults/disk.h"
#include "tests/device/upload/upload_fixture.h"
#include "tests/support/odd_files.h"
#include "tests/support/toolkit.h"
#include "tests/ui/storage/storage_fixture.h"
#include "ui/palette.h"

namespace {

/// Blocks from this size on are refused where the asker can bear it.
std::size_t refusedFrom = std::numeric_limits<std::size_t>::max();
int refusals = 0;

}  // namespace

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    if (size >= refusedFrom) {
        ++refusals;
        return nullptr;
    }
    try {
        return operator new[](size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

namespace {

using capture::CaptureLink;
using capture::Frame;
using faults::Disk;
using support::Members;

constexpr int Mode = 1;  // Three planes and a raw file.

class CaptureOnADisk : public CaptureLink {
protected:
    void SetUp() override {
        if (!disk.why().empty()) {
            GTEST_SKIP() << disk.why();
        }
        place = disk.path();
        plug(Mode);
    }

    /// Captures this many frames, of which nothing keeps the tool from asking.
    std::vector<Frame> capture(int count) {
        run(Mode, count);
        const std::vector<Frame> frames = repliedFrames();
        EXPECT_EQ(frames.size(), static_cast<std::size_t>(count));
        EXPECT_EQ(capture::openFilesIn(place), 0);
        EXPECT_EQ(dialogs.seen(), 0);
        expectReleased();
        return frames;
    }

    /// The files hold these frames and no others; the raw file's header was lost.
    void expectFilesWithoutHeader(const std::vector<Frame>& frames) const {
        const std::uint32_t start = startOf(frames);
        expectText(Mode, false, frames, start);
        capture::Bytes raw = rawOf(Mode, frames, start);
        raw.erase(raw.begin(), raw.begin() + 8);
        EXPECT_TRUE(this->raw() == raw);
    }

    Disk disk;
};

TEST_F(CaptureOnADisk, ThatFillsUpGoesOnAndKeepsWhatFitted) {
    // A frame takes 5714 bytes in both files together.
    const std::vector<Frame> frames = capture(80);
    const std::uint32_t start = startOf(frames);
    const std::string written = text();
    const capture::Bytes writtenRaw = raw();
    EXPECT_LT(written.size(), 80U * 4174);
    EXPECT_GT(written.size() + writtenRaw.size(), Disk::Size / 2);
    EXPECT_TRUE(textOf(Mode, false, frames, start).starts_with(written));
    capture::Bytes whole = rawOf(Mode, frames, start);
    whole.resize(writtenRaw.size());
    EXPECT_TRUE(writtenRaw == whole);
}

TEST_F(CaptureOnADisk, ThatIsFullUntilTheThirdFrameLosesTheFirstTwoAndTheHeader) {
    disk.fill();
    rounds.after(2, [this] { disk.makeRoom(); });
    const std::vector<Frame> frames = capture(4);
    expectFilesWithoutHeader({frames[2], frames[3]});
}

TEST_F(CaptureOnADisk, ThatStaysFullLeavesEmptyFiles) {
    disk.fill();
    capture(3);
    EXPECT_EQ(text(), "");
    EXPECT_EQ(raw(), capture::Bytes());
}

TEST_F(CaptureOnADisk, ThatIsReadOnlyCostsTheFilesOnly) {
    disk.setReadOnly(true);
    capture(3);
    EXPECT_TRUE(std::filesystem::is_empty(disk.path()));
}

TEST_F(CaptureOnADisk, ThatIsReadOnlyForAWhileLosesTheFramesInBetween) {
    rounds.after(2, [this] { disk.setReadOnly(true); });
    rounds.after(4, [this] { disk.setReadOnly(false); });
    const std::vector<Frame> frames = capture(6);
    const std::vector<Frame> kept = {frames[0], frames[1], frames[4], frames[5]};
    expectText(Mode, false, kept, startOf(kept));
    expectRaw(Mode, kept, startOf(kept));
}

TEST_F(CaptureOnADisk, WhoseFilesAreRemovedMakesThemAgainForTheNextFrame) {
    std::vector<std::filesystem::path> names;
    rounds.after(2, [&] {
        for (const auto& entry : std::filesystem::directory_iterator(place)) {
            names.push_back(entry.path());
        }
        for (const auto& name : names) {
            std::filesystem::remove(name);
        }
    });
    const std::vector<Frame> frames = capture(4);
    expectFilesWithoutHeader({frames[2], frames[3]});
    ASSERT_EQ(names.size(), 2U);
    for (const auto& name : names) {
        EXPECT_TRUE(std::filesystem::exists(name));
    }
}

class CaptureIntoAFolder : public CaptureLink {
protected:
    /// Captures five frames, of which the second and the third find a folder in the place of the
    /// file with this ending.
    std::vector<Frame> captureWithAFolderFor(const std::string& ending) {
        plug(Mode);
        std::filesystem::path file;
        const std::filesystem::path kept = folder.path() / "kept";
        rounds.after(1, [&] {
            file = fileWith(ending);
            std::filesystem::rename(file, kept);
            std::filesystem::create_directory(file);
        });
        rounds.after(3, [&] {
            EXPECT_EQ(capture::openFilesIn(folder.path()), 0);
            EXPECT_TRUE(std::filesystem::remove(file));
            std::filesystem::rename(kept, file);
        });
        run(Mode, 5);
        EXPECT_EQ(rounds.frames(), 5);
        EXPECT_EQ(fileNames().size(), 2U);
        EXPECT_EQ(capture::openFilesIn(folder.path()), 0);
        EXPECT_EQ(dialogs.seen(), 0);
        expectReleased();
        return repliedFrames();
    }

private:
    std::filesystem::path fileWith(const std::string& ending) const {
        for (const std::string& name : fileNames()) {
            if (name.ends_with(ending)) {
                return folder.path() / name;
            }
        }
        ADD_FAILURE() << "no file *" << ending;
        return folder.path() / "missing";
    }
};

TEST_F(CaptureIntoAFolder, WhoseRawFileCannotBeOpenedSkipsItFrameByFrameAndTheTextGoesOn) {
    const std::vector<Frame> frames = captureWithAFolderFor(".raw");
    ASSERT_EQ(frames.size(), 5U);
    const std::uint32_t start = startOf(frames);
    expectText(Mode, false, frames, start);
    expectRaw(Mode, {frames[0], frames[3], frames[4]}, start);
}

TEST_F(CaptureIntoAFolder, WhoseTextFileCannotBeOpenedSkipsItFrameByFrameAndTheRawFileGoesOn) {
    const std::vector<Frame> frames = captureWithAFolderFor(".txt");
    ASSERT_EQ(frames.size(), 5U);
    const std::uint32_t start = startOf(frames);
    expectText(Mode, false, {frames[0], frames[3], frames[4]}, start);
    expectRaw(Mode, frames, start);
}

TEST_F(CaptureIntoAFolder, ThatIsReadOnlyCostsTheFilesOnly) {
    plug(Mode);
    support::closeFolder(folder.path());
    const support::WithoutPrivileges user;
    run(Mode, 3);
    EXPECT_EQ(rounds.frames(), 3);
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
    expectReleased();
}

class SavingOnADisk : public Storage {
protected:
    void SetUp() override {
        if (!disk.why().empty()) {
            GTEST_SKIP() << disk.why();
        }
        openWithSomeSettings();
    }

    /// Saves to a file on the disk, which changes nothing in the window.
    void save(wxMenuItem* MainFrameBaseClass::*item, const char* title, const char* wildcard,
              const std::filesystem::path& file, const char* proposed) {
        expectNothingChanges([&] {
            dialogs.expectFile({title, wildcard, wxFD_SAVE | wxFD_OVERWRITE_PROMPT, proposed},
                               wxString::FromUTF8(file.string()));
            if (errorExpected) {
                support::expectPlainMessage(dialogs, "File Error");
            }
            choose(item);
        });
        EXPECT_EQ(capture::openFilesIn(disk.path()), 0);
    }
    void saveSettings() {
        save(&Members::save_config, "Save Config file", "Config files (lumadot.dat)|lumadot.dat",
             settings, "lumadot.dat");
    }
    void savePalette() {
        save(&Members::save_palette, "Save PAL file", "Palette files (*.pal)|*.pal", paletteFile,
             "lumadot.pal");
    }

    bool errorExpected = false;
    Disk disk;
    const std::filesystem::path settings = disk.path() / "lumadot.dat";
    const std::filesystem::path paletteFile = disk.path() / "lumadot.pal";
};

TEST_F(SavingOnADisk, ThatIsFullReportsNothingOfTheSettings) {
    disk.fill();
    saveSettings();
    EXPECT_TRUE(std::filesystem::exists(settings));
    EXPECT_EQ(support::readFile(settings), Bytes());
}

TEST_F(SavingOnADisk, ThatIsFullReportsNothingOfThePalette) {
    disk.fill();
    savePalette();
    EXPECT_TRUE(std::filesystem::exists(paletteFile));
    EXPECT_EQ(support::readFile(paletteFile), Bytes());
}

TEST_F(SavingOnADisk, ThatIsReadOnlyReportsNothingOfTheSettings) {
    support::writeFile(settings, Bytes{1, 2, 3});
    disk.setReadOnly(true);
    saveSettings();
    EXPECT_EQ(support::readFile(settings), (Bytes{1, 2, 3}));
}

TEST_F(SavingOnADisk, ThatIsReadOnlyReportsThatThePaletteCannotBeWritten) {
    support::writeFile(paletteFile, Bytes{1, 2, 3});
    disk.setReadOnly(true);
    errorExpected = true;
    savePalette();
    EXPECT_EQ(support::readFile(paletteFile), (Bytes{1, 2, 3}));
}

class UploadWithoutMemory : public Upload {
protected:
    UploadWithoutMemory() { plug(); }
    ~UploadWithoutMemory() override { refusedFrom = std::numeric_limits<std::size_t>::max(); }

    /// Uploads a file of this size while blocks from `limit` on are refused.
    void uploadWithLimit(std::size_t size, std::size_t limit) {
        const auto file = makeFile(support::pattern(size));
        refusals = 0;
        refusedFrom = limit;
        usb.uploadFile(file.c_str(), "a.bin");
        refusedFrom = std::numeric_limits<std::size_t>::max();
        EXPECT_EQ(support::timesOpen(file), 0);
        expectReleased();
    }
};

TEST_F(UploadWithoutMemory, ForTheFileIsReportedWithTheControllerReleasedAndTheFileClosed) {
    expectOutcome("File Error", 0);
    uploadWithLimit(4 << 20, 4 << 20);
    EXPECT_EQ(refusals, 1);
    EXPECT_EQ(support::callLines(),
              support::joined({support::setupLines(), support::releaseLines()}));
    EXPECT_TRUE(controller->files().empty());
}

TEST_F(UploadWithoutMemory, ForMoreThanTheFileSucceeds) {
    expectOutcome("File Upload Successful !", 0);
    uploadWithLimit(4 << 20, (4 << 20) + 1);
    EXPECT_EQ(refusals, 0);
    EXPECT_TRUE(controller->files().at("a.bin") == support::pattern(4 << 20));
}

TEST_F(UploadWithoutMemory, DoesNotDisturbTheNextOne) {
    expectOutcome("File Error", 0);
    uploadWithLimit(4 << 20, 1000);
    expectOutcome("File Upload Successful !", 0);
    upload(support::pattern(1100), "a.bin");
    EXPECT_EQ(controller->files().at("a.bin"), support::pattern(1100));
}

}  // namespace
