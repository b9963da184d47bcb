#ifndef LUMADOT_CONTROL_SESSION_H
#define LUMADOT_CONTROL_SESSION_H

#include <functional>
#include <memory>
#include <string>

#include "control/channel.h"
#include "control/clock.h"
#include "control/output.h"
#include "device/wire.h"

namespace control {

/// The options that stand for every command.
struct Options {
    std::string device;  ///< see DeviceChoice
    bool json = false;
    bool quiet = false;
    bool verbose = false;
    bool dryRun = false;
    unsigned int timeout = wire::Timeout;  ///< ms, every transfer but a dump's
};

/// Ends a dry run where the command would have to read to go on.
struct ReplyNeeded {};

/// What a command runs in.
class Session {
public:
    Session(const Options& options, Output& output) : options_(options), output_(output) {}

    const Options& options() const { return options_; }
    Output& output() { return output_; }
    Json& document() { return output_.document(); }

    /// The controller that is meant, open, or the dry run in its place; with --json it is told in
    /// the document. Throws Failure.
    std::unique_ptr<Channel> connect() { return connect(options_.device); }
    std::unique_ptr<Channel> connect(const std::string& device);

    /// What has been done, as a message; not of a dry run, in which nothing is.
    void done(const std::string& message);
    /// Waits, unless it is a dry run.
    void pause(Milliseconds time) const;

private:
    const Options& options_;
    Output& output_;
};

/// What a command does once its arguments are known.
using Action = std::function<ExitCode(Session&)>;

}  // namespace control

#endif
