// Commands that send one frame and take no operand.

#include <CLI/CLI.hpp>
#include <memory>
#include <nlohmann/json.hpp>

#include "control/commands/commands.h"
#include "control/settings_exchange.h"
#include "control/text.h"
#include "device/frames.h"
#include "device/logo_frame.h"

namespace control {

namespace {

ExitCode store(Session& session) {
    session.connect()->send(frames::command(Command::Store));
    session.document()["sent"] = "store";
    session.done("Stored the working settings on the controller.");
    return ExitCode::Done;
}

ExitCode logo(Session& session) {
    session.connect()->send(logoFrame());
    session.document()["sent"] = "logo";
    session.done("Sent the built-in logo.");
    return ExitCode::Done;
}

bool answers(Session& session, const std::string& choice) {
    try {
        readSettings(*session.connect(choice));
        return true;
    } catch (const Interrupted&) {
        throw;
    } catch (const Failure&) {
        return false;
    }
}

/// Until this controller answers again.
void waitFor(Session& session, const std::string& choice) {
    constexpr double Longest = 10;  // s
    constexpr Milliseconds Between{100};
    const TimePoint start = now();
    do {
        session.pause(Between);
        if (answers(session, choice)) {
            const double seconds = secondsSince(start);
            session.document()["answeredAfter"] = seconds;
            session.done("It answers again after " + decimal(seconds) + " s.");
            return;
        }
    } while (secondsSince(start) < Longest);
    throw Failure(ExitCode::NoAnswer,
                  "The controller has been reset, and does not answer within 10 s.",
                  "Unplug the controller and plug it in again.");
}

ExitCode reset(Session& session, bool wait) {
    std::string choice = session.options().device;
    {
        const auto channel = session.connect();
        channel->send(frames::command(Command::Reset));
        // A port that cannot be read is none to wait at.
        if (channel->device() != nullptr && !channel->device()->port.empty()) {
            choice = placeText(*channel->device());
        }
    }
    session.document()["sent"] = "reset";
    session.done("Reset the controller.");
    if (wait) {
        waitFor(session, choice);
    }
    return ExitCode::Done;
}

}  // namespace

void defineStore(CLI::App& app, Action& chosen) {
    app.callback([&chosen] { chosen = store; });
}

void defineLogo(CLI::App& app, Action& chosen) {
    app.callback([&chosen] { chosen = logo; });
}

void defineReset(CLI::App& app, Action& chosen) {
    auto wait = std::make_shared<bool>(false);
    app.add_flag("--wait", *wait, "Until it answers again, 10 s at most");
    app.callback(
        [&chosen, wait] { chosen = [wait](Session& session) { return reset(session, *wait); }; });
}

}  // namespace control
