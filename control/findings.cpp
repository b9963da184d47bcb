#include "control/findings.h"

#include <libusb.h>

#include <algorithm>
#include <array>

namespace control {

namespace {

constexpr const char* ChooseDriver =
    "choose \"WinUsb Device\" as its driver; the README.txt beside this program says how, step by "
    "step.";
constexpr const char* Replug = "Unplug the controller, plug it in again and try once more.";

struct StepText {
    Step step;
    const char* what;
};

constexpr std::array Steps = std::to_array<StepText>({
    {Step::Start, "The USB library cannot be started"},
    {Step::Search, "The USB bus cannot be searched"},
    {Step::Open, "The controller cannot be opened"},
    {Step::Product, "The controller's product name cannot be read"},
    {Step::Claim, "The controller's interface cannot be claimed"},
    {Step::Send, "The controller has not taken what was sent"},
    {Step::Receive, "The controller has not answered"},
});

/// What an error means once there is a controller.
struct ErrorText {
    int error;
    ExitCode code;
    const char* why;
    const char* hint;
};

constexpr std::array Errors = std::to_array<ErrorText>({
    {LIBUSB_ERROR_NO_DEVICE, ExitCode::NoController, "it is no longer there",
     "Plug the controller in and try again."},
    {LIBUSB_ERROR_NOT_FOUND, ExitCode::NoController, "it is no longer there",
     "Plug the controller in and try again."},
    {LIBUSB_ERROR_ACCESS, ExitCode::NoPermission, "you have no permission",
     "Run lumadotctl check: it says what is missing."},
    {LIBUSB_ERROR_BUSY, ExitCode::Busy, "another program is using it",
     "Close that program and try again."},
    {LIBUSB_ERROR_TIMEOUT, ExitCode::NoAnswer, "the time is over", Replug},
    {LIBUSB_ERROR_PIPE, ExitCode::NoAnswer, "it refuses the transfer", Replug},
    {LIBUSB_ERROR_IO, ExitCode::NoAnswer, "the transfer has failed", Replug},
    {LIBUSB_ERROR_OVERFLOW, ExitCode::NoAnswer, "it has sent more than was asked for", Replug},
    {LIBUSB_ERROR_NO_MEM, ExitCode::Failed, "there is not enough memory",
     "Close other programs and try again."},
    {LIBUSB_ERROR_INTERRUPTED, ExitCode::Failed, "the system has interrupted it", "Try again."},
});
constexpr ErrorText AnotherError{0, ExitCode::Failed, "the USB library has failed", Replug};

const ErrorText& textOf(int usbError) {
    const auto* const found = std::ranges::find(Errors, usbError, &ErrorText::error);
    return found == Errors.end() ? AnotherError : *found;
}

}  // namespace

namespace findings {

Finding works() {
    return {"works", ExitCode::Done, "The controller answers.", "There is nothing to do."};
}

Finding nothingOnTheBus() {
    return {"nothing-on-the-bus", ExitCode::NoController,
            "There is no controller (0314:e457) on the USB bus.",
            "Plug it in and switch the machine on; if it is, try another cable and another port."};
}

Finding noRule() {
    return {
        "no-rule", ExitCode::NoPermission,
        "You may not open the controller, and no udev rule for it is installed.",
        "Put 65-lumadot.rules into /etc/udev/rules.d, run \"sudo udevadm control --reload\" and "
        "plug the controller in again."};
}

Finding ruleNotInForce() {
    return {"rule-not-in-force", ExitCode::NoPermission,
            "You may not open the controller, although a udev rule for it is installed.",
            "Plug the controller in again or log in anew at the machine itself; the rule does not "
            "reach over ssh, where sudo helps."};
}

Finding noDriver() {
    return {"no-driver", ExitCode::NoPermission,
            "The controller is there, but Windows has not bound it to the driver WinUSB.",
            std::string("In the Device Manager, ") + ChooseDriver};
}

Finding busy(const std::optional<Holder>& holder) {
    const std::string who = holder && !holder->program.empty()
                                ? holder->program + " (process " + std::to_string(holder->pid) + ")"
                                : "Another program";
    return {"busy", ExitCode::Busy, who + " is using the controller.",
            "Close that program or end its capture, and try again."};
}

Finding driverBound() {
    return {"driver-bound", ExitCode::Busy,
            "A driver of the system holds the controller's interface.",
            R"(Find the driver with "lsusb -t", unload it with "sudo modprobe -r" and try again.)"};
}

Finding nameUnreadable(int usbError) {
    const std::string why = usbError != 0 ? usbErrorName(usbError) : "it is empty";
    return {"name-unreadable", ExitCode::NoAnswer,
            "The controller's product name cannot be read (" + why + ").", Replug};
}

Finding noAnswer(const std::string& why) {
    return {"no-answer", ExitCode::NoAnswer, "The controller does not answer (" + why + ").",
            Replug};
}

Finding takenOnWindows() {
    return {
        "busy", ExitCode::Busy,
        "Another program is using the controller, or Windows has bound it to a driver other than "
        "WinUSB.",
        std::string("Close that program and try again; if there is none: in the Device Manager, ") +
            ChooseDriver};
}

std::optional<Finding> ofOpeningOnWindows(int usbError) {
    switch (usbError) {
        case LIBUSB_ERROR_NOT_SUPPORTED:
        case LIBUSB_ERROR_NOT_FOUND:
            return noDriver();
        case LIBUSB_ERROR_ACCESS:
            return takenOnWindows();
        default:
            return std::nullopt;
    }
}

}  // namespace findings

Failure failureOf(const Finding& finding, int usbError) {
    return {finding.code, finding.message, finding.hint, usbError};
}

Failure usbFailure(Step step, int usbError) {
    const auto* const what = std::ranges::find(Steps, step, &StepText::step);
    const ErrorText& text = textOf(usbError);
    const bool hasDevice = step != Step::Start && step != Step::Search;
    const std::string message =
        std::string(what->what) +
        (hasDevice ? std::string(": ") + text.why + " (" + usbErrorName(usbError) + ")."
                   : " (" + usbErrorName(usbError) + ").");
    if (!hasDevice) {
        return {ExitCode::Failed, message, "Try again; if it stays so, restart the machine.",
                usbError};
    }
    return {text.code, message, text.hint, usbError};
}

std::string usbErrorName(int usbError) { return usbError == 0 ? "" : libusb_error_name(usbError); }

}  // namespace control
