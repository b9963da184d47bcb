// Every block that an operation asks for is refused once. The exception reaches the caller; the
// controller is given back, nothing is half written, and the next command works.
//
// Left alone are the blocks that the toolkit asks for in its own code, for a message box or while
// it handles events: much of that is called back from the desktop's C, through which no exception
// can pass, and what becomes of it is not ours.

#include <wx/app.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <functional>
#include <iostream>
#include <new>
#include <string>
#include <vector>

#include "device/interfaceUSB.h"
#include "tests/device/allocations/answers.h"
#include "tests/device/allocations/failing_new.h"
#include "tests/support/device_link.h"
#include "tests/support/odd_files.h"
#include "tests/support/temporary_folder.h"

namespace {

using allocations::Asked;
using allocations::Unwatched;
using simulator::Bus;

constexpr std::size_t UploadSize = 1100;

/// What an operation works on, made before the watch.
struct Place {
    support::TemporaryFolder folder;
    std::string local = folder.path() / "local.bin";
    std::string missing = folder.path() / "missing.bin";
    wxString dumps = wxString::FromUTF8(folder.path().string());
};

struct Case {
    std::string name;
    std::function<void(Bus&)> plug;
    std::function<void(const Place&)> run;
    int blocks;  ///< that it asks for at least

    bool hasController() const { return !name.ends_with("WithoutOne"); }
};

void PrintTo(const Case& test, std::ostream* out) { *out << test.name; }

// What is on the bus

void nothing(Bus&) {}
void controller(Bus& bus) { bus.plugController(); }
void xlController(Bus& bus) { bus.plugController({.board = simulator::Board::Xl}, "LUMADOT XL"); }
void silentOne(Bus& bus) { bus.plug({}); }
void longName(Bus& bus) { bus.plugController({}, "A display that has a name of many letters"); }

std::function<void(Bus&)> refusing(int uploadFrame) {
    return [uploadFrame](Bus& bus) { bus.plugController()->refuseUploadFrame(uploadFrame); };
}

// What is done

void readSettings(const Place&) { config = usb.getSettings(config, versionString); }
void readId(const Place&) { usb.getUniqueId(UIDString); }
void writeSettings(const Place&) { usb.sendConfig(config); }
void select(const Place&) { usb.sendConfigCmd(0x02, 5); }
void upload(const Place& place) { usb.uploadFile(place.local.c_str(), "a.bin"); }
void uploadMissing(const Place& place) { usb.uploadFile(place.missing.c_str(), "a.bin"); }
void uploadFolder(const Place& place) { usb.uploadFile(place.folder.path().c_str(), "a.bin"); }
void sendLogo(const Place&) { usb.sendLogo(); }
void setBrightness(const Place&) { usb.setBrightness(30); }
void sendPalette(const Place&) {
    static std::array<unsigned char, 48> colours{};
    usb.sendPal(colours.data());
}
void sendBytes(const Place&) {
    static std::array<unsigned char, 5> bytes{};
    usb.sendUSB(bytes.data(), static_cast<int>(bytes.size()));
}
void capture(const Place& place) {
    dump_running = false;  // One round.
    usb.receiveDump(1, place.dumps);
}

/// Does this among the window events of a capture's round.
std::function<void(const Place&)> captureWith(void (*inBetween)(const Place&)) {
    return [inBetween](const Place& place) {
        {
            const Unwatched ours;
            wxTheApp->CallAfter([inBetween, &place] { inBetween(place); });
        }
        capture(place);
    };
}

const std::vector<Case>& cases() {
    // clang-format off
    static const std::vector<Case> all = {
        // An operation without memory of its own: nothing can be refused.
        {"SendUSB",                     controller,   sendBytes,     0},
        {"SendUSBToALongName",          longName,     sendBytes,     0},
        {"SendLogo",                    controller,   sendLogo,      0},
        {"GetUniqueId",                 controller,   readId,        0},
        // The frames, and the reply.
        {"GetSettings",                 controller,   readSettings,  2},
        {"GetSettingsOfALongName",      longName,     readSettings,  2},
        {"GetSettingsUnanswered",       silentOne,    readSettings,  2},
        {"GetSettingsWithoutOne",       nothing,      readSettings,  0},
        {"SendConfig",                  controller,   writeSettings, 1},
        {"SendConfigCmd",               controller,   select,        1},
        {"SendConfigCmdWithoutOne",     nothing,      select,        1},
        {"SendPal",                     controller,   sendPalette,   1},
        {"SetBrightness",               controller,   setBrightness, 1},
        // The file's bytes, the frame and the acknowledgement.
        {"UploadFile",                  controller,   upload,        3},
        {"UploadFileRefusedAtOnce",     refusing(1),  upload,        3},
        {"UploadFileRefusedInBetween",  refusing(3),  upload,        3},
        {"UploadFileRefusedAtTheEnd",   refusing(5),  upload,        3},
        {"UploadFileThatIsMissing",     controller,   uploadMissing, 0},
        {"UploadFileThatIsAFolder",     controller,   uploadFolder,  0},
        {"UploadFileWithoutOne", nothing,      upload,        0},
        // The names of the files, the reply and the blocks.
        {"ReceiveDump",                 controller,   capture,       5},
        {"ReceiveDumpOfXl",             xlController, capture,       5},
        {"ReceiveDumpUnanswered",       silentOne,    capture,       4},
        {"ReceiveDumpWithoutOne",       nothing,      capture,       1},
        // Another operation takes the connection over.
        {"ReceiveDumpAndSendConfig",    controller,   captureWith(writeSettings), 6},
        {"ReceiveDumpAndSendConfigCmd", controller,   captureWith(select),        6},
        {"ReceiveDumpAndGetSettings",   controller,   captureWith(readSettings),  7},
        {"ReceiveDumpAndUploadFile",    controller,   captureWith(upload),        8},
        {"ReceiveDumpAndUploadMissing", controller,   captureWith(uploadMissing), 5},
    };
    // clang-format on
    return all;
}

/// What an operation leaves behind.
struct Remains {
    int openHandles = 0;
    int claimedInterfaces = 0;
    int deviceLists = 0;
    bool staleHandle = false;
    int staleCalls = 0;  ///< of the library, with a handle that is not open
    int blocks = 0;
    int openFiles = 0;
};

/// One run of a case, on a bus of its own.
class Trial : public support::DeviceLink {
public:
    explicit Trial(const Case& test) : test_(test) {
        support::writeFile(place_.local, support::pattern(UploadSize));
        test.plug(bus);
        recordBefore_ = support::bytesOf(config);
    }

