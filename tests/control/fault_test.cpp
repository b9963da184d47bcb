// Every call to the USB library fails once in every command, in every way that the library
// documents, and a signal comes at every call: the exit code, the message, and that everything is
// given back.

#include <libusb.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <iostream>
#include <optional>

#include "pictures/png.h"
#include "tests/control/control_run.h"
#include "tests/control/pauses.h"
#include "tests/pictures/decoded.h"
#include "tests/recording/dumps.h"
#include "tests/support/odd_files.h"

namespace {

using simulator::Call;
using support::Arguments;
using support::ControlTest;
using support::lumadotctl;
using support::Ran;

/// What becomes of a failure that has to do with the controller.
enum class Transfers {
    Fatal,     ///< it ends the command
    Listed,    ///< `list`: the controller's row has nothing then
    Found,     ///< `check`: it is what has been found
    Recorded,  ///< `record`: what is not answered is counted
    Polled,    ///< `reset --wait`: it is asked again
};

struct Subject {
    const char* name;
    Arguments arguments;
    Transfers transfers = Transfers::Fatal;
};

std::ostream& operator<<(std::ostream& stream, const Subject& subject) {
    return stream << subject.name;
}

struct Error {
    int number;
    int code;  ///< of a command that it ends
    const char* name;
    const char* why;
};

constexpr std::array Errors = std::to_array<Error>({
    {LIBUSB_ERROR_IO, 6, "LIBUSB_ERROR_IO", "the transfer has failed"},
    {LIBUSB_ERROR_INVALID_PARAM, 1, "LIBUSB_ERROR_INVALID_PARAM", "the USB library has failed"},
    {LIBUSB_ERROR_ACCESS, 4, "LIBUSB_ERROR_ACCESS", "you have no permission"},
    {LIBUSB_ERROR_NO_DEVICE, 3, "LIBUSB_ERROR_NO_DEVICE", "it is no longer there"},
    {LIBUSB_ERROR_NOT_FOUND, 3, "LIBUSB_ERROR_NOT_FOUND", "it is no longer there"},
    {LIBUSB_ERROR_BUSY, 5, "LIBUSB_ERROR_BUSY", "another program is using it"},
    {LIBUSB_ERROR_TIMEOUT, 6, "LIBUSB_ERROR_TIMEOUT", "the time is over"},
    {LIBUSB_ERROR_OVERFLOW, 6, "LIBUSB_ERROR_OVERFLOW", "it has sent more than was asked for"},
    {LIBUSB_ERROR_PIPE, 6, "LIBUSB_ERROR_PIPE", "it refuses the transfer"},
    {LIBUSB_ERROR_INTERRUPTED, 1, "LIBUSB_ERROR_INTERRUPTED", "the system has interrupted it"},
    {LIBUSB_ERROR_NO_MEM, 1, "LIBUSB_ERROR_NO_MEM", "there is not enough memory"},
    {LIBUSB_ERROR_NOT_SUPPORTED, 1, "LIBUSB_ERROR_NOT_SUPPORTED", "the USB library has failed"},
    {LIBUSB_ERROR_OTHER, 1, "LIBUSB_ERROR_OTHER", "the USB library has failed"},
});

/// What must come of it: the exit code, and how the message starts where there must be one.
struct Outcome {
    int code = 0;
    std::string message = {};
};

/// What returns nothing, or a number that is no error.
bool cannotFail(const std::string& function) {
    return function == "libusb_close" || function == "libusb_free_device_list" ||
           function == "libusb_exit" || function == "libusb_get_bus_number" ||
           function == "libusb_get_device_address";
}

Outcome ended(const Error& error, const std::string& what) {
    return {error.code, what + ": " + error.why + " (" + error.name + ").\n"};
}

#ifdef _WIN32
Outcome taken(const Subject& subject) {
    const bool isFinding = subject.transfers == Transfers::Found;
    return {5, isFinding ? "" : "Another program is using the controller, or "};
}
#endif

Outcome outcomeOfOpening(const Subject& subject, const Error& error) {
    if (subject.transfers == Transfers::Listed) {
        return {};
    }
#ifdef _WIN32
    if (error.number == LIBUSB_ERROR_ACCESS) {
        return taken(subject);
    }
    if (error.number == LIBUSB_ERROR_NOT_SUPPORTED || error.number == LIBUSB_ERROR_NOT_FOUND) {
        const bool isFinding = subject.transfers == Transfers::Found;
        return {4, isFinding ? "" : "The controller is there, but "};
    }
#endif
    if (error.number == LIBUSB_ERROR_ACCESS) {
        const bool isFinding = subject.transfers == Transfers::Found;
        return {4, isFinding ? "" : "You may not open the controller, "};
    }
    return ended(error, "The controller cannot be opened");
}

Outcome outcomeOfClaiming(const Subject& subject, const Error& error) {
    if (subject.transfers == Transfers::Listed) {
        return {};
    }
#ifdef _WIN32
    if (error.number == LIBUSB_ERROR_ACCESS) {
        return taken(subject);
    }
#endif
    if (error.number == LIBUSB_ERROR_BUSY) {
        const bool isFinding = subject.transfers == Transfers::Found;
        return {5, isFinding ? "" : "Another program is using the controller.\n"};
    }
    return ended(error, "The controller's interface cannot be claimed");
}

/// `dump`: a transfer of a captured frame.
Outcome outcomeOfTransfer(const Subject& subject, const Call& call, const Error& error) {
    const bool isDump = call.timeout != 1000;
    if (subject.transfers == Transfers::Listed ||
        (subject.transfers == Transfers::Recorded && isDump && error.code == 6)) {
        return {};
    }
    if (subject.transfers == Transfers::Found && error.code == 6) {
        return {6};
    }
    return ended(error, call.endpoint == 0x01 ? "The controller has not taken what was sent"
                                              : "The controller has not answered");
}

Outcome outcomeOf(const Subject& subject, const Call& call, const Error& error) {
    const std::string& function = call.function;
    if (function == "libusb_release_interface" || function == "libusb_get_port_numbers") {
        return {};
    }
    if (function == "libusb_init") {
        return {1, std::string("The USB library cannot be started (") + error.name + ").\n"};
    }
    if (function == "libusb_get_device_list") {
        return {1, std::string("The USB bus cannot be searched (") + error.name + ").\n"};
    }
    if (function == "libusb_get_device_descriptor") {
        const bool isFinding = subject.transfers == Transfers::Found;
        return {3, isFinding ? "" : "There is no controller (0314:e457) on the USB bus.\n"};
    }
    if (function == "libusb_get_string_descriptor_ascii") {
        return {subject.transfers == Transfers::Found ? 6 : 0};
    }
    if (function == "libusb_open") {
        return outcomeOfOpening(subject, error);
    }
    return function == "libusb_claim_interface" ? outcomeOfClaiming(subject, error)
                                                : outcomeOfTransfer(subject, call, error);
}

class Faults : public ControlTest, public testing::WithParamInterface<Subject> {
protected:
    Faults() {
        support::writeFile(file("a.pal"), std::vector<std::uint8_t>(56, 1));
        support::writeFile(file("a.dat"), std::vector<std::uint8_t>(23, 1));
        support::writeFile(file("a.bin"), support::pattern(1100));
        std::filesystem::create_directory(file("dumps"));
        support::writeFile(file("a.txt"),
                           dumps::bytesOf(dumps::plainText(0) + dumps::plainText(16)));
        pictures::writePng(decoded::chanceFrames({1}, {}), 0, {}, file("a.png"));
    }
    ~Faults() override { std::cout << "lumadotctl's fault driver: " << runs_ << " runs\n"; }

