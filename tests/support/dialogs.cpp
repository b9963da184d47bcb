#include "tests/support/dialogs.h"

#include <gmock/gmock.h>
#include <wx/colordlg.h>
#include <wx/dirdlg.h>
#include <wx/filedlg.h>
#include <wx/msgdlg.h>
#include <wx/textdlg.h>

#include <cstring>
#include <string>

#ifndef _WIN32
#include "tests/support/gtk.h"
#endif

#ifndef _WIN32
namespace {

/// What the file dialog on the screen would hold, in the file system's encoding.
std::string chosenFile;

}  // namespace

/// Stands in front of GTK's function of this name. A native dialog that never came to the screen
/// has no file to tell, and it is the only place where `wxFileDialog::GetPath` looks.
extern "C" char* gtk_file_chooser_get_filename(void* /*chooser*/) {
    return chosenFile.empty() ? nullptr : strdup(chosenFile.c_str());
}

#endif

namespace support {

namespace {

#ifdef _WIN32

/// Here the dialogs keep themselves what was chosen.
void showColour(wxColourDialog& dialog, const wxColour& colour) {
    dialog.GetColourData().SetColour(colour);
}
void chooseFile(wxFileDialog& dialog, const wxString& path) { dialog.SetPath(path); }
void forgetFile() {}

#else

/// Sets the native dialog's colour, which is read back when the dialog is closed with OK.
void showColour(wxColourDialog& dialog, const wxColour& colour) {
    struct Rgba {
        double red, green, blue, alpha;
    };
    const Rgba rgba{colour.Red() / 255.0, colour.Green() / 255.0, colour.Blue() / 255.0, 1.0};
    void* const selection =
        gtk<void*(void*)>("gtk_color_selection_dialog_get_color_selection")(dialog.GetHandle());
    gtk<void(void*, const Rgba*)>("gtk_color_selection_set_current_rgba")(selection, &rgba);
}

void chooseFile(wxFileDialog& /*dialog*/, const wxString& path) { chosenFile = path.utf8_string(); }
void forgetFile() { chosenFile.clear(); }

#endif

/// The folder dialog copies its path from the native dialog when that one is closed.
struct FolderDialog : wxDirDialog {
    static void choose(wxDirDialog& dialog, const wxString& path) {
        dialog.*(&FolderDialog::m_path) = path;
    }
};

/// The dialog as the kind that was announced; another kind fails the test.
template <typename Kind>
Kind* as(wxDialog& dialog) {
    auto* const kind = dynamic_cast<Kind*>(&dialog);
    EXPECT_NE(kind, nullptr) << "another kind of dialog came: " << dialog.GetTitle();
    return kind;
}

}  // namespace

Dialogs::~Dialogs() {
    Unregister();
    forgetFile();
    EXPECT_EQ(answers_.size(), 0U) << "announced dialogs that never came";
}

int Dialogs::Enter(wxDialog* dialog) {
    ++seen_;
    if (answers_.empty()) {
        const auto* const box = dynamic_cast<wxMessageDialog*>(dialog);
        ADD_FAILURE() << "dialog that nobody announced: "
                      << (box != nullptr ? box->GetMessage() : dialog->GetTitle());
        return wxID_CANCEL;
    }
    const Answer answer = std::move(answers_.front());
    answers_.pop_front();
    return answer(*dialog);
}

void Dialogs::expectMessage(const wxString& text, const wxString& caption) {
    expect([=](wxDialog& dialog) -> int {
        if (const auto* const box = as<wxMessageDialog>(dialog)) {
            EXPECT_EQ(box->GetMessage(), text);
            EXPECT_EQ(box->GetTitle(), caption);
            constexpr long Buttons = wxOK | wxCANCEL | wxYES_NO | wxHELP;
            EXPECT_EQ(box->GetMessageDialogStyle() & Buttons, wxOK);
        }
        return wxID_OK;
    });
}

void Dialogs::expectFile(const FileQuestion& question, const std::optional<wxString>& path) {
    expect([=](wxDialog& dialog) -> int {
        auto* const files = as<wxFileDialog>(dialog);
        if (files == nullptr) {
            return wxID_CANCEL;
        }
        forgetFile();
        EXPECT_EQ(files->GetMessage(), question.title);
        EXPECT_EQ(files->GetWildcard(), question.wildcard);
        constexpr long Flags = wxFD_OPEN | wxFD_SAVE | wxFD_OVERWRITE_PROMPT |
                               wxFD_FILE_MUST_EXIST | wxFD_MULTIPLE | wxFD_CHANGE_DIR |
                               wxFD_PREVIEW;
        EXPECT_EQ(files->GetWindowStyle() & Flags, question.style);
        EXPECT_EQ(files->GetDirectory(), wxString());
        EXPECT_EQ(files->GetFilename(), question.proposedName);
        if (!path) {
            return wxID_CANCEL;
        }
        chooseFile(*files, *path);
        return wxID_OK;
    });
}

void Dialogs::expectFolder(const wxString& title, long style, const std::optional<wxString>& path) {
    expect([=](wxDialog& dialog) -> int {
        auto* const folders = as<wxDirDialog>(dialog);
        if (folders == nullptr) {
            return wxID_CANCEL;
        }
        EXPECT_EQ(folders->GetMessage(), title);
        EXPECT_EQ(folders->GetPath(), "");
        constexpr long Flags = wxDD_DIR_MUST_EXIST | wxDD_CHANGE_DIR | wxDD_MULTIPLE;
        EXPECT_EQ(folders->GetWindowStyle() & (style | Flags), style);
        if (!path) {
            return wxID_CANCEL;
        }
        FolderDialog::choose(*folders, *path);
        return wxID_OK;
    });
}

void Dialogs::expectText(const wxString& message, const wxString& caption, const wxString& proposed,
                         const std::optional<wxString>& text) {
    expect([=](wxDialog& dialog) -> int {
        auto* const entry = as<wxTextEntryDialog>(dialog);
        if (entry == nullptr) {
            return wxID_CANCEL;
        }
        EXPECT_EQ(entry->GetTitle(), caption);
        EXPECT_EQ(entry->GetValue(), proposed);
        bool found = false;
        for (const wxWindow* child : entry->GetChildren()) {
            found = found || child->GetLabel() == message;
        }
        EXPECT_TRUE(found) << "the dialog does not say: " << message;
        if (!text) {
            return wxID_CANCEL;
        }
        entry->SetValue(*text);
        return wxID_OK;
    });
}

void Dialogs::expectColour(const wxColour& initial, const std::optional<wxColour>& picked) {
    expect([=](wxDialog& dialog) -> int {
        auto* const colours = as<wxColourDialog>(dialog);
        if (colours == nullptr) {
            return wxID_CANCEL;
        }
        EXPECT_EQ(colours->GetColourData().GetColour().GetAsString(), initial.GetAsString());
        if (!picked) {
            return wxID_CANCEL;
        }
        showColour(*colours, *picked);
        return wxID_OK;
    });
}

}  // namespace support
