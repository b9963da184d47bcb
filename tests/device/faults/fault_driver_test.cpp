// Every call that an operation makes to the USB library fails once, in every way that the library
// documents, and everything that can be seen of it is compared with the tables of outcomes.cpp.

#include <algorithm>
#include <functional>
#include <iostream>
#include <memory>
#include <set>
#include <tuple>

#include "device/interfaceUSB.h"
#include "tests/device/faults/trial.h"

namespace {

using faults::AsUsual;
using faults::Failure;
using faults::failuresOf;
using faults::FileNotOpened;
using faults::FrameLengths;
using faults::Handle;
using faults::Kind;
using faults::Outcome;
using faults::outcomeOf;
using faults::Subject;
using faults::subjects;
using faults::Trial;
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
const auto* const count = testing::AddGlobalTestEnvironment(new Count);

constexpr auto SubjectName = [](const auto& test) { return test.param.name; };

/// Counts the runs of each test.
class FaultDriver : public testing::TestWithParam<Subject> {
protected:
    void TearDown() override { RecordProperty("runs", Trial::count() - before_); }

private:
    const int before_ = Trial::count();
};

TEST_P(FaultDriver, RunsUndisturbed) {
    Trial trial(GetParam());
    trial.expect({AsUsual, usualCalls(GetParam()), GetParam().whole});
}

TEST_P(FaultDriver, EveryFailureOfEveryCallEndsAsDocumented) {
    for (const Failure& failure : failuresOf(GetParam(), FrameLengths::Every)) {
        SCOPED_TRACE(failure.name);
        Trial trial(GetParam());
        trial.inject(failure);
        trial.expect(outcomeOf(GetParam(), failure));
    }
}

/// The descriptor of the device that was looked at last stays, and the search goes by it.
TEST_P(FaultDriver, AnUnreadableDescriptorIsTakenForTheOneBefore) {
    for (const int error : {LIBUSB_ERROR_IO, LIBUSB_ERROR_NO_DEVICE, LIBUSB_ERROR_OTHER}) {
        Trial trial(GetParam());
        trial.expect({AsUsual, usualCalls(GetParam()), GetParam().whole});
        trial.goOnWith(GetParam());
        trial.inject(
            {.name = "", .call = 3, .kind = Kind::Error, .fault = {.nth = 3, .result = error}});
        trial.expect({AsUsual, usualCalls(GetParam()), GetParam().whole});
    }
}

INSTANTIATE_TEST_SUITE_P(Every, FaultDriver, testing::ValuesIn(subjects()), SubjectName);

/// What happens to the bus between two operations.
enum class Between { Nothing, Unplugged, Replaced };

/// How the second operation ends, by the handle that the first one left.
struct PairRow {
    Handle left;
    Between between;
    bool found;
    int device;   ///< when found
    Lines calls;  ///< when not
    Handle handle;
    int openHandles;
    int claimedInterfaces;
    int deviceLists;
};

const Lines EmptyBusWithAStaleHandle = {
    "libusb_init",
    "libusb_get_device_list",
    "libusb_get_string_descriptor_ascii index 2 length 256 stale",
    "libusb_free_device_list",
    "libusb_claim_interface 0 stale",
    "libusb_close stale"};
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
        // left     between    found  device  calls                     handle   open claimed lists
        {Cleared,   Nothing,   true,  0,      {},                       Cleared, 0,   0,      0},
        {Cleared,   Unplugged, false, -1,     support::emptyBusLines(), Cleared, 0,   0,      1},
        {Cleared,   Replaced,  true,  1,      {},                       Cleared, 0,   0,      0},
        // The only calls with a handle that is not open, and they are meant.
        {Stale,     Unplugged, false, -1,     EmptyBusWithAStaleHandle, Stale,   0,   0,      0},
        {Stale,     Nothing,   true,  0,      {},                       Cleared, 0,   0,      0},
        {Stale,     Replaced,  true,  1,      {},                       Cleared, 0,   0,      0},
        // The interface is held by the handle that nobody released, and lost now.
        {Open,      Nothing,   false, -1,     busy,                     Stale,   1,   1,      0},
        {Open,      Unplugged, false, -1,     EmptyBusWithAnOpenHandle, Stale,   0,   0,      0},
        {Open,      Replaced,  true,  1,      {},                       Cleared, 1,   1,      0},
    };
    // clang-format on
    return rows;
}

