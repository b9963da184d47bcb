#include "tests/device/faults/results.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>

#include "tests/support/device_link.h"

namespace faults {

namespace {

using support::Lines;

constexpr const char* Unsupported = "Firmware version not supported ! Please upgrade !";

}  // namespace

// clang-format off
//                              found  message                caption    state: handle    open claimed lists
const Result AsUsual =         {"AsUsual",
                                true,  nullptr,               "Message", {Handle::Cleared, 0,  0,      0}};
// The enumeration failed: there is no list.
const Result NotListed =       {"NotListed",
                                false, "",                    "",        {Handle::Cleared, 0,  0,      0}};
// No controller that could be opened. The list stays allocated.
const Result NotFound =        {"NotFound",
                                false, "",                    "",        {Handle::Cleared, 0,  0,      1}};
// The name was read as nothing: no controller for the caller, who does not release it.
const Result LeftOpen =        {"LeftOpen",
                                false, "",                    "",        {Handle::Open,    1,  1,      0}};
// The controller was closed and the handle not cleared.
const Result NotClaimed =      {"NotClaimed",
                                false, "",                    "",        {Handle::Stale,   0,  0,      0}};
const Result SettingsNotRead = {"SettingsNotRead",
                                true,  Unsupported,           "Error",   {Handle::Stale,   0,  0,      0}};
const Result OpenRefused =     {"OpenRefused",
                                true,  "File Open Error",     "Message", {Handle::Cleared, 0,  0,      0}};
const Result TransferRefused = {"TransferRefused",
                                true,  "File Transfer Error", "Message", {Handle::Cleared, 0,  0,      0}};
const Result CloseRefused =    {"CloseRefused",
                                true,  "File Close Error",    "Message", {Handle::Cleared, 0,  0,      0}};
// The file to upload could not be opened: nothing is released, on purpose.
const Result FileNotOpened =   {"FileNotOpened",
                                true,  "File Error",          "Message", {Handle::Open,    1,  1,      0}};
// clang-format on

namespace {

// The calls of `setup`, by number; the sixth frees the list, and cannot fail.
constexpr int Init = 1, List = 2, Descriptor = 3, Open = 4, Name = 5, Claim = 7;

/// What a failure in `setup` leads to, with every operation alike.
struct SetupRow {
    int call;
    Kind kind;
    const Result& result;
    int callsMade;  ///< when it ends there: of `setup`, without the closing
};

// clang-format off
const SetupRow SetupRows[] = {
    {Init,       Kind::Error,     AsUsual,    0},
    {Init,       Kind::Unplugged, NotFound,   List},
    {List,       Kind::Error,     NotListed,  List},
    {List,       Kind::Unplugged, NotFound,   List},
    {Descriptor, Kind::Error,     NotFound,   Descriptor},
    {Descriptor, Kind::Unplugged, NotFound,   Open},
    {Open,       Kind::Error,     NotFound,   Open},
    {Open,       Kind::Unplugged, NotFound,   Open},
    {Name,       Kind::Error,     AsUsual,    0},
    {Name,       Kind::Reply,     AsUsual,    0},
    {Name,       Kind::NoName,    LeftOpen,   Claim},
    {Name,       Kind::Unplugged, NotClaimed, Claim},
    {Claim,      Kind::Error,     NotClaimed, Claim},
    {Claim,      Kind::Unplugged, NotClaimed, Claim},
};

/// What a failure of a transfer leads to, by the transfer's number in the operation.
struct TransferRow {
    const char* operation;
    int first, last;
    const Result& result;
    int transfersMade;
    int done;           ///< after an error
    int doneUnplugged;
};

const TransferRow TransferRows[] = {
    // A write that fails is not noticed.
    {"sendUSB",          1,  1,  AsUsual,         1,  0, 0},
    {"sendConfig",       1,  1,  AsUsual,         1,  0, 0},
    {"sendConfigCmd",    1,  1,  AsUsual,         1,  0, 0},
    {"sendPal",          1,  1,  AsUsual,         1,  0, 0},
    {"setBrightness",    1,  1,  AsUsual,         1,  0, 0},
    {"sendLogo",         1,  1,  AsUsual,         1,  0, 0},
    // A request that does not arrive brings no reply.
    {"getSettings",      1,  2,  SettingsNotRead, 2,  0, 0},
    {"getSettingsOlder", 1,  2,  SettingsNotRead, 2,  0, 0},
    {"getUniqueId",      1,  2,  AsUsual,         2,  0, 0},
    // Frames and their acknowledgements: open, three blocks, close.
    {"uploadFile",       1,  2,  OpenRefused,     2,  0, 0},
    {"uploadFile",       3,  4,  TransferRefused, 4,  0, 0},
    {"uploadFile",       5,  6,  TransferRefused, 6,  0, 0},
    {"uploadFile",       7,  8,  TransferRefused, 8,  0, 0},
    {"uploadFile",       9,  9,  CloseRefused,    10, 0, 0},
    {"uploadFile",       10, 10, CloseRefused,    10, 1, 1},  // The controller has the file already.
    // A capture goes on without the frame.
    {"receiveDump",      1,  2,  AsUsual,         4,  1, 0},
    {"receiveDump",      3,  4,  AsUsual,         4,  1, 1},
    {"receiveDump0",     1,  2,  AsUsual,         4,  1, 0},
    {"receiveDump0",     3,  4,  AsUsual,         4,  1, 1},
    {"receiveDump6",     1,  2,  AsUsual,         4,  1, 0},
    {"receiveDump6",     3,  4,  AsUsual,         4,  1, 1},
    {"receiveDumpXl",    1,  2,  AsUsual,         4,  1, 0},
    {"receiveDumpXl",    3,  4,  AsUsual,         4,  1, 1},
};
// clang-format on

const SetupRow& setupRow(int call, Kind kind) {
    const auto* const found = std::ranges::find_if(
        SetupRows, [&](const SetupRow& row) { return row.call == call && row.kind == kind; });
    EXPECT_NE(found, std::end(SetupRows)) << "no row for call " << call;
    return *found;
}

const TransferRow& transferRow(const std::string& operation, int transfer) {
    const auto* const found = std::ranges::find_if(TransferRows, [&](const TransferRow& row) {
        return row.operation == operation && row.first <= transfer && transfer <= row.last;
    });
    EXPECT_NE(found, std::end(TransferRows)) << "no row for " << operation << " " << transfer;
    return *found;
}

Lines firstOf(const Lines& lines, int count) { return {lines.begin(), lines.begin() + count}; }

/// What was not sent: the line without its bytes.
void takeBytesAway(std::string& line) {
    if (const auto colon = line.find(':'); colon != std::string::npos) {
        line.erase(colon);
    }
}

/// The lines as they are when the failure keeps bytes from being sent.
Lines suffering(const Failure& failure, Lines lines) {
    for (std::size_t i = static_cast<std::size_t>(failure.call) - 1; i < lines.size(); ++i) {
        takeBytesAway(lines[i]);
        if (failure.kind != Kind::Unplugged) {
            break;
        }
    }
    return lines;
}

/// Whether less than "LUMADOT XL" arrives.
bool hidesTheName(const Failure& failure) {
    constexpr int XlNameLength = 10;
    return failure.kind == Kind::Error ||
           (failure.kind == Kind::Reply && *failure.fault.result < XlNameLength);
}

Expected ofSetup(const Operation& operation, const Failure& failure) {
    const ExpectedSetup setup = expectedSetup(failure);
    if (operation.board == simulator::Board::Xl && failure.call == Name && hidesTheName(failure)) {
        // It passes for the standard board, and its frames are longer than asked for.
        const Operation& standard = operationNamed("receiveDump");
        return {setup.result, usualCalls(standard), 0, {}, &standard};
    }
    if (setup.result.found) {
        return undisturbed(operation);
    }
    return {setup.result, setup.calls, 0};
}

Expected ofTransfer(const Operation& operation, const Failure& failure) {
    const TransferRow& row = transferRow(operation.name, failure.call - SetupCalls);
    const Lines calls = support::connection(firstOf(operation.transfers, row.transfersMade));
    const int done = failure.kind == Kind::Unplugged ? row.doneUnplugged : row.done;
    return {row.result, suffering(failure, calls), done};
}

/// The record and the version in a reply of this many letters V.
Held settingsIn(std::size_t length) {
    constexpr std::size_t Layout = 4, Version = 4, Record = 10;
    constexpr std::size_t OlderMode = 0, OlderBrightness = 1, OlderEnhancer = 2, OlderPalette = 3;
    const auto at = [&](std::size_t position) {
        return static_cast<std::uint8_t>(position < length ? 'V' : 0);
    };
    Held held = heldBefore();
    if (length <= Layout) {
        held.record[0] = at(OlderMode);
        held.record[1] = at(OlderPalette);
        held.record[21] = at(OlderEnhancer);
        held.record[22] = at(OlderBrightness);
        return held;
    }
    held.version = std::string(std::min<std::size_t>(length - Version, 6), 'V');
    for (std::size_t i = 0; i < held.record.size(); ++i) {
        held.record[i] = at(Record + i);
    }
    return held;
}

/// Any acknowledgement but the refusal accepts, and any reply to a capture is a frame. What is read
/// depends on the bytes, and the id on the count as well.
Expected ofReply(const Operation& operation, const Failure& failure) {
    constexpr int ReplyLength = 63;
    constexpr int IdRead = SetupCalls + 2;
    const auto& reply = failure.fault.reply;
    const auto& count = failure.fault.transferred;
    const bool id = operation.name == "getUniqueId";
    Expected expected = undisturbed(operation);
    if (reply && operation.name.starts_with("get")) {
        const auto length = std::min<std::size_t>(reply->size(), ReplyLength);
        expected.held = id ? heldBefore() : settingsIn(length);
        if (id) {
            expected.held->id = std::string(length, 'V');
        }
    } else if (count && id && failure.call == IdRead) {
        expected.held = heldBefore();
        expected.held->id = BoardId.substr(0, static_cast<std::size_t>(std::max(*count, 0)));
    }
    return expected;
}

}  // namespace

support::Lines usualCalls(const Operation& operation) {
    return operation.keepsOpen ? support::setupLines() : support::connection(operation.transfers);
}

support::Lines staleSetupLines() {
    return {"libusb_init",
            "libusb_get_device_list",
            "libusb_get_string_descriptor_ascii index 2 length 256 stale",
            "libusb_free_device_list",
            "libusb_claim_interface 0 stale",
            "libusb_close stale"};
}

ExpectedSetup expectedSetup(const Failure& failure) {
    const SetupRow& row = setupRow(failure.call, failure.kind);
    if (row.result.found) {
        return {row.result, support::setupLines()};
    }
    Lines calls = firstOf(support::setupLines(), row.callsMade);
    if (row.result.state.handle == Handle::Stale) {
        calls.emplace_back("libusb_close #0");
    }
    return {row.result, calls};
}

Expected undisturbed(const Operation& operation) {
    return {operation.keepsOpen ? FileNotOpened : AsUsual, usualCalls(operation), operation.whole};
}

Expected expectedOf(const Operation& operation, const Failure& failure) {
    const auto transfers = static_cast<int>(operation.transfers.size());
    if (failure.call <= SetupCalls) {
        return ofSetup(operation, failure);
    }
    if (failure.call > SetupCalls + transfers) {
        return undisturbed(operation);  // No result of a release matters.
    }
    return failure.kind == Kind::Reply ? ofReply(operation, failure)
                                       : ofTransfer(operation, failure);
}

}  // namespace faults
