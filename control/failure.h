#ifndef LUMADOT_CONTROL_FAILURE_H
#define LUMADOT_CONTROL_FAILURE_H

#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>

namespace control {

/// What the program ends with.
enum class ExitCode : std::uint8_t {
    Done = 0,
    Failed = 1,
    Usage = 2,
    NoController = 3,
    NoPermission = 4,
    Busy = 5,
    NoAnswer = 6,  ///< or refused
    File = 7,
};

/// What went wrong, for a person and for a script.
class Failure : public std::runtime_error {
public:
    /// `message` says what failed and why, `hint` what to do next; both are whole sentences.
    /// `usbError` is the USB library's, 0 where it has none.
    Failure(ExitCode failureCode, const std::string& message, std::string failureHint,
            int failureUsbError = 0)
        : std::runtime_error(message),
          code(failureCode),
          hint(std::move(failureHint)),
          usbError(failureUsbError) {}

    ExitCode code;
    std::string hint;
    int usbError;
};

/// A signal has asked the program to end.
class Interrupted : public Failure {
public:
    Interrupted() : Failure(ExitCode::Failed, "Interrupted.", "Run the command again.") {}
    explicit Interrupted(const std::string& message)
        : Failure(ExitCode::Failed, message, "Run the command again.") {}
};

}  // namespace control

#endif
