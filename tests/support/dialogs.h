#ifndef LUMADOT_TESTS_SUPPORT_DIALOGS_H
#define LUMADOT_TESTS_SUPPORT_DIALOGS_H

#include <wx/colour.h>
#include <wx/dialog.h>
#include <wx/modalhook.h>
#include <wx/string.h>

#include <deque>
#include <functional>
#include <optional>

#include "tests/support/print.h"

namespace support {

/// Answers the modal dialogs of a test, in the order in which they were announced. A dialog that
/// was not announced fails the test and is cancelled; an announced one that never came fails it
/// too.
class Dialogs : public wxModalDialogHook {
public:
    Dialogs() { Register(); }
    ~Dialogs() override;
    Dialogs(const Dialogs&) = delete;
    Dialogs& operator=(const Dialogs&) = delete;

    /// What to do with the next dialog: look at it, and return what its ShowModal shall return.
    using Answer = std::function<int(wxDialog&)>;
    void expect(Answer answer) { answers_.push_back(std::move(answer)); }

    /// A message box with an OK button, this text and this caption.
    void expectMessage(const wxString& text, const wxString& caption);

    struct FileQuestion {
        wxString title;
        wxString wildcard;
        long style;
        wxString proposedName;
    };
    /// A file dialog; `path` is what the user chooses, nothing: cancel.
    void expectFile(const FileQuestion& question, const std::optional<wxString>& path);

    /// A folder dialog; `path` is what the user chooses, nothing: cancel.
    void expectFolder(const wxString& title, long style, const std::optional<wxString>& path);

    /// A text entry dialog; `text` is what the user enters, nothing: cancel.
    void expectText(const wxString& message, const wxString& caption, const wxString& proposed,
                    const std::optional<wxString>& text);

    /// A colour dialog that starts with `initial`; `picked`: nothing: cancel.
    void expectColour(const wxColour& initial, const std::optional<wxColour>& picked);

    /// Dialogs that have come so far.
    int seen() const { return seen_; }

protected:
    int Enter(wxDialog* dialog) override;

private:
    std::deque<Answer> answers_;
    int seen_ = 0;
};

}  // namespace support

#endif
