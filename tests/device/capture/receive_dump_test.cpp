// A capture on the simulated bus: the calls it makes and the files it writes.

#include <libusb.h>
#include <wx/event.h>
#include <wx/time.h>

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <limits>
#include <set>

#include "tests/device/capture/capture_link.h"
#include "tests/support/variables.h"

namespace {

using capture::Bytes;
using capture::CaptureLink;
using capture::Frame;
using testing::IsEmpty;

/// Local time is five and a half hours ahead of UTC here, so that one cannot pass for the other.
/// The toolkit asks for the zone once, when it needs it first.
const bool ZoneIsSet = (support::setVariable("TZ", "LMD-05:30"), true);
constexpr std::int64_t ZoneMs = 19800000;

using ReceiveDump = CaptureLink;

struct Wire {
    int mode;
    bool xl;
    std::string request;
    int replyLength;
};

class CaptureCalls : public CaptureLink, public testing::WithParamInterface<Wire> {};

TEST_P(CaptureCalls, AreOneSetupARequestAndAReplyARoundAndOneRelease) {
    plug(GetParam().mode, GetParam().xl ? Board::Xl : Board::Standard);
    run(GetParam().mode, 3);
    const std::string length = std::to_string(GetParam().replyLength);
    const support::Lines round = {"out 0x01 64 2000ms #0: " + GetParam().request,
                                  "in 0x81 " + length + " 10000ms #0"};
    EXPECT_EQ(support::callLines(), support::joined({support::setupLines(), round, round, round,
                                                     support::releaseLines()}));
    expectReleased();
}

INSTANTIATE_TEST_SUITE_P(
    Modes, CaptureCalls,
    testing::Values(
        Wire{0, false, "02 C3 E8 00*61", 5}, Wire{1, false, "02 C3 E8 03 00*60", 1541},
        Wire{2, false, "02 C3 E8 04 00*60", 2053}, Wire{3, false, "02 C3 E8 02 00*60", 1029},
        Wire{4, false, "02 C3 E8 04 00*60", 2053}, Wire{5, false, "02 C3 E8 02 00*60", 1029},
        Wire{6, false, "02 C3 E8 0C 00*60", 6149}, Wire{7, false, "02 C3 E8 06 00*60", 3077},
        Wire{8, false, "02 C3 E8 08 00*60", 4101}, Wire{9, false, "02 C3 E8 04 00*60", 2053},
        Wire{10, false, "02 C3 E8 04 00*60", 2053}, Wire{11, false, "02 C3 E8 00*61", 5},
        Wire{12, false, "02 C3 E8 02 00*60", 1029}, Wire{13, false, "02 C3 E8 03 00*60", 1541},
        Wire{14, false, "02 C3 E8 02 00*60", 1029}, Wire{15, false, "02 C3 E8 00*61", 5},
        Wire{77, false, "02 C3 E8 00*61", 5}, Wire{239, false, "02 C3 E8 04 00*60", 2053},
        Wire{0, true, "02 C3 E8 02 00*60", 3077}, Wire{6, true, "02 C3 E8 02 00*60", 3077},
        Wire{11, true, "02 C3 E8 02 00*60", 3077}),
    [](const auto& row) {
        return (row.param.xl ? "xl_" : "standard_") + std::to_string(row.param.mode);
    });

class CaptureFiles : public CaptureLink, public testing::WithParamInterface<std::tuple<int, bool>> {
protected:
    const int mode = std::get<0>(GetParam());
    const bool xl = std::get<1>(GetParam());
};

TEST_P(CaptureFiles, HoldTheControllersFramesByteForByte) {
    const auto controller = plug(mode, xl ? Board::Xl : Board::Standard);
    run(mode, 5);

    const std::vector<Frame> frames = repliedFrames();
    ASSERT_EQ(frames.size(), 5U);
    std::vector<Frame> captured;
    for (std::uint32_t i = 0; i < 5; ++i) {
        Bytes planes =
            controller->capturedPlanes(i, static_cast<std::uint8_t>(xl ? 2 : naive::planes(mode)));
        planes.push_back(0);
        captured.push_back({frames[i].clock, planes});
    }
    const std::uint32_t start = startOf(captured);
    expectText(mode, xl, captured, start);
    EXPECT_EQ(fileNames().size(), naive::hasRawFile(mode) ? 2U : 1U);
    if (naive::hasRawFile(mode)) {
        expectRaw(mode, captured, start);
    }
}

INSTANTIATE_TEST_SUITE_P(AllModes, CaptureFiles,
                         testing::Combine(testing::ValuesIn(naive::allModes()), testing::Bool()),
                         [](const auto& row) {
                             return (std::get<1>(row.param) ? "xl_" : "standard_") +
                                    std::to_string(std::get<0>(row.param));
                         });

/// The names that a capture may get which starts now: the C library's clock may lag by a tick.
std::vector<std::string> namesAt(std::time_t time, const char* ending) {
    std::vector<std::string> names;
    for (const std::time_t second : {time - 1, time}) {
        const std::tm utc = *std::gmtime(&second);
        char name[64];
        std::snprintf(name, sizeof name, "%02d%02d%02d_%02d%02d%02d_lumadot_dump.%s", utc.tm_mday,
                      utc.tm_mon + 1, utc.tm_year % 100, utc.tm_hour, utc.tm_min, utc.tm_sec,
                      ending);
        names.push_back(name);
    }
    return names;
}

TEST_F(ReceiveDump, FilesAreNamedAfterTheStartInUtc) {
    plug(1);
    const std::time_t before = std::time(nullptr);
    run(1, 1);
    const std::time_t after = std::time(nullptr);

    std::vector<std::string> raw;
    std::vector<std::string> text;
    for (std::time_t second = before; second <= after + 1; ++second) {
        for (const std::string& name : namesAt(second, "raw")) {
            raw.push_back(name);
        }
        for (const std::string& name : namesAt(second, "txt")) {
            text.push_back(name);
        }
    }
    const std::vector<std::string> names = fileNames();
    ASSERT_EQ(names.size(), 2U);
    EXPECT_THAT(raw, testing::Contains(names[0]));
    EXPECT_THAT(text, testing::Contains(names[1]));
    EXPECT_EQ(names[0].substr(0, 13), names[1].substr(0, 13));
}

TEST_F(ReceiveDump, FilesKeepTheirNamesHoweverLongTheCaptureTakes) {
    plug(1);
    rounds.after(1, [] { wxMilliSleep(1100); });
    run(1, 3);
    EXPECT_EQ(fileNames().size(), 2U);
    EXPECT_EQ(text().size(), 3 * (12 + 32 * 130 + 2U));
}

TEST_F(ReceiveDump, TimeStampsAreTheLocalStartPlusTheControllersClock) {
    plug(2);
    const std::int64_t before = wxGetLocalTimeMillis().GetValue();
    const std::int64_t utc = std::chrono::duration_cast<std::chrono::milliseconds>(
                                 std::chrono::system_clock::now().time_since_epoch())
                                 .count();
    rounds.after(1, [] { wxMilliSleep(30); });
    run(2, 4);
    const std::int64_t after = wxGetLocalTimeMillis().GetValue();

    const std::vector<Frame> frames = repliedFrames();
    const std::uint32_t start = startOf(frames);
    EXPECT_LE(start - static_cast<std::uint32_t>(before),
              static_cast<std::uint32_t>(after - before));
    EXPECT_LE(start - static_cast<std::uint32_t>(utc + ZoneMs), 60000U);
    EXPECT_GE(frames[1].clock - frames[0].clock, 30U);
    expectText(2, false, frames, start);
}

TEST_F(ReceiveDump, TimeStampsWrapAroundAtThirtyTwoBits) {
    plug(0);
    answers({{0xFF, 0xFF, 0xFF, 0xFF, 0}, {0x00, 0x00, 0x00, 0x80, 0}});
    run(0, 2);
    const std::vector<Frame> frames = {{0xFFFFFFFF, {}}, {0x80000000, {}}};
    expectText(0, false, frames, startOf(frames));
}

TEST_F(ReceiveDump, NoControllerLeavesARawFileWithItsHeaderAndNothingElse) {
    run(6);
    EXPECT_EQ(support::byteText(raw()), "52 41 57 00 01 80 20 0C");
    EXPECT_EQ(fileNames().size(), 1U);
    EXPECT_EQ(support::callLines(), support::emptyBusLines());
}

TEST_F(ReceiveDump, NoControllerLeavesNoFileInAModeWithoutRawFile) {
    run(2);
    EXPECT_THAT(fileNames(), IsEmpty());
}

TEST_F(ReceiveDump, NoControllerLeavesTheFlagAsItIs) {
    dump_running = true;
    usb.receiveDump(2, wxString::FromUTF8(folder.path().string()));
    EXPECT_TRUE(dump_running);
    dump_running = false;
}

TEST_F(ReceiveDump, TakesOneFrameEvenIfTheFlagIsFalseFromTheStart) {
    plug(3);
    dump_running = false;
    usb.receiveDump(3, wxString::FromUTF8(folder.path().string()));
    EXPECT_EQ(repliedFrames().size(), 1U);
    expectReleased();
}

TEST_F(ReceiveDump, FilesAreClosedWheneverTheControllerIsAskedOrEventsAreHandled) {
    plug(1);
    int looks = 0;
    const auto look = [&] {
        EXPECT_EQ(capture::openFilesIn(folder.path()), 0);
        ++looks;
    };
    rounds.onRead([&](int) { look(); });
    rounds.after(1, look);
    rounds.after(2, look);
    run(1, 3);
    look();
    EXPECT_EQ(looks, 6);
}

TEST_F(ReceiveDump, TwoCapturesOfOneSecondShareTheirFiles) {
    plug(1);
    for (int attempt = 0; attempt < 20; ++attempt) {
        const support::TemporaryFolder fresh;
        bus.clearCalls();
        const std::time_t before = std::time(nullptr);
        rounds.stopAfter(rounds.frames() + 2);
        run(1, fresh.path());
        rounds.stopAfter(rounds.frames() + 1);
        run(1, fresh.path());
        if (std::time(nullptr) != before) {
            continue;  // They may have started in different seconds.
        }
        const std::vector<Frame> frames = repliedFrames();
        ASSERT_EQ(frames.size(), 3U);
        std::size_t files = 0;
        for (const auto& entry : std::filesystem::directory_iterator(fresh.path())) {
            ++files;
            const Bytes bytes = support::readFile(entry.path());
            const std::size_t frame = 4 + 3 * 512;
            if (entry.path().extension() == ".raw") {
                ASSERT_EQ(bytes.size(), 8 + 2 * frame + 8 + frame);
                const std::span second = std::span(bytes).subspan(8 + 2 * frame, 8);
                EXPECT_EQ(support::byteText(second), "52 41 57 00 01 80 20 03");
            } else {
                EXPECT_EQ(bytes.size(), 3 * (12 + 32 * 130 + 2U));
            }
        }
        EXPECT_EQ(files, 2U);
        return;
    }
    FAIL() << "never two captures in one second";
}

TEST_F(ReceiveDump, FolderThatDoesNotExistCostsTheFilesOnly) {
    plug(1);
    rounds.stopAfter(3);
    run(1, folder.path() / "not" / "there");
    EXPECT_EQ(repliedFrames().size(), 3U);
    EXPECT_THAT(fileNames(), IsEmpty());
    expectReleased();
}

TEST_F(ReceiveDump, FolderThatVanishesAndComesBackCostsTheFramesInBetween) {
    plug(1);
    const auto into = folder.path() / "dumps";
    const auto away = folder.path() / "away";
    std::filesystem::create_directory(into);
    rounds.after(1, [&] { std::filesystem::rename(into, away); });
    rounds.after(3, [&] { std::filesystem::rename(away, into); });
    rounds.stopAfter(4);
    run(1, into);
    for (const auto& entry : std::filesystem::directory_iterator(into)) {
        const bool isRaw = entry.path().extension() == ".raw";
        EXPECT_EQ(std::filesystem::file_size(entry.path()),
                  isRaw ? 8 + 2 * (4 + 3 * 512U) : 2 * (12 + 32 * 130 + 2U));
    }
    expectReleased();
}

std::set<std::filesystem::path> inTheRoot() {
    const std::filesystem::directory_iterator entries("/");
    return {begin(entries), end(entries)};
}

TEST_F(ReceiveDump, EmptyFolderNameDoesNotWriteIntoTheRoot) {
    plug(1);
    rounds.stopAfter(1);
    const auto before = inTheRoot();
    run(1, "");
    EXPECT_EQ(inTheRoot(), before);
    expectReleased();
}

/// Write calls of this process so far, as the kernel counts them.
long writeCalls() {
    std::ifstream counts("/proc/self/io");
    std::string name;
    long count = 0;
    while (counts >> name >> count && name != "syscw:") {
    }
    return count;
}

/// What a program that is killed meanwhile leaves of a frame is all of it or nothing.
TEST_F(ReceiveDump, FrameIsWrittenInOneWriteAFile) {
    plug(1);
    std::vector<long> writes;
    long before = 0;
    rounds.onRead([&](int frame) {
        const bool comes = frame % 2 == 0;
        writes.push_back(writeCalls() - before);
        if (!comes) {
            failTransfer(0x81, LIBUSB_ERROR_TIMEOUT);
        }
        before = writeCalls();
    });
    run(1, 21);
    // By the frame before: the first is the start. The window's events may write, too.
    long withFrame = std::numeric_limits<long>::max();
    long withoutFrame = withFrame;
    for (std::size_t i = 1; i < writes.size(); ++i) {
        long& least = i % 2 == 0 ? withFrame : withoutFrame;
        least = std::min(least, writes[i]);
    }
    EXPECT_EQ(withFrame - withoutFrame, 2);
}

class EventModes : public CaptureLink,
                   public testing::WithParamInterface<std::pair<wxIdleMode, wxUpdateUIMode>> {};

TEST_P(EventModes, AreAfterACaptureAsTheyWereBefore) {
    const auto before = std::pair(wxIdleEvent::GetMode(), wxUpdateUIEvent::GetMode());
    plug(1);
    wxIdleEvent::SetMode(GetParam().first);
    wxUpdateUIEvent::SetMode(GetParam().second);
    run(1, 1);
    EXPECT_EQ(wxIdleEvent::GetMode(), GetParam().first);
    EXPECT_EQ(wxUpdateUIEvent::GetMode(), GetParam().second);
    wxIdleEvent::SetMode(before.first);
    wxUpdateUIEvent::SetMode(before.second);
}

INSTANTIATE_TEST_SUITE_P(
    Each, EventModes,
    testing::Values(std::pair(wxIDLE_PROCESS_ALL, wxUPDATE_UI_PROCESS_SPECIFIED),
                    std::pair(wxIDLE_PROCESS_SPECIFIED, wxUPDATE_UI_PROCESS_ALL)));

TEST_F(ReceiveDump, FolderWithLettersBeyondAsciiGetsTheFiles) {
    const std::string before = std::setlocale(LC_CTYPE, nullptr);
    std::setlocale(LC_CTYPE, "C.UTF-8");
    plug(1);
    const auto into = folder.path() / "Ränder 夏";
    std::filesystem::create_directory(into);
    rounds.stopAfter(1);
    run(1, into);
    std::setlocale(LC_CTYPE, before.c_str());
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(into), {}), 2);
}

TEST_F(ReceiveDump, FolderThatTheLocaleCannotExpressCostsTheFilesOnly) {
    const std::string before = std::setlocale(LC_CTYPE, nullptr);
    std::setlocale(LC_CTYPE, "C");
    plug(1);
    rounds.stopAfter(2);
    run(1, folder.path() / "夏");
    std::setlocale(LC_CTYPE, before.c_str());
    EXPECT_EQ(repliedFrames().size(), 2U);
    EXPECT_THAT(fileNames(), IsEmpty());
    expectReleased();
}

}  // namespace
