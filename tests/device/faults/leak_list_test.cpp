// The list of what the device link keeps on purpose, and that it keeps nothing else.

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <memory>

#include "device/interfaceUSB.h"
#include "tests/device/faults/heap_watch.h"
#include "tests/device/faults/trial.h"
#include "tests/support/capture_rounds.h"

namespace {

using faults::expectedOf;
using faults::Failure;
using faults::failuresOf;
using faults::Kept;
using faults::Operation;
using faults::operations;
using faults::Result;
using faults::Trial;

/// What an operation keeps on purpose when it ends so. Everything that is not here keeps nothing;
/// the device lists stand in the results themselves.
struct LeakRow {
    const char* operation;
    const Result& result;
    Kept kept;
};

const LeakRow LeakRows[] = {
    // The frame that nobody took.
    {"sendConfigCmd", faults::NotListed, {{2052}}},
    {"sendConfigCmd", faults::NotFound, {{2052}}},
    {"sendConfigCmd", faults::LeftOpen, {{2052}}},
    {"sendConfigCmd", faults::NotClaimed, {{2052}}},
    // Request and reply.
    {"getSettings", faults::SettingsNotRead, {{64, 2052}}},
    {"getSettingsOlder", faults::SettingsNotRead, {{64, 2052}}},
    // Acknowledgement, file and frame; and the file itself stays open.
    {"uploadFile", faults::OpenRefused, {{64, 1100, 2052}, 1}},
    {"uploadFile", faults::TransferRefused, {{64, 1100, 2052}, 1}},
    {"uploadFile", faults::CloseRefused, {{64, 1100, 2052}, 1}},
};

Kept listed(const Operation& operation, const Result& result) {
    const auto* const row = std::ranges::find_if(LeakRows, [&](const LeakRow& each) {
        return each.operation == operation.name && &each.result == &result;
    });
    return row == std::end(LeakRows) ? Kept{} : row->kept;
}

/// What the operation's run keeps, and the device lists that it leaves.
struct Remains {
    Kept kept;
    int deviceLists = 0;
};

Remains remainsOf(const Operation& operation, const Failure* failure, const Result& result) {
    Trial trial(operation);
    trial.setLogging(false);
    trial.announce(result);
    if (failure != nullptr) {
        trial.inject(*failure);
    }
    Remains remains;
    remains.kept = faults::keptBy([&] {
        trial.go();
        remains.deviceLists = trial.deviceLists();
        trial.takeDown();
    });
    return remains;
}

class LeakList : public testing::TestWithParam<Operation> {
protected:
    LeakList() {
        remainsOf(GetParam(), nullptr, undisturbed(GetParam()).result);
    }  // What is taken once for all.
};

TEST_P(LeakList, HasNothingForAnUndisturbedRun) {
    const Remains remains = remainsOf(GetParam(), nullptr, undisturbed(GetParam()).result);
    EXPECT_EQ(remains.kept, Kept{});
    EXPECT_EQ(remains.deviceLists, 0);
}

TEST_P(LeakList, HasWhatEveryFailureOfEveryCallKeepsAndNothingElse) {
    for (const Failure& failure : failuresOf(usualCalls(GetParam()))) {
        SCOPED_TRACE(failure.name);
        const Result& result = expectedOf(GetParam(), failure).result;
        const Remains remains = remainsOf(GetParam(), &failure, result);
        EXPECT_EQ(remains.kept, listed(GetParam(), result));
        EXPECT_EQ(remains.deviceLists, result.state.deviceLists);
    }
}

INSTANTIATE_TEST_SUITE_P(Every, LeakList, testing::ValuesIn(operations()),
                         [](const auto& test) { return test.param.name; });

class DeliberateLeak : public support::DeviceLink {};

TEST_F(DeliberateLeak, IsNotMadeByACaptureThatOtherOperationsInterrupt) {
    const auto capture = [this] {
        dialogs.expectMessage("File Error", "Message");
        bus.setLogging(false);
        const auto controller = bus.plugController();
        support::CaptureRounds rounds;
        rounds.after(1, [] { usb.sendConfigCmd(2, 5); });
        rounds.after(2, [] { usb.uploadFile("/missing", "a"); });
        rounds.stopAfter(4);
        dump_running = true;
        usb.receiveDump(1, "/missing");
        bus.reset();  // The controller goes, with what it remembers.
    };
    capture();  // Takes what is taken once for all.
    EXPECT_EQ(faults::keptBy(capture), Kept{});
}

#ifdef __SANITIZE_ADDRESS__
/// What this program, run again for one test, says about leaks when none is suppressed.
std::string leakReport(const std::string& filter) {
    const std::string self = std::filesystem::read_symlink("/proc/self/exe");
    const std::string command =
        "LSAN_OPTIONS=exitcode=0 '" + self + "' --gtest_filter='" + filter + "' 2>&1";
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> output(popen(command.c_str(), "r"),
                                                                 pclose);
    std::string report;
    std::array<char, 4096> part{};
    while (std::fgets(part.data(), part.size(), output.get()) != nullptr) {
        report += part.data();
    }
    return report;
}

struct Reported {
    const char* test;
    const char* function;
};

class LeakSanitizer : public testing::TestWithParam<Reported> {};

TEST_P(LeakSanitizer, ReportsTheDeliberateLeakWhereItIsNotListed) {
    EXPECT_THAT(leakReport(GetParam().test), testing::HasSubstr(GetParam().function));
}

INSTANTIATE_TEST_SUITE_P(
    Without, LeakSanitizer,
    testing::Values(
        Reported{"*LeakList.HasWhat*/sendUSB", "in libusb_get_device_list"},
        Reported{"*LeakList.HasWhat*/getSettings", "in USBClass::getSettings"},
        Reported{"*LeakList.HasWhat*/sendConfigCmd", "in USBClass::sendConfigCmd"},
        Reported{"*LeakList.HasWhat*/uploadFile", "in USBClass::uploadFile"},
        Reported{"*WindowLeaks.*/LoadSettingsOf22*", "in MainFrame::OnLoad_configMenuSelected"},
        Reported{"*WindowLeaks.*/SavePaletteThat*", "in MainFrame::OnSave_paletteMenuSelected"}));
#endif

}  // namespace