const char* nameOf(Between between) {
    constexpr const char* Names[] = {"", ", unplugged", ", replaced"};
    return Names[static_cast<int>(between)];
}

/// What must come of the second operation.
Outcome outcomeAfter(const PairRow& row, const Subject& second, faults::Ending& ending) {
    ending = {.name = "pair",
              .found = row.found,
              .message = row.found ? nullptr : "",
              .caption = "Message",
              .handle = row.handle,
              .openHandles = row.openHandles,
              .claimedInterfaces = row.claimedInterfaces,
              .deviceLists = row.deviceLists};
    if (!row.found) {
        return {ending, row.calls, 0};
    }
    return {ending, support::aboutDevice(row.device, usualCalls(second)), second.whole};
}

/// The second operation on what the trial of the first one left.
void expectNext(Trial& trial, const Subject& second, const PairRow& row) {
    trial.goOnWith(second);
    if (row.between != Between::Nothing) {
        trial.unplug();
    }
    if (row.between == Between::Replaced) {
        trial.plugAnother();
    }
    faults::Ending ending;
    trial.expect(outcomeAfter(row, second, ending));
}

/// One failure of each call for each way in which the operation can end, and each amount of work
/// done, with the controller still there and without.
std::vector<Failure> oneOfEachEnding(const Subject& subject) {
    std::set<std::tuple<int, std::string, int, bool>> seen;
    std::vector<Failure> kept;
    for (const Failure& failure : failuresOf(subject)) {
        const Outcome outcome = outcomeOf(subject, failure);
        const bool gone = failure.kind == Kind::Unplugged;
        if (seen.emplace(failure.call, outcome.ending.name, outcome.done, gone).second) {
            kept.push_back(failure);
        }
    }
    return kept;
}

/// A controller that stays must be one that the second operation works with.
bool fits(const PairRow& row, const Subject& first, const Subject& second) {
    const bool any = row.between != Between::Nothing || !second.name.starts_with("receiveDump");
    return any || first.board == second.board;
}

/// Every second operation after each thing that can happen to the bus: `begin` makes the trial.
void expectEveryNext(const Subject& first, Handle left, bool gone,
                     const std::function<std::unique_ptr<Trial>()>& begin) {
    for (const PairRow& row : pairRows()) {
        if (row.left != left || (gone && row.between == Between::Nothing)) {
            continue;
        }
        for (const Subject& second : subjects()) {
            if (fits(row, first, second)) {
                SCOPED_TRACE("then " + second.name + nameOf(row.between));
                expectNext(*begin(), second, row);
            }
        }
    }
}

using FaultPairs = FaultDriver;

TEST_P(FaultPairs, EveryOperationAfterEveryEndingOfThisOneEndsAsDocumented) {
    for (const Failure& failure : oneOfEachEnding(GetParam())) {
        SCOPED_TRACE(failure.name);
        const Outcome outcome = outcomeOf(GetParam(), failure);
        expectEveryNext(GetParam(), outcome.ending.handle, failure.kind == Kind::Unplugged, [&] {
            auto trial = std::make_unique<Trial>(GetParam());
            trial->inject(failure);
            trial->expect(outcome);
            return trial;
        });
    }
}

INSTANTIATE_TEST_SUITE_P(After, FaultPairs, testing::ValuesIn(subjects()), SubjectName);

TEST(FaultPairsAfter, AnUploadWithoutItsFile) {
    Subject upload = *std::ranges::find(subjects(), "uploadFile", &Subject::name);
    upload.run = [] {
        usb.uploadFile((faults::uploadedFile() + ".missing").c_str(), "a.bin");
        return std::nullopt;
    };
    expectEveryNext(upload, FileNotOpened.handle, false, [&] {
        auto trial = std::make_unique<Trial>(upload);
        trial->expect({FileNotOpened, support::setupLines(), 0});
        return trial;
    });
}

}  // namespace
