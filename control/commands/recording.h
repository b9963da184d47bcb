#ifndef LUMADOT_CONTROL_COMMANDS_RECORDING_H
#define LUMADOT_CONTROL_COMMANDS_RECORDING_H

#include <memory>
#include <optional>
#include <string>

#include "control/session.h"
#include "device/capture.h"

namespace control {

/// When a recording ends by itself; 0: not for that.
struct RecordingLimits {
    unsigned int frames = 0;
    double seconds = 0;
};

/// One recording: the frames of an open controller into the files that the window's capture writes.
class Recording {
public:
    /// `mode` is the input mode that the controller is in. Starts the files.
    Recording(Session& session, std::unique_ptr<Channel> channel, const std::string& folder,
              std::uint8_t mode, const RecordingLimits& limits);

    /// The controller may be pulled out and come back. `selectMode`: it is told the mode then.
    void goOnAfterUnplugging(bool selectMode) {
        reconnects_ = true;
        selectsMode_ = selectMode;
    }

    /// Until a limit is reached or a signal comes. Tells what it has recorded, in every case;
    /// throws Failure.
    ExitCode run();

private:
    void record();
    void round();
    bool request();
    bool readReply();
    void write(bool written) const;
    bool isOver() const;
    void search();
    void comeBack();
    void showProgress();
    void tell();
    std::string counts() const;

    Session& session_;
    std::unique_ptr<Channel> channel_;
    std::string folder_;
    std::uint8_t mode_;
    RecordingLimits limits_;
    int variant_;
    dump::Capture capture_;
    dump::Files files_;
    bool reconnects_ = false;
    bool selectsMode_ = false;

    TimePoint start_ = now();
    TimePoint shown_ = {};
    std::string endedBy_ = "failure";
    unsigned int frames_ = 0;
    unsigned int refused_ = 0;  ///< requests that the controller has not taken
    unsigned int lost_ = 0;     ///< requests that were not answered, or not with a whole frame
};

}  // namespace control

#endif
