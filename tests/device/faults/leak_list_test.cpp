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

using faults::Ending;
using faults::Failure;
using faults::Kept;
using faults::Kind;
using faults::Outcome;
using faults::outcomeOf;
using faults::Subject;
using faults::subjects;
using faults::Trial;

/// What an operation keeps on purpose when it ends so. Everything that is not here keeps nothing;
/// the device lists stand in the endings themselves.
struct LeakRow {
    const char* subject;
    const Ending& ending;
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

Kept listed(const Subject& subject, const Ending& ending) {
    const auto* const row = std::ranges::find_if(LeakRows, [&](const LeakRow& each) {
        return each.subject == subject.name && &each.ending == &ending;
    });
    return row == std::end(LeakRows) ? Kept{} : row->kept;
}

/// What the subject's run keeps, and the device lists that it leaves.
struct Remains {
    Kept kept;
    int deviceLists = 0;
};

Remains remainsOf(const Subject& subject, const Failure* failure, const Ending& ending) {
    Trial trial(subject);
    trial.setLogging(false);
    trial.announce(ending);
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

class LeakList : public testing::TestWithParam<Subject> {
protected:
    LeakList() { remainsOf(GetParam(), nullptr, faults::AsUsual); }  // What is taken once for all.
};

TEST_P(LeakList, HasNothingForAnUndisturbedRun) {
    const Remains remains = remainsOf(GetParam(), nullptr, faults::AsUsual);
    EXPECT_EQ(remains.kept, Kept{});
    EXPECT_EQ(remains.deviceLists, 0);
}

TEST_P(LeakList, HasWhatEveryFailureOfEveryCallKeepsAndNothingElse) {
    for (const Failure& failure : failuresOf(GetParam())) {
        SCOPED_TRACE(failure.name);
        const Outcome outcome = outcomeOf(GetParam(), failure);
        const Remains remains = remainsOf(GetParam(), &failure, outcome.ending);
        EXPECT_EQ(remains.kept, listed(GetParam(), outcome.ending));
        EXPECT_EQ(remains.deviceLists, outcome.ending.deviceLists);
    }
}

INSTANTIATE_TEST_SUITE_P(Every, LeakList, testing::ValuesIn(subjects()),
                         [](const auto& test) { return test.param.name; });

// The deliberate leaks, one by one.

class DeliberateLeak : public support::DeviceLink {
protected:
    /// What the action keeps when it is done for the second time.
    template <class Action>
    Kept kept(Action action) {
        bus.setLogging(false);
        action();
        return faults::keptBy(action);
    }
    /// The action keeps the controller, each time it is done, and nothing else.
    template <class Action>
    void expectKeptOpenAndClaimed(Action action) {
        EXPECT_EQ(kept([&] {
                      expectReleased();
                      action();
                      EXPECT_EQ(bus.openHandles(), 1);
                      EXPECT_EQ(bus.claimedInterfaces(), 1);
                      usb.release();
                  }),
                  Kept{});
        expectReleased();
    }
};

TEST_F(DeliberateLeak, SetupWithoutControllerKeepsTheDeviceList) {
    EXPECT_EQ(kept([] { usb.setup(); }), Kept{});
    EXPECT_EQ(bus.deviceLists(), 2);
}

TEST_F(DeliberateLeak, GetSettingsKeepsRequestAndReplyAfterAFailedRead) {
    bus.plug({});
    for (int i = 0; i < 2; ++i) {
        dialogs.expectMessage("Firmware version not supported ! Please upgrade !", "Error");
    }
    EXPECT_EQ(kept([] { usb.getSettings(config, versionString); }), (Kept{{64, 2052}}));
}

TEST_F(DeliberateLeak, SendConfigCmdKeepsItsFrameWithoutController) {
    EXPECT_EQ(kept([] { usb.sendConfigCmd(2, 5); }), (Kept{{2052}}));
}

TEST_F(DeliberateLeak, UploadOfAFileThatCannotBeOpenedKeepsTheControllerOpenAndClaimed) {
    bus.plugController();
    for (int i = 0; i < 2; ++i) {
        dialogs.expectMessage("File Error", "Message");
    }
    expectKeptOpenAndClaimed([] { usb.uploadFile("/missing", "a"); });
}

TEST_F(DeliberateLeak, AControllerWithoutNameIsKeptOpenAndClaimed) {
    bus.plug({.stringResult = 0});
    expectKeptOpenAndClaimed([] { EXPECT_EQ(usb.setup(), 0); });
}

TEST_F(DeliberateLeak, IsNotMadeByACaptureThatOtherOperationsInterrupt) {
    dialogs.expectMessage("File Error", "Message");
    dialogs.expectMessage("File Error", "Message");
    EXPECT_EQ(kept([this] {
                  const auto controller = bus.plugController();
                  support::CaptureRounds rounds;
                  rounds.after(1, [] { usb.sendConfigCmd(2, 5); });
                  rounds.after(2, [] { usb.uploadFile("/missing", "a"); });
                  rounds.stopAfter(4);
                  dump_running = true;
                  usb.receiveDump(1, "/missing");
                  bus.reset();  // The controller goes, with what it remembers.
                  bus.setLogging(false);
              }),
              Kept{});
}

struct Phase {
    const char* name;
    int frame;
    const char* message;
};

class DeliberateLeakOfAnUpload : public DeliberateLeak,
                                 public testing::WithParamInterface<Phase> {};

TEST_P(DeliberateLeakOfAnUpload, KeepsItsBuffersAndTheOpenFile) {
    const auto controller = bus.plugController();
    for (int i = 0; i < 2; ++i) {
        dialogs.expectMessage(GetParam().message, "Message");
    }
    EXPECT_EQ(kept([&] {
                  controller->refuseUploadFrame(GetParam().frame);
                  usb.uploadFile(faults::uploadedFile().c_str(), "a");
              }),
              (Kept{{64, 1100, 2052}, 1}));
}

INSTANTIATE_TEST_SUITE_P(Refused, DeliberateLeakOfAnUpload,
                         testing::Values(Phase{"Open", 1, "File Open Error"},
                                         Phase{"FirstBlock", 2, "File Transfer Error"},
                                         Phase{"LastBlock", 4, "File Transfer Error"},
                                         Phase{"Close", 5, "File Close Error"}),
                         [](const auto& test) { return test.param.name; });

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
        Reported{"DeliberateLeak.SetupWithout*", "in libusb_get_device_list"},
        Reported{"DeliberateLeak.GetSettings*", "in USBClass::getSettings"},
        Reported{"DeliberateLeak.SendConfigCmd*", "in USBClass::sendConfigCmd"},
        Reported{"*DeliberateLeakOfAnUpload.*Open", "in USBClass::uploadFile"},
        Reported{"*WindowLeaks.*/LoadSettingsOf22*", "in MainFrame::OnLoad_configMenuSelected"},
        Reported{"*WindowLeaks.*/SavePaletteThat*", "in MainFrame::OnSave_paletteMenuSelected"}));
#endif

}  // namespace