    Ran run() {
        ++runs_;
        Arguments arguments = GetParam().arguments;
        for (std::string& argument : arguments) {
            if (argument.starts_with("@")) {
                argument = file(argument.substr(1));
            }
        }
        return lumadotctl(arguments);
    }
    /// A fresh bus with one controller.
    void plug() {
        bus.reset();
        // The settings are those of the file that `diff` compares.
        simulator::ControllerOptions options;
        options.settings.fill(1);
        bus.plugController(options);
    }
    /// The calls of a run that nothing disturbs.
    std::vector<Call> usualCalls() {
        plug();
        EXPECT_EQ(run().code, 0);
        return bus.calls();
    }
    void expectOutcome(const Outcome& wanted) {
        const Ran ran = run();
        EXPECT_EQ(ran.code, wanted.code) << ran;
        if (wanted.message.empty()) {
            EXPECT_EQ(ran.err.find("lumadotctl: "), std::string::npos) << ran;
        } else {
            EXPECT_THAT(ran.err, testing::HasSubstr("lumadotctl: ")) << ran;
            EXPECT_THAT(ran.err, testing::HasSubstr(wanted.message)) << ran;
        }
        support::expectBalanced();
    }

private:
    int runs_ = 0;
};

TEST_P(Faults, EveryErrorOfEveryCallEndsAsItShould) {
    const std::vector<Call> calls = usualCalls();
    for (std::size_t i = 0; i < calls.size(); ++i) {
        if (cannotFail(calls[i].function)) {
            continue;
        }
        const bool isAfterwards = GetParam().transfers == Transfers::Polled && i > 12;
        for (const Error& error : Errors) {
            SCOPED_TRACE("call " + std::to_string(i + 1) + ", " + support::lineOf(calls[i]) + ": " +
                         error.name);
            plug();
            bus.inject({.nth = static_cast<int>(i) + 1, .result = error.number});
            expectOutcome(isAfterwards ? Outcome{} : outcomeOf(GetParam(), calls[i], error));
        }
    }
}

/// Everything before the last frame that is sent is given up; what has been sent is done.
TEST_P(Faults, ASignalAtEveryCallGivesEverythingBack) {
    const std::vector<Call> calls = usualCalls();
    const auto isSent = [](const Call& call) { return call.endpoint == 0x01 && call.timeout >= 0; };
    const auto last = std::find_if(calls.rbegin(), calls.rend(), isSent).base() - calls.begin() - 1;
    for (std::size_t i = 0; i < calls.size(); ++i) {
        SCOPED_TRACE("call " + std::to_string(i + 1) + ", " + support::lineOf(calls[i]));
        plug();
        bus.inject({.nth = static_cast<int>(i) + 1, .meanwhile = [] { std::raise(SIGINT); }});
        const bool isDone =
            static_cast<int>(i) >= last || GetParam().transfers == Transfers::Recorded;
        const Ran ran = run();
        EXPECT_EQ(ran.code, isDone ? 0 : 1) << ran;
        EXPECT_EQ(ran.err.find("nterrupted.\nRun the command again.\n") != std::string::npos,
                  !isDone)
            << ran;
        support::expectBalanced();
    }
}

TEST_P(Faults, AControllerThatLeavesAtAnyCallIsGivenBack) {
    const std::vector<Call> calls = usualCalls();
    for (std::size_t i = 2; i < calls.size(); ++i) {
        SCOPED_TRACE("call " + std::to_string(i + 1) + ", " + support::lineOf(calls[i]));
        plug();
        bus.inject({.nth = static_cast<int>(i) + 1, .unplug = true});
        const Ran ran = run();
        EXPECT_TRUE(ran.code == 0 || ran.code == 3 || ran.code == 6) << ran;
        support::expectBalanced();
    }
}

TEST_P(Faults, ATransferThatMovesTooLittleIsNoticed) {
    const std::vector<Call> calls = usualCalls();
    for (std::size_t i = 0; i < calls.size(); ++i) {
        if (calls[i].function != "libusb_bulk_transfer") {
            continue;
        }
        for (const int moved : {-1, 0, 1, calls[i].length - 1, 1 << 30}) {
            SCOPED_TRACE("call " + std::to_string(i + 1) + ", " + support::lineOf(calls[i]) + ": " +
                         std::to_string(moved));
            plug();
            bus.inject({.nth = static_cast<int>(i) + 1, .transferred = moved});
            const bool isOut = calls[i].endpoint == 0x01;
            const bool isFatal = isOut && moved < calls[i].length && calls[i].timeout == 1000 &&
                                 GetParam().transfers == Transfers::Fatal;
            const Ran ran = run();
            if (isFatal) {
                EXPECT_EQ(ran.code, 6) << ran;
                EXPECT_THAT(ran.err, testing::HasSubstr("The controller has taken "));
            } else {
                EXPECT_TRUE(ran.code == 0 || ran.code == 6) << ran;
            }
            support::expectBalanced();
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    Every, Faults,
    testing::Values(
        Subject{"list", {"list"}, Transfers::Listed}, Subject{"check", {"check"}, Transfers::Found},
        Subject{"info", {"info"}}, Subject{"mode", {"mode"}}, Subject{"mode_2", {"mode", "2"}},
        Subject{"preset", {"preset"}}, Subject{"preset_8", {"preset", "8"}},
        Subject{"brightness", {"brightness"}}, Subject{"brightness_200", {"brightness", "200"}},
        Subject{"enhancer", {"enhancer"}}, Subject{"enhancer_on", {"enhancer", "on"}},
        Subject{"palette", {"palette", "@a.pal", "--store"}}, Subject{"store", {"store"}},
        Subject{"logo", {"logo"}}, Subject{"reset", {"reset"}},
        Subject{"reset_wait", {"reset", "--wait"}, Transfers::Polled},
        Subject{"settings_save", {"settings", "save", "@b.dat"}},
        Subject{"settings_load", {"settings", "load", "@a.dat", "--store"}},
        Subject{"settings_diff", {"settings", "diff", "@a.dat"}},
        Subject{"upload", {"upload", "@a.bin"}},
        Subject{"play", {"play", "@a.txt", "--palette", "@a.pal"}, Transfers::Recorded},
        Subject{"show", {"show", "@a.png", "--seconds", "1"}},
        Subject{
            "record", {"record", "@dumps", "--frames", "3", "--mode", "1"}, Transfers::Recorded}),
    [](const auto& row) { return row.param.name; });

}  // namespace
