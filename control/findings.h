#ifndef LUMADOT_CONTROL_FINDINGS_H
#define LUMADOT_CONTROL_FINDINGS_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "control/failure.h"
#include "control/holder.h"

namespace control {

/// The steps of a connection.
enum class Step : std::uint8_t { Start, Search, Open, Product, Claim, Send, Receive };

/// What can be the matter with a controller: `check` reports it, and so does every command that
/// meets it.
struct Finding {
    std::string_view name;
    ExitCode code;
    std::string message;  ///< what is the matter, one sentence
    std::string hint;     ///< what to do about it, one sentence
};

namespace findings {

Finding works();
Finding nothingOnTheBus();
/// It may not be opened, and no rule gives it to the user.
Finding noRule();
/// It may not be opened, although a rule is there.
Finding ruleNotInForce();
/// Windows has bound it to no driver that lets programs in.
Finding noDriver();
/// Without a holder, nobody knows who it is.
Finding busy(const std::optional<Holder>& holder);
Finding driverBound();
/// `usbError` 0: the name is empty.
Finding nameUnreadable(int usbError);
/// `why` goes into parentheses.
Finding noAnswer(const std::string& why);
/// Access that Windows denies, to the controller or its interface. WinUSB lets one program in at a
/// time, and the USB library has the same error for some drivers that let none in.
Finding takenOnWindows();
/// What it means on Windows that a controller which is there cannot be opened. Nothing: the error
/// says no more than itself.
std::optional<Finding> ofOpeningOnWindows(int usbError);

}  // namespace findings

Failure failureOf(const Finding& finding, int usbError = 0);

/// The failure of a step with one of the USB library's errors.
Failure usbFailure(Step step, int usbError);

/// The USB library's name for its error, empty for 0.
std::string usbErrorName(int usbError);

}  // namespace control

#endif
