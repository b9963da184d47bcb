#ifndef LUMADOT_TESTS_DEVICE_ALLOCATIONS_ANSWERS_H
#define LUMADOT_TESTS_DEVICE_ALLOCATIONS_ANSWERS_H

#include <wx/filedlg.h>
#include <wx/msgdlg.h>

#include <string>

#include "tests/device/allocations/failing_new.h"
#include "tests/support/dialogs.h"

namespace allocations {

/// Answers every dialog that comes, and none need come: files with `file`, boxes with OK.
class Answers : public support::Dialogs {
public:
    explicit Answers(std::string file = {}) : file_(std::move(file)) {}

    /// The texts of the boxes so far.
    const std::string& boxes() const { return boxes_; }

protected:
    int Enter(wxDialog* dialog) override {
        const Unwatched ours;
        if (const auto* const box = dynamic_cast<wxMessageDialog*>(dialog)) {
            boxes_ += box->GetMessage().utf8_string();
            return wxID_OK;
        }
        if (const auto* const files = dynamic_cast<wxFileDialog*>(dialog)) {
            announce(*files);
        }
        return Dialogs::Enter(dialog);
    }

private:
    void announce(const wxFileDialog& files) {
        constexpr long Flags = wxFD_OPEN | wxFD_SAVE | wxFD_OVERWRITE_PROMPT | wxFD_FILE_MUST_EXIST;
        expectFile({files.GetMessage(), files.GetWildcard(), files.GetWindowStyle() & Flags,
                    files.GetFilename()},
                   wxString::FromUTF8(file_));
    }

    std::string file_;
    std::string boxes_;
};

}  // namespace allocations

#endif
