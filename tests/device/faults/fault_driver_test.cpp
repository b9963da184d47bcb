// Every call that an operation makes to the USB library fails once, in every way that the library
// documents, and everything that can be seen of it is compared with the tables of results.cpp.

#include <functional>
#include <iostream>
#include <memory>
#include <set>
#include <tuple>

#include "device/interfaceUSB.h"
#include "tests/device/faults/trial.h"

namespace {

using faults::Expected;
using faults::expectedOf;
using faults::Failure;
using faults::failuresOf;
using faults::Handle;
using faults::InterruptedCapture;
using faults::Kind;
using faults::Operation;
using faults::operations;
using faults::Result;
using faults::State;
using faults::Trial;
using faults::undisturbed;
using faults::usualCalls;
using support::joined;
using support::Lines;

/// Tells how many runs there were.
class Count : public testing::Environment {
    void TearDown() override {
        std::cout << "fault driver: " << Trial::count() << " runs\n";
        testing::Test::RecordProperty("runs", Trial::count());
    }
};
const auto* const Counted = testing::AddGlobalTestEnvironment(new Count);

constexpr auto OperationName = [](const auto& test) { return test.param.name; };

/// Counts the runs of each test.
class FaultDriver : public testing::TestWithParam<Operation> {
protected:
    void TearDown() override { RecordProperty("runs", Trial::count() - before_); }

private:
    const int before_ = Trial::count();
};

TEST_P(FaultDriver, RunsUndisturbed) {
    Trial trial(GetParam());
    trial.expect(undisturbed(GetParam()));
}

TEST_P(FaultDriver, EveryFailureOfEveryCallEndsAsDocumented) {
    for (const Failure& failure : failuresOf(usualCalls(GetParam()))) {
        SCOPED_TRACE(failure.name);
        Trial trial(GetParam());
        trial.inject(failure);
        trial.expect(expectedOf(GetParam(), failure));
    }
}

/// The descriptor of the device that was looked at last stays, and the enumeration goes by it.
TEST_P(FaultDriver, AnUnreadableDescriptorIsTakenForTheOneBefore) {
    for (const int error : {LIBUSB_ERROR_IO, LIBUSB_ERROR_NO_DEVICE, LIBUSB_ERROR_OTHER}) {
        Trial trial(GetParam());
        trial.expect(undisturbed(GetParam()));
        if (GetParam().keepsOpen) {
            usb.release();
        }
        trial.goOnWith(GetParam());
        trial.inject(
            {.name = "", .call = 3, .kind = Kind::Error, .fault = {.nth = 3, .result = error}});
        trial.expect(undisturbed(GetParam()));
    }
}

INSTANTIATE_TEST_SUITE_P(Every, FaultDriver, testing::ValuesIn(operations()), OperationName);

/// What happens to the bus between two operations.
enum class Between { Nothing, Unplugged, Replaced };

/// How the second operation ends, by the handle that the first one left.
struct PairRow {
    Handle left;
    Between between;
    bool found;
    int device;   ///< when found
    Lines calls;  ///< when not
    State state;
};

const Lines EmptyBusWithAnOpenHandle = {"libusb_init",
                                        "libusb_get_device_list",
                                        "libusb_get_string_descriptor_ascii index 2 length 256 #0",
                                        "libusb_free_device_list",
                                        "libusb_claim_interface 0 #0",
                                        "libusb_close #0"};

const std::vector<PairRow>& pairRows() {
    const Lines busy = joined({support::setupLines(), {"libusb_close #0"}});
    using enum Handle;
    using enum Between;
    // clang-format off
    static const std::vector<PairRow> rows = {
        // left     between    found  device  calls                     state: handle  open claimed lists
        {Cleared,   Nothing,   true,  0,      {},                       {Cleared, 0,   0,      0}},
        {Cleared,   Unplugged, false, -1,     support::emptyBusLines(), {Cleared, 0,   0,      1}},
        {Cleared,   Replaced,  true,  1,      {},                       {Cleared, 0,   0,      0}},
        // The only calls with a handle that is not open, and they are meant.
        {Stale,     Unplugged, false, -1,     faults::staleSetupLines(), {Stale,  0,   0,      0}},
        {Stale,     Nothing,   true,  0,      {},                       {Cleared, 0,   0,      0}},
        {Stale,     Replaced,  true,  1,      {},                       {Cleared, 0,   0,      0}},
        // The interface is held by the handle that nobody released, and lost now.
        {Open,      Nothing,   false, -1,     busy,                     {Stale,   1,   1,      0}},
        {Open,      Unplugged, false, -1,     EmptyBusWithAnOpenHandle, {Stale,   0,   0,      0}},
        {Open,      Replaced,  true,  1,      {},                       {Cleared, 1,   1,      0}},
    };
    // clang-format on
    return rows;
}

const char* nameOf(Between between) {
    constexpr const char* Names[] = {"", ", unplugged", ", replaced"};
    return Names[static_cast<int>(between)];
}

/// What must come of the second operation; `result` is where that is kept.
Expected expectedAfter(const PairRow& row, const Operation& second, Result& result) {
    const Expected usual = undisturbed(second);
    result = {.name = "second",
              .found = row.found,
              .message = row.found ? nullptr : "",
              .caption = "Message",
              .state = row.state};
    if (!row.found) {
        return {result, row.calls, 0};
    }
    const State& own = usual.result.state;
    result.state.handle = own.handle;
    result.state.openHandles += own.openHandles;
    result.state.claimedInterfaces += own.claimedInterfaces;
    return {result, support::aboutDevice(row.device, usual.calls), usual.done};
}

/// The second operation on what the trial of the first one left.
void expectNext(Trial& trial, const Operation& second, const PairRow& row) {
    trial.goOnWith(second);
    if (row.between != Between::Nothing) {
        trial.unplug();
    }
    if (row.between == Between::Replaced) {
        trial.plugAnother();
    }
    Result result;
    trial.expect(expectedAfter(row, second, result));
}

/// One failure for each way in which the operation can end, and each amount of work done, with the
/// controller still there and without.
std::vector<Failure> oneOfEachResult(const Operation& operation) {
    std::set<std::tuple<std::string, int, bool>> seen;
    std::vector<Failure> kept;
    for (const Failure& failure : failuresOf(usualCalls(operation))) {
        const Expected expected = expectedOf(operation, failure);
        const bool gone = failure.kind == Kind::Unplugged;
        if (seen.emplace(expected.result.name, expected.done, gone).second) {
            kept.push_back(failure);
        }
    }
    return kept;
}

/// A controller that stays must be one that the second operation works with.
bool fits(const PairRow& row, const Operation& first, const Operation& second) {
    const bool any = row.between != Between::Nothing || !second.name.starts_with("receiveDump");
    return any || first.board == second.board;
}

/// Every second operation after each thing that can happen to the bus: `begin` makes the trial.
void expectEveryNext(const Operation& first, const Result& result, bool gone,
                     const std::function<std::unique_ptr<Trial>()>& begin) {
    for (const PairRow& row : pairRows()) {
        if (row.left != result.state.handle || (gone && row.between == Between::Nothing)) {
            continue;
        }
        for (const Operation& second : operations()) {
            if (fits(row, first, second)) {
                SCOPED_TRACE("then " + second.name + nameOf(row.between));
                expectNext(*begin(), second, row);
            }
        }
    }
}

using FaultPairs = FaultDriver;

TEST_P(FaultPairs, EveryOperationAfterEveryResultOfThisOneEndsAsDocumented) {
    for (const Failure& failure : oneOfEachResult(GetParam())) {
        SCOPED_TRACE(failure.name);
        const Expected expected = expectedOf(GetParam(), failure);
        expectEveryNext(GetParam(), expected.result, failure.kind == Kind::Unplugged, [&] {
            auto trial = std::make_unique<Trial>(GetParam());
            trial->inject(failure);
            trial->expect(expected);
            return trial;
        });
    }
}

INSTANTIATE_TEST_SUITE_P(After, FaultPairs, testing::ValuesIn(operations()), OperationName);

// A capture into which other operations come.

/// One failure of each kind of each call; a device can only leave with a call that is about one.
std::vector<Failure> oneOfEachKind(const Lines& calls) {
    constexpr int FirstCallAboutADevice = 3;
    std::set<std::tuple<int, Kind>> seen;
    std::vector<Failure> kept;
    for (const Failure& failure : failuresOf(calls)) {
        const std::string& call = calls[static_cast<std::size_t>(failure.call) - 1];
        const bool possible = failure.kind != Kind::Unplugged ||
                              failure.call < FirstCallAboutADevice ||
                              call.find('#') != std::string::npos;
        if (possible && seen.emplace(failure.call, failure.kind).second) {
            kept.push_back(failure);
        }
    }
    return kept;
}

void expectRun(const InterruptedCapture& capture, const Failure* failure) {
    Trial trial(faults::operationNamed("receiveDump"));
    if (failure != nullptr) {
        trial.inject(*failure);
    }
    trial.expect(capture, expectedOf(capture, failure));
}

/// The capture as it is without a failure, and with each.
void expectEveryRun(const InterruptedCapture& capture) {
    expectRun(capture, nullptr);
    for (const Failure& failure : oneOfEachKind(expectedOf(capture, nullptr).calls)) {
        SCOPED_TRACE(failure.name);
        expectRun(capture, &failure);
    }
}

/// The number of enumerations with this many attempts to connect again.
int enumerationsWith(int attempts, const std::vector<const Operation*>& operations) {
    return 1 + static_cast<int>(operations.size()) + attempts;
}

std::vector<Operation> commands() {
    std::vector<Operation> all = operations();
    std::erase_if(all, [](const Operation& each) { return each.name.starts_with("receiveDump"); });
    return all;
}

using InterruptedBy = FaultDriver;

TEST_P(InterruptedBy, OneOperationACaptureGoesOnWhateverFails) {
    expectEveryRun(
        {.operations = {&GetParam()}, .enumerations = enumerationsWith(3, {&GetParam()})});
}

TEST_P(InterruptedBy, OneOperationACaptureCanBeEndedAfterItsFirstAttemptToConnectAgain) {
    expectEveryRun(
        {.operations = {&GetParam()}, .enumerations = enumerationsWith(1, {&GetParam()})});
}

TEST_P(InterruptedBy, OneOperationInItsLastRoundACaptureLeavesWhatThatOneLeaves) {
    expectEveryRun({.operations = {&GetParam()}, .frames = faults::InterruptedFrame});
}

/// The second one of those that differ in what they leave.
TEST_P(InterruptedBy, TwoOperationsInOneYieldACaptureGoesOnWhateverFails) {
    for (const char* second : {"sendConfigCmd", "getSettings", "uploadFile", "uploadMissing"}) {
        SCOPED_TRACE(std::string("then ") + second);
        const std::vector<const Operation*> both = {&GetParam(), &faults::operationNamed(second)};
        expectEveryRun({.operations = both, .enumerations = enumerationsWith(3, both)});
    }
}

INSTANTIATE_TEST_SUITE_P(A, InterruptedBy, testing::ValuesIn(commands()), OperationName);

}  // namespace
