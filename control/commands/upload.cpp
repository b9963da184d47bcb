#include <CLI/CLI.hpp>
#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>

#include "control/commands/commands.h"
#include "control/files.h"
#include "control/interrupt.h"
#include "control/progress.h"
#include "control/text.h"
#include "device/upload.h"
#include "platform/native_file.h"
#include "recording/source.h"

namespace control {

namespace {

struct Arguments {
    std::vector<std::string> files;
    std::string name;
};

/// A file and where it goes.
struct Task {
    std::string file;
    std::string name;
    std::size_t size;
};

std::size_t blocksOf(const Task& task) { return task.size / frames::UploadBlockSize + 1; }

/// One upload: knows at which frame it is.
class Upload {
public:
    Upload(Channel& channel, Output& output, const Task& task)
        : channel_(channel), task_(task), progress_(output, task.name, task.size) {}

    /// Throws a Failure that says where it happened.
    void run() {
        const auto content = readWhole(task_.file, upload::MaxSize);
        CommandFrame frame(Command::Upload);
        const auto outcome =
            upload::transfer(task_.name, content, frame, [this](const CommandFrame& next) {
                const bool accepted = exchange(next);
                ++frame_;
                return accepted;
            });
        if (outcome != upload::Outcome::Done) {
            --frame_;
            throw Failure(ExitCode::NoAnswer, where() + ": the controller refuses it.",
                          "Check the name, and whether there is room on the controller.");
        }
    }

private:
    bool exchange(const CommandFrame& frame) {
        upload::Answer answer{};
        try {
            channel_.send(frame);
            if (channel_.receive(std::span(answer).first<upload::AnswerLength>()) == 0) {
                throw Failure(ExitCode::NoAnswer, "The controller's answer is empty.",
                              "Unplug the controller, plug it in again and try once more.");
            }
        } catch (const Interrupted&) {
            throw Interrupted(where() + ": interrupted.");
        } catch (const Failure& failure) {
            throw Failure(failure.code, where() + ": " + failure.what(), failure.hint,
                          failure.usbError);
        }
        progress_.update(std::min(frame_ * frames::UploadBlockSize, task_.size));
        return upload::accepts(answer.front());
    }

    /// "\"a.bin\", block 3 of 5".
    std::string where() const {
        const std::string file = "\"" + task_.file + "\", ";
        if (frame_ == 0) {
            return file + "opening \"" + task_.name + "\"";
        }
        const std::size_t blocks = blocksOf(task_);
        return frame_ <= blocks
                   ? file + "block " + std::to_string(frame_) + " of " + std::to_string(blocks)
                   : file + "closing \"" + task_.name + "\"";
    }

    Channel& channel_;
    const Task& task_;
    Progress progress_;
    std::size_t frame_ = 0;
};

/// Throws before anything is sent when one of the files will not do.
std::vector<Task> tasksOf(const Arguments& arguments) {
    constexpr std::size_t LongestName = 2046;
    std::vector<Task> tasks;
    for (const std::string& file : arguments.files) {
        const std::string name =
            arguments.name.empty() ? recording::nameOf(native_file::named(file.c_str()).filename())
                                   : arguments.name;
        if (name.empty() || name.size() > LongestName) {
            throw Failure(ExitCode::Usage,
                          "The name on the controller has to have 1 to 2046 bytes.",
                          "Say another with --name.");
        }
        tasks.push_back({file, name, readableSize(file, upload::MaxSize)});
    }
    return tasks;
}

void report(Session& session, const Task& task, double seconds) {
    session.document()["uploads"].push_back(
        {{"file", task.file}, {"name", task.name}, {"bytes", task.size}, {"seconds", seconds}});
    session.done("Uploaded \"" + task.file + "\" as \"" + task.name +
                 "\": " + std::to_string(task.size) + " bytes in " + decimal(seconds) + " s (" +
                 rateText(task.size, seconds) + ").");
}

ExitCode upload(Session& session, const Arguments& arguments) {
    const std::vector<Task> tasks = tasksOf(arguments);
    const auto channel = session.connect();
    session.document()["uploads"] = Json::array();
    for (const Task& task : tasks) {
        const TimePoint start = now();
        Upload(*channel, session.output(), task).run();
        report(session, task, secondsSince(start));
    }
    return ExitCode::Done;
}

}  // namespace

void defineUpload(CLI::App& app, Action& chosen) {
    auto arguments = std::make_shared<Arguments>();
    app.add_option("FILE", arguments->files, "The files, one after the other")->required();
    auto* const name =
        app.add_option("--name", arguments->name, "Name on the controller, instead of the file's")
            ->type_name("NAME");
    app.callback([&chosen, arguments, name] {
        if (name->count() > 0 && arguments->files.size() > 1) {
            throw CLI::ValidationError("--name", "goes with one file only");
        }
        if (name->count() > 0 && arguments->name.empty()) {
            throw CLI::ValidationError("--name", "must not be empty");
        }
        chosen = [arguments](Session& session) { return upload(session, *arguments); };
    });
}

}  // namespace control
