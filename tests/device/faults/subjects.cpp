#include "tests/device/faults/subjects.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <iterator>

#include "device/interfaceUSB.h"
#include "tests/device/operations.h"
#include "tests/support/capture_rounds.h"
#include "tests/support/device_link.h"
#include "tests/support/odd_files.h"
#include "tests/support/temporary_folder.h"

namespace faults {

namespace {

using simulator::Controller;
using simulator::Packet;
using support::Lines;

const support::RecordBytes FactorySettings = {0, 0, 15, 10, 15, 12, 15, 0, 15, 15, 0, 0,
                                              0, 0, 0,  0,  0,  0,  0,  0, 1,  1,  30};
const support::RecordBytes BoardSettings = {7,  3,  32, 33, 34, 35, 36, 37, 38, 39, 40, 41,
                                            42, 43, 44, 45, 46, 47, 48, 49, 50, 0,  77};
/// The factory settings with what a reply of the older layout tells.
const support::RecordBytes OlderSettings = {7, 3, 15, 10, 15, 12, 15, 0, 15, 15, 0, 0,
                                            0, 0, 0,  0,  0,  0,  0,  0, 1,  0,  77};

constexpr const char* VersionBefore = "V0.00x";
constexpr const char* IdBefore = "another id";
constexpr const char* DestinationName = "a.bin";
constexpr int DumpRounds = 2;

const std::filesystem::path& folder() {
    static const support::TemporaryFolder made;
    return made.path();
}

std::filesystem::path captureFolder() { return folder() / "dumps"; }

Packet uploadedBytes() { return support::pattern(1100); }

/// Everything that the subjects have in common with `operations()`.
Subject subject(const std::string& name, std::function<int(const Controller&)> done) {
    const auto& all = operations();
    const auto found = std::ranges::find(all, name, &Operation::name);
    return {.name = name, .run = found->run, .transfers = found->transfers, .done = done};
}

/// Whether the tool holds what was read (1) or still what it had (0).
int readSettings(const support::RecordBytes& read, const std::string& version) {
    const support::RecordBytes record = support::bytesOf(config);
    if (record == read && versionString == version) {
        return 1;
    }
    return record == FactorySettings && std::string(versionString) == VersionBefore ? 0 : -2;
}

int readId() {
    const std::string now = UIDString;
    return now == "3A7F00C21D5E9B64" ? 1 : now == IdBefore ? 0 : -2;
}

Subject settingsReadInTheOlderLayout() {
    Subject made = subject("getSettings", [](const Controller&) {
        return readSettings(OlderSettings, VersionBefore);
    });
    made.name = "getSettingsOlder";
    made.layout = simulator::SettingsLayout::Older;
    return made;
}

Subject brightness() {
    Subject made =
        subject("setBrightness", [](const Controller& board) { return board.working()[22] == 30; });
    made.pause = 50;
    return made;
}

/// A frame of the upload: these bytes, this part of the file, then zeros up to 2052.
Lines uploadFrame(Packet bytes, std::size_t from, std::size_t to) {
    const Packet file = uploadedBytes();
    bytes.insert(bytes.end(), file.begin() + static_cast<std::ptrdiff_t>(from),
                 file.begin() + static_cast<std::ptrdiff_t>(to));
    bytes.resize(2052);
    return {"out 0x01 2052 1000ms #0: " + support::byteText(bytes), "in 0x81 1 1000ms #0"};
}

Subject upload() {
    return {
        .name = "uploadFile",
        .run =
            [] {
                usb.uploadFile(uploadedFile().c_str(), DestinationName);
                return std::nullopt;
            },
        .transfers = support::joined(
            {uploadFrame({0x81, 0xC3, 0xE7, 0xFF, 0x0A, 0x00, 0x61, 0x2E, 0x62, 0x69, 0x6E}, 0, 0),
             uploadFrame({0x81, 0xC3, 0xE7, 0xFF, 0x0A, 0x01, 0x02, 0x00}, 0, 512),
             uploadFrame({0x81, 0xC3, 0xE7, 0xFF, 0x0A, 0x01, 0x02, 0x00}, 512, 1024),
             uploadFrame({0x81, 0xC3, 0xE7, 0xFF, 0x0A, 0x01, 0x00, 0x4C}, 1024, 1100),
             uploadFrame({0x81, 0xC3, 0xE7, 0xFF, 0x0A, 0xFF}, 0, 0)}),
        .message = "File Upload Successful !",
        .done =
            [](const Controller& board) {
                const auto found = board.files().find(DestinationName);
                return found != board.files().end() && found->second == uploadedBytes() ? 1 : 0;
            },
    };
}

std::uintmax_t sizeOf(const std::string& ending) {
    std::uintmax_t size = 0;
    for (const auto& entry : std::filesystem::directory_iterator(captureFolder())) {
        size += entry.path().string().ends_with(ending) ? entry.file_size() : 0;
    }
    return size;
}

/// A capture, and the bytes that each of its frames takes in the files.
struct CaptureKind {
    const char* name;
    unsigned char mode;
    simulator::Board board;
    Lines round;
    std::uintmax_t textFrame;
    std::uintmax_t rawFrame;  ///< 0: no raw file
};

constexpr std::uintmax_t StandardText = 12 + 32 * 130 + 2;
constexpr std::uintmax_t XlText = 12 + 64 * 194 + 2;

const std::vector<CaptureKind>& captureKinds() {
    using enum simulator::Board;
    static const std::vector<CaptureKind> all = {
        {"receiveDump",
         1,
         Standard,
         {"out 0x01 64 2000ms #0: 02 C3 E8 03 00*60", "in 0x81 1541 10000ms #0"},
         StandardText,
         4 + 3 * 512},
        {"receiveDump0",
         0,
         Standard,
         {"out 0x01 64 2000ms #0: 02 C3 E8 00*61", "in 0x81 5 10000ms #0"},
         StandardText,
         0},
        {"receiveDump6",
         6,
         Standard,
         {"out 0x01 64 2000ms #0: 02 C3 E8 0C 00*60", "in 0x81 6149 10000ms #0"},
         StandardText,
         4 + 12 * 512},
        {"receiveDumpXl",
         1,
         Xl,
         {"out 0x01 64 2000ms #0: 02 C3 E8 02 00*60", "in 0x81 3077 10000ms #0"},
         XlText,
         4 + 3 * 512},
    };
    return all;
}

/// The frames in the files, -1 when there is no whole number of them or when they disagree.
int capturedFrames(const CaptureKind& kind) {
    constexpr std::uintmax_t RawHeader = 8;
    const std::uintmax_t frames = sizeOf(".txt") / kind.textFrame;
    const std::uintmax_t raw = kind.rawFrame == 0 ? 0 : RawHeader + frames * kind.rawFrame;
    const bool whole = sizeOf(".txt") == frames * kind.textFrame && sizeOf(".raw") == raw;
    return whole ? static_cast<int>(frames) : -1;
}

/// Ends from a pending event, as the check box of the window ends it.
void capture(unsigned char mode) {
    std::filesystem::remove_all(captureFolder());
    std::filesystem::create_directory(captureFolder());
    support::CaptureRounds rounds;
    rounds.stopAfter(DumpRounds);
    dump_running = true;
    usb.receiveDump(mode, wxString::FromUTF8(captureFolder().string()));
    dump_running = false;
}

Subject dump(const CaptureKind& kind) {
    return {.name = kind.name,
            .run =
                [&kind] {
                    capture(kind.mode);
                    return std::nullopt;
                },
            .transfers = support::joined({kind.round, kind.round}),
            .done = [&kind](const Controller&) { return capturedFrames(kind); },
            .whole = DumpRounds,
            .board = kind.board};
}

/// Every operation but the captures.
std::vector<Subject> commands() {
    return {
        subject("sendUSB", [](const Controller& board) { return board.ignoredPackets(); }),
        subject("getSettings",
                [](const Controller&) { return readSettings(BoardSettings, "V4.02b"); }),
        settingsReadInTheOlderLayout(),
        subject("getUniqueId", [](const Controller&) { return readId(); }),
        subject("sendConfig",
                [](const Controller& board) { return board.working() == FactorySettings; }),
        subject("sendConfigCmd",
                [](const Controller& board) { return board.working()[0] == 5 ? 1 : 0; }),
        subject("sendPal",
                [](const Controller& board) { return board.palette()[47] == 0x30 ? 1 : 0; }),
        brightness(),
        subject("sendLogo",
                [](const Controller& board) { return board.image().has_value() ? 1 : 0; }),
        upload(),
    };
}

}  // namespace

void setWhatTheToolHolds() {
    config = support::recordOf(FactorySettings);
    std::strcpy(versionString, VersionBefore);
    std::strcpy(UIDString, IdBefore);
}

const std::string& uploadedFile() {
    static const std::string file = [] {
        const auto path = folder() / "local.bin";
        support::writeFile(path, uploadedBytes());
        return path.string();
    }();
    return file;
}

simulator::ControllerOptions boardFor(const Subject& subject) {
    return {
        .board = subject.board, .layout = subject.layout, .settings = BoardSettings, .clock = [] {
            return simulator::Bus::instance().now();
        }};
}

std::string productFor(const Subject& subject) {
    return subject.board == simulator::Board::Xl ? "LUMADOT XL" : "LUMADOT";
}

const std::vector<Subject>& subjects() {
    static const std::vector<Subject> all = [] {
        std::vector<Subject> made = commands();
        std::ranges::transform(captureKinds(), std::back_inserter(made), dump);
        return made;
    }();
    return all;
}

}  // namespace faults
