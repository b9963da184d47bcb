#include "tests/device/faults/operations.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>

#include "device/interfaceUSB.h"
#include "device/logo_frame.h"
#include "tests/device/faults/captures.h"
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

std::array<std::uint8_t, 5> someBuffer = {0x02, 0xC3, 0xE8, 0x04, 0xFF};

std::array<std::uint8_t, 48> someColours = {
    0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0x08, 0x09, 0x0A, 0x0B, 0x0C, 0x0D, 0x0E, 0x0F, 0x10,
    0x11, 0x12, 0x13, 0x14, 0x15, 0x16, 0x17, 0x18, 0x19, 0x1A, 0x1B, 0x1C, 0x1D, 0x1E, 0x1F, 0x20,
    0x21, 0x22, 0x23, 0x24, 0x25, 0x26, 0x27, 0x28, 0x29, 0x2A, 0x2B, 0x2C, 0x2D, 0x2E, 0x2F, 0x30};

constexpr const char* DestinationName = "a.bin";
Packet uploadedBytes() { return support::pattern(1100); }

/// An operation without a result.
template <class Run>
std::function<std::optional<bool>()> silent(Run run) {
    return [run] {
        run();
        return std::nullopt;
    };
}

/// Whether the tool holds what was read (1) or still what it had (0).
int isRead(const Held& read) {
    const Held now = whatTheToolHolds();
    return now == read ? 1 : now == heldBefore() ? 0 : -2;
}

/// The settings as a board of the newer layout sends them.
Operation settingsRead() {
    return {
        .name = "getSettings",
        .run = silent([] { config = usb.getSettings(config, versionString); }),
        .transfers = {"out 0x01 2052 1000ms #0: 81 C3 E7 FF 10 00*2047", "in 0x81 63 1000ms #0"},
        .done = [](const Controller&) {
            return isRead({BoardSettings, "V4.02b", heldBefore().id});
        }};
}

Operation settingsReadInTheOlderLayout() {
    Operation made = settingsRead();
    made.name = "getSettingsOlder";
    made.done = [](const Controller&) {
        return isRead({OlderSettings, heldBefore().version, heldBefore().id});
    };
    made.layout = simulator::SettingsLayout::Older;
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

Operation upload() {
    return {
        .name = "uploadFile",
        .run = silent([] { usb.uploadFile(uploadedFile().c_str(), DestinationName); }),
        .transfers = support::joined(
            {uploadFrame({0x81, 0xC3, 0xE7, 0xFF, 0x0A, 0x00, 0x61, 0x2E, 0x62, 0x69, 0x6E}, 0, 0),
             uploadFrame({0x81, 0xC3, 0xE7, 0xFF, 0x0A, 0x01, 0x02, 0x00}, 0, 512),
             uploadFrame({0x81, 0xC3, 0xE7, 0xFF, 0x0A, 0x01, 0x02, 0x00}, 512, 1024),
             uploadFrame({0x81, 0xC3, 0xE7, 0xFF, 0x0A, 0x01, 0x00, 0x4C}, 1024, 1100),
             uploadFrame({0x81, 0xC3, 0xE7, 0xFF, 0x0A, 0xFF}, 0, 0)}),
        .done =
            [](const Controller& board) {
                const auto found = board.files().find(DestinationName);
                return found != board.files().end() && found->second == uploadedBytes() ? 1 : 0;
            },
        .message = "File Upload Successful !",
    };
}

Operation uploadOfAMissingFile() {
    return {.name = "uploadMissing",
            .run = silent([] { usb.uploadFile((uploadedFile() + ".missing").c_str(), "a.bin"); }),
            .transfers = {},
            .done = [](const Controller& board) { return static_cast<int>(board.files().size()); },
            .whole = 0,
            .message = "File Error",
            .keepsOpen = true};
}

/// Every operation but the captures.
std::vector<Operation> commands() {
    return {
        {.name = "sendUSB",
         .run = [] { return usb.sendUSB(someBuffer.data(), 5); },
         .transfers = {"out 0x01 5 1000ms #0: 02 C3 E8 04 FF"},
         .done = [](const Controller& board) { return board.ignoredPackets(); }},
        settingsRead(),
        settingsReadInTheOlderLayout(),
        {.name = "getUniqueId",
         .run = silent([] { usb.getUniqueId(UIDString); }),
         .transfers = {"out 0x01 2052 1000ms #0: 81 C3 E7 FF 11 00*2047",
                       "in 0x81 63 1000ms counted #0"},
         .done =
             [](const Controller&) {
                 return isRead({heldBefore().record, heldBefore().version, BoardId});
             }},
        {.name = "sendConfig",
         .run = silent([] { usb.sendConfig(config); }),
         .transfers = {"out 0x01 2052 1000ms #0: 81 C3 E7 FF 20 00 00 0F 0A 0F 0C 0F 00 0F 0F "
                       "00*10 01 01 1E 00*2024"},
         .done = [](const Controller& board) { return board.working() == FactorySettings; }},
        {.name = "sendConfigCmd",
         .run = [] { return usb.sendConfigCmd(0x02, 0x05); },
         .transfers = {"out 0x01 2052 1000ms #0: 81 C3 E7 FF 02 05 00*2046"},
         .done = [](const Controller& board) { return board.working()[0] == 5; }},
        {.name = "sendPal",
         .run = silent([] { usb.sendPal(someColours.data()); }),
         .transfers = {"out 0x01 2052 1000ms #0: 81 C3 E7 FF 04 00 01 "
                       "01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 "
                       "11 12 13 14 15 16 17 18 19 1A 1B 1C 1D 1E 1F 20 "
                       "21 22 23 24 25 26 27 28 29 2A 2B 2C 2D 2E 2F 30 00*1997"},
         .done = [](const Controller& board) { return board.palette()[47] == 0x30; }},
        {.name = "setBrightness",
         .run = silent([] { usb.setBrightness(30); }),
         .transfers = {"out 0x01 2052 1000ms #0: 81 C3 E7 FF 08 00*12 1E 00*2034"},
         .done = [](const Controller& board) { return board.working()[22] == 30; },
         .pause = 50},
        {.name = "sendLogo",
         .run = [] { return usb.sendLogo(); },
         // The image itself is looked at where it is drawn.
         .transfers = {"out 0x01 2052 1000ms #0: " + support::byteText(logoFrame())},
         .done = [](const Controller& board) { return board.image().has_value(); }},
        upload(),
        uploadOfAMissingFile(),
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

simulator::ControllerOptions boardFor(const Operation& operation) {
    return {.board = operation.board,
            .layout = operation.layout,
            .settings = BoardSettings,
            .clock = [] { return simulator::Bus::instance().now(); }};
}

std::string productFor(const Operation& operation) {
    return operation.board == simulator::Board::Xl ? "LUMADOT XL" : "LUMADOT";
}

const std::vector<Operation>& operations() {
    static const std::vector<Operation> all = [] {
        std::vector<Operation> made = commands();
        std::ranges::copy(captures(), std::back_inserter(made));
        return made;
    }();
    return all;
}

const Operation& operationNamed(const std::string& name) {
    return *std::ranges::find(operations(), name, &Operation::name);
}

}  // namespace faults
