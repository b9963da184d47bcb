#ifndef LUMADOT_RECORDING_ERROR_H
#define LUMADOT_RECORDING_ERROR_H

#include <stdexcept>
#include <string>

namespace recording {

/// Why something cannot be done.
enum class Failure {
    CannotRead,     ///< the file cannot be opened or read
    NotARecording,  ///< the file is something else
    NotAPicture,    ///< the file is no picture that can be read
    Changed,        ///< the file has been changed since its index was made
    ModeNeeded,     ///< several input modes fit, and one has to be named
    ModeUnfit,      ///< the input mode that was named does not fit
    CannotWrite,    ///< the file cannot be made, written or put in its place
    CannotConvert,  ///< the frames cannot be expressed in what is to be written
};

/// What this library and pictures/ throw. The text says what failed and why, for people.
class Error : public std::runtime_error {
public:
    Error(Failure failure, const std::string& text) : std::runtime_error(text), failure_(failure) {}

    Failure failure() const { return failure_; }

private:
    Failure failure_;
};

}  // namespace recording

#endif
