#ifndef LUMADOT_TESTS_SUPPORT_MESSAGE_BOX_H
#define LUMADOT_TESTS_SUPPORT_MESSAGE_BOX_H

#include <gmock/gmock.h>
#include <wx/msgdlg.h>

#include <functional>
#include <utility>

#include "tests/support/dialogs.h"

namespace support {

/// Announces a message box of the toolkit's plain kind: its own caption, an OK button, centred.
/// `meanwhile` runs when the box comes.
inline void expectPlainMessage(
    Dialogs& dialogs, const wxString& text, std::function<void()> meanwhile = [] {}) {
    dialogs.expect([text, meanwhile = std::move(meanwhile)](wxDialog& dialog) -> int {
        const auto* const box = dynamic_cast<wxMessageDialog*>(&dialog);
        EXPECT_NE(box, nullptr) << "another kind of dialog came: " << dialog.GetTitle();
        if (box != nullptr) {
            EXPECT_EQ(box->GetMessage(), text);
            EXPECT_EQ(box->GetTitle(), "Message");
            // The toolkit chooses the icon.
            EXPECT_EQ(box->GetMessageDialogStyle() & ~wxICON_MASK, wxOK | wxCENTRE);
        }
        meanwhile();
        return wxID_OK;
    });
}

}  // namespace support

#endif
