#include "control/output.h"

#include <iostream>
#include <nlohmann/json.hpp>

#include "control/findings.h"
#include "control/terminal.h"
#include "control/text.h"

namespace control {

Output::Output(std::ostream& results, std::ostream& messages)
    : results_(results),
      messages_(messages),
      terminal_(&messages == &std::cerr && terminal::isThere()),
      resultsTerminal_(&results == &std::cout && terminal::takesResults()),
      document_(std::make_unique<Json>(Json::object())) {}

Output::~Output() = default;

void Output::result(std::string_view line) {
    if (!json_) {
        progress("");
        results_ << line << '\n';
    }
}

void Output::resultNow(std::string_view text) {
    if (!json_) {
        progress("");
        results_ << text << std::flush;
    }
}

void Output::message(std::string_view line) {
    if (!quiet_) {
        trace(line);
    }
}

void Output::trace(std::string_view line) {
    progress("");
    messages_ << line << '\n' << std::flush;
}

void Output::progress(const std::string& text) {
    if (!showsProgress() || (text.empty() && shown_ == 0)) {
        return;
    }
    const std::size_t before = shown_;
    shown_ = text.size();
    messages_ << '\r' << text;
    if (before > shown_) {
        messages_ << std::string(before - shown_, ' ') << '\r' << text;
    }
    messages_ << std::flush;
}

void Output::failure(const Failure& failure) {
    trace(std::string("lumadotctl: ") + failure.what());
    if (!failure.hint.empty()) {
        trace(failure.hint);
    }
    reportInDocument(failure);
}

void Output::reportInDocument(const Failure& failure) {
    // Several files have a document each, in an array.
    Json& error = (document().is_array() ? document().emplace_back() : document())["error"];
    error["code"] = static_cast<int>(failure.code);
    error["name"] = failure.usbError != 0 ? Json(usbErrorName(failure.usbError)) : Json();
    error["message"] = failure.what();
    error["hint"] = failure.hint;
}

void Output::dryFrame(std::span<const std::uint8_t> bytes, unsigned int timeout) {
    const std::string text = byteText(bytes);
    result("out 0x01 " + std::to_string(bytes.size()) + " bytes, " + std::to_string(timeout) +
           " ms: " + text);
    (*dryRun_)["frames"].push_back(
        {{"length", bytes.size()}, {"timeout", timeout}, {"bytes", text}});
}

void Output::startDryRun() {
    if (!dryRun_) {
        dryRun_ = std::make_unique<Json>(Json{{"frames", Json::array()}, {"replyNeeded", false}});
    }
}

void Output::endDryRun(bool replyNeeded) { (*dryRun_)["replyNeeded"] = replyNeeded; }

bool Output::finish() {
    progress("");
    if (json_) {
        Json document = std::move(*document_);
        if (dryRun_) {
            const Json error = document.contains("error") ? document["error"] : Json();
            document = Json{{"dryRun", *dryRun_}};
            if (!error.is_null()) {
                document["error"] = error;
            }
        }
        // What is not UTF-8, as a controller's or a file's name may be, is shown as U+FFFD.
        results_ << document.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
    }
    results_.flush();
    return results_.good();
}

}  // namespace control
