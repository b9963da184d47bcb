#include "tests/device/faults/subjects.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "device/interfaceUSB.h"
#include "tests/device/faults/captures.h"
#include "tests/device/operations.h"
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

constexpr const char* DestinationName = "a.bin";
Packet uploadedBytes() { return support::pattern(1100); }

/// Everything that the subjects have in common with `operations()`.
Subject subject(const std::string& name, std::function<int(const Controller&)> done) {
    const auto& all = operations();
    const auto found = std::ranges::find(all, name, &Operation::name);
    return {.name = name, .run = found->run, .transfers = found->transfers, .done = done};
}

/// Whether the tool holds what was read (1) or still what it had (0).
int isRead(const Held& read) {
    const Held now = whatTheToolHolds();
    return now == read ? 1 : now == heldBefore() ? 0 : -2;
}

int readSettings(const support::RecordBytes& read, const std::string& version) {
    return isRead({read, version, heldBefore().id});
}

int readId() { return isRead({heldBefore().record, heldBefore().version, BoardId}); }

Subject settingsReadInTheOlderLayout() {
    Subject made = subject("getSettings", [](const Controller&) {
        return readSettings(OlderSettings, heldBefore().version);
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

const Held& heldBefore() {
    static const Held held = {FactorySettings, "V0.00x", "another id"};
    return held;
}

void setWhatTheToolHolds(const Held& held) {
    config = support::recordOf(held.record);
    std::strcpy(versionString, held.version.c_str());
    std::strcpy(UIDString, held.id.c_str());
}

Held whatTheToolHolds() { return {support::bytesOf(config), versionString, UIDString}; }

const std::string& uploadedFile() {
    static const std::string file = [] {
        static const support::TemporaryFolder folder;
        const auto path = folder.path() / "local.bin";
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
        std::ranges::copy(captures(), std::back_inserter(made));
        return made;
    }();
    return all;
}

}  // namespace faults
