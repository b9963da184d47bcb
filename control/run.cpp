#include "control/run.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <new>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "control/command_line.h"
#include "control/interrupt.h"
#include "control/recordings.h"

namespace control {

namespace {

using Arguments = std::span<const char* const>;

int codeOf(ExitCode code) { return static_cast<int>(code); }

/// What has been asked for is known before the rest of the command line is understood.
bool asksForJson(Arguments arguments) {
    return std::ranges::find(arguments, std::string_view("--json")) != arguments.end();
}

Failure usageFailure(const CLI::App& app, const CLI::ParseError& error) {
    std::string message = error.what();
    // The parser tells what it misses before what it does not know: a command that is mistyped.
    const std::vector<std::string> unknown = app.remaining(true);
    if (!unknown.empty() && error.get_name() == "RequiredError") {
        message = "\"" + unknown.front() + "\" is not understood";
    } else if (const auto at = message.find("subcommand"); at != std::string::npos) {
        message.erase(at, 3);  // Which is what the help calls it.
    }
    std::ranges::replace(message, '\n', ' ');
    if (!message.ends_with('.')) {
        message += '.';
    }
    return {ExitCode::Usage, message, "Run lumadotctl --help or lumadotctl COMMAND --help."};
}

ExitCode act(const Action& chosen, const Options& options, Output& output) {
    if (options.quiet) {
        output.beQuiet();
    }
    if (options.verbose) {
        output.beVerbose();
    }
    const interrupt::Watch watch;
    Session session(options, output);
    try {
        return chosen(session);
    } catch (const ReplyNeeded&) {
        output.endDryRun(true);
        output.message("To go on, the controller's reply would be needed.");
        return ExitCode::Done;
    }
}

/// Everything but the help.
ExitCode perform(const std::function<ExitCode()>& action, Output& output) {
    try {
        return action();
    } catch (const Failure& failure) {
        output.failure(failure);
        return failure.code;
    } catch (const recording::Error& error) {
        const Failure failure = failureOf(error);
        output.failure(failure);
        return failure.code;
    } catch (const std::bad_alloc&) {
        output.failure({ExitCode::Failed, "There is not enough memory.",
                        "Close other programs and try again."});
    } catch (const std::exception& error) {
        output.failure({ExitCode::Failed, error.what(), "Try again."});
    }
    return ExitCode::Failed;
}

/// Help and version are asked for by an exception of the parser, too.
ExitCode parseAndAct(Arguments arguments, std::ostream& results, Output& output) {
    Options options;
    Action chosen;
    const auto app = makeCommandLine(options, chosen);
    try {
        // It wants them from the last to the first.
        app->parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() != 0) {
            throw usageFailure(*app, error);
        }
        app->exit(error, results, results);
        output.useText();
        return ExitCode::Done;
    }
    return act(chosen, options, output);
}

}  // namespace

int run(Arguments arguments, std::ostream& results, std::ostream& messages) {
    Output output(results, messages);
    if (asksForJson(arguments)) {
        output.useJson();
    }
    const ExitCode code = perform([&] { return parseAndAct(arguments, results, output); }, output);
    if (!output.finish() && code == ExitCode::Done) {
        messages << "lumadotctl: The results cannot be written.\n";
        return codeOf(ExitCode::File);
    }
    return codeOf(code);
}

}  // namespace control