    /// Refuses the nth block; 0: none.
    void run(int nth) {
        allocations::watch(nth);
        try {
            test_.run(place_);
        } catch (const std::bad_alloc&) {
            threw_ = true;
        }
        asked_ = allocations::endWatch();
        wxTheApp->DeletePendingEvents();  // What the capture did not come to.
    }

    const Asked& asked() const { return asked_; }

    Remains remains() const {
        return {bus.openHandles(),
                bus.claimedInterfaces(),
                bus.deviceLists(),
                MyLibusbDeviceHandle != nullptr && bus.openHandles() == 0,
                static_cast<int>(std::ranges::count_if(bus.calls(), &simulator::Call::stale)),
                asked_.kept,
                support::timesOpen(place_.local)};
    }

    /// Nothing more than what is left when there is memory.
    void expectNoMoreThan(const Remains& usual) const {
        const Remains now = remains();
        EXPECT_LE(now.openHandles, usual.openHandles);
        EXPECT_LE(now.claimedInterfaces, usual.claimedInterfaces);
        EXPECT_LE(now.deviceLists, usual.deviceLists);
        EXPECT_LE(now.staleHandle, usual.staleHandle);
        EXPECT_LE(now.staleCalls, usual.staleCalls);
        EXPECT_LE(now.blocks, usual.blocks);
        EXPECT_LE(now.openFiles, usual.openFiles);
    }

    void expectToBeTold() const {
        if (threw_) {
            EXPECT_EQ(support::bytesOf(config), recordBefore_);
        } else {
            EXPECT_EQ(answers_.boxes(), "File Error");  // The file's bytes: that can be borne.
        }
    }

    /// Frames are in a file whole or not at all; the uploaded file is as it was.
    void expectWholeFiles() const {
        constexpr std::array<std::uintmax_t, 3> Text = {0, 12 + 32 * 130 + 2, 12 + 64 * 194 + 2};
        constexpr std::array<std::uintmax_t, 2> Raw = {8, 8 + 4 + 3 * 512};
        for (const auto& entry : std::filesystem::directory_iterator(place_.folder.path())) {
            const auto size = entry.file_size();
            if (entry.path().extension() == ".txt") {
                EXPECT_THAT(Text, testing::Contains(size));
            } else if (entry.path().extension() == ".raw") {
                EXPECT_THAT(Raw, testing::Contains(size));
            }
        }
        EXPECT_EQ(support::readFile(place_.local), support::pattern(UploadSize));
    }

    void expectTheNextCommandToWork() {
        if (bus.openHandles() == 0) {
            bus.clearCalls();
            EXPECT_EQ(usb.sendConfigCmd(0x02, 7), test_.hasController());
            EXPECT_EQ(bus.openHandles(), 0);
            EXPECT_TRUE(std::ranges::none_of(bus.calls(), &simulator::Call::stale));
        }
    }

private:
    void TestBody() override {}

    const Case& test_;
    Place place_;
    allocations::Answers answers_;
    support::RecordBytes recordBefore_{};
    Asked asked_;
    bool threw_ = false;
};

class OperationsWithoutMemory : public testing::TestWithParam<Case> {
protected:
    /// What is left, and what is asked for, when there is memory.
    static std::pair<Remains, Asked> undisturbed() {
        Trial(GetParam()).run(0);  // Takes what is taken once for all.
        Trial trial(GetParam());
        trial.run(0);
        return {trial.remains(), trial.asked()};
    }
};

TEST_P(OperationsWithoutMemory, GiveTheControllerBackWhicheverBlockIsRefused) {
    const auto [usual, asked] = undisturbed();
    EXPECT_GE(asked.tool, GetParam().blocks);
    for (int nth = 1; nth <= asked.tool; ++nth) {
        SCOPED_TRACE("block " + std::to_string(nth));
        Trial trial(GetParam());
        trial.run(nth);
        ASSERT_TRUE(trial.asked().refused);
        trial.expectToBeTold();
        trial.expectNoMoreThan(usual);
        trial.expectWholeFiles();
        trial.expectTheNextCommandToWork();
    }
    std::cout << "without memory: " << GetParam().name << ", each of " << asked.tool
              << " blocks refused, " << asked.toolkit << " of the toolkit left alone\n";
}

INSTANTIATE_TEST_SUITE_P(Every, OperationsWithoutMemory, testing::ValuesIn(cases()),
                         [](const auto& test) { return test.param.name; });

}  // namespace
