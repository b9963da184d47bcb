#ifndef LUMADOT_CONTROL_OUTPUT_H
#define LUMADOT_CONTROL_OUTPUT_H

#include <cstdint>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <ostream>
#include <span>
#include <string>
#include <string_view>

#include "control/failure.h"

namespace control {

using Json = nlohmann::ordered_json;

/// What a run says: results on one stream, messages on the other. With --json the results are one
/// document, which is written at the end.
class Output {
public:
    Output(std::ostream& results, std::ostream& messages);
    ~Output();
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    void useJson() { json_ = true; }
    void useText() { json_ = false; }
    void beQuiet() { quiet_ = true; }
    void beVerbose() { verbose_ = true; }
    bool isVerbose() const { return verbose_; }

    /// A line of the result; not with --json.
    void result(std::string_view line);
    /// A part of the result that is seen at once; not with --json.
    void resultNow(std::string_view text);
    /// Whether the results go to a terminal.
    bool showsResults() const { return resultsTerminal_; }
    bool isJson() const { return json_; }
    /// For a person; not with --quiet.
    void message(std::string_view line);
    /// For --verbose; the caller asks `isVerbose`.
    void trace(std::string_view line);
    /// In the place of the last such text, when a person looks at it; not with --quiet. An empty
    /// text takes it away.
    void progress(const std::string& text);
    bool showsProgress() const { return terminal_ && !quiet_; }

    /// Reported in every case.
    void failure(const Failure& failure);
    /// The document's part of that.
    void reportInDocument(const Failure& failure);

    /// The document, an object.
    Json& document() { return *document_; }

    /// A frame that a dry run would send.
    void dryFrame(std::span<const std::uint8_t> bytes, unsigned int timeout);
    /// From now on the document holds nothing but the dry run.
    void startDryRun();
    void endDryRun(bool replyNeeded);

    /// Writes what there is to write. False: the results cannot be written.
    bool finish();

private:
    std::ostream& results_;
    std::ostream& messages_;
    bool json_ = false;
    bool quiet_ = false;
    bool verbose_ = false;
    bool terminal_;
    bool resultsTerminal_;
    std::size_t shown_ = 0;  ///< letters of the progress text that stands there
    std::unique_ptr<Json> document_;
    std::unique_ptr<Json> dryRun_;
};

}  // namespace control

#endif
