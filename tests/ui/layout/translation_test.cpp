// The texts that pass through the toolkit's translation lookup, with a catalogue that changes them.

#include <gmock/gmock.h>
#include <wx/filedlg.h>
#include <wx/translation.h>

#include <algorithm>
#include <string>
#include <vector>

#include "device/interfaceUSB.h"
#include "tests/support/window_test.h"

namespace {

using support::Members;
using Texts = std::vector<std::string>;

// clang-format off
/// The window's title, its menus with their items, its controls in their order. Empty: the radio
/// button whose caption is the text behind it, the choice and the slider.
const Texts InTheWindow = {
    "LUMADOT Spectra",
    "File", "Load Config", "Save Config", "Load Palette", "Save Palette",
    "Device", "Load Config", "Save Config", "Save Palette", "Upload File", "Reset",
    "Help", "About",
    "PinMame mode with input from :", "USB port",
    "Pinball mode with input from :", "", "Bally/Williams", "Stern S.A.M.", "Stern Whitestar",
    "Stern Spike", "Data East / Sega", "Premier Gottlieb V1", "Premier Gottlieb V2",
    "Premier Gottlieb V3", "Capcom", "Alvin G", "Spooky", "Data East 128x16", "Inder / SPinball",
    "Sleic / Petaco", "HomePin",
    "Signal Enhancer", "Create Dump File",
    "Select Palette", "",
    "Custom Palette", "0", "1", "2", "3", "4", "5", "6", "7",
                      "8", "9", "10", "11", "12", "13", "14", "15",
    "Brightness", ""};

const Texts Elsewhere = {"Sega192x64", "Open Config file", "Save Config file", "Open PAL file",
                         "Save PAL file"};

const Texts NotTranslated = {
    "Palette 0 (VGA)",  "Palette 1 (Red)",    "Palette 2 (Green)",
    "Palette 3 (Blue)", "Palette 4 (Violet)", "Palette 5 (Cyan)",
    "Palette 6 (Yellow)", "Palette 7 (White)", "Palette 8 (Orange)"};
// clang-format on

std::string translated(const std::string& text) { return text.empty() ? "" : "[" + text + "]"; }

/// A compiled catalogue that puts all these texts in brackets.
class Catalogue {
public:
    Catalogue() {
        Texts all = InTheWindow;
        all.insert(all.end(), Elsewhere.begin(), Elsewhere.end());
        all.insert(all.end(), NotTranslated.begin(), NotTranslated.end());
        std::ranges::sort(all);
        all.erase(std::unique(all.begin(), all.end()), all.end());
        Texts brackets;
        std::ranges::transform(all, std::back_inserter(brackets), translated);
        brackets.front() = "Content-Type: text/plain; charset=UTF-8\n";  // The empty text's.

        constexpr std::uint32_t Magic = 0x950412DE, Version = 0, HeaderSize = 28, EntrySize = 8;
        const auto count = static_cast<std::uint32_t>(all.size());
        const std::uint32_t originals = HeaderSize, translations = originals + EntrySize * count;
        texts_ = translations + EntrySize * count;
        for (const std::uint32_t word :
             {Magic, Version, count, originals, translations, 0U, texts_}) {
            append(word);
        }
        for (const Texts& part : {all, brackets}) {
            for (const std::string& text : part) {
                addEntry(text);
            }
        }
        bytes_ += pool_;
    }

    wxScopedCharBuffer data() const {
        return wxScopedCharBuffer::CreateNonOwned(bytes_.data(), bytes_.size());
    }

private:
    void append(std::uint32_t word) {
        bytes_.append(reinterpret_cast<const char*>(&word), sizeof word);
    }
    void addEntry(const std::string& text) {
        append(static_cast<std::uint32_t>(text.size()));
        append(texts_ + static_cast<std::uint32_t>(pool_.size()));
        pool_ += text + '\0';
    }

    std::string bytes_, pool_;
    std::uint32_t texts_ = 0;  ///< where the texts begin
};

class Loader : public wxTranslationsLoader {
public:
    wxMsgCatalog* LoadCatalog(const wxString& domain, const wxString&) override {
        return wxMsgCatalog::CreateFromData(catalogue_.data(), domain);
    }
    wxArrayString GetAvailableTranslations(const wxString&) const override {
        return wxArrayString{1, std::array<const char*, 1>{"de"}.data()};
    }

private:
    Catalogue catalogue_;
};

class Translation : public support::WindowTest {
protected:
    Translation() {
        wxTranslations::Set(new wxTranslations);
        wxTranslations::Get()->SetLoader(new Loader);
        wxTranslations::Get()->SetLanguage("de");
        EXPECT_TRUE(wxTranslations::Get()->AddCatalog("test"));
        open();
    }
    ~Translation() override { wxTranslations::Set(nullptr); }

    Texts shown() {
        Texts texts = {window().GetTitle().utf8_string()};
        const wxMenuBar& bar = *window().GetMenuBar();
        for (std::size_t menu = 0; menu < bar.GetMenuCount(); ++menu) {
            texts.push_back(bar.GetMenuLabel(menu).utf8_string());
            for (const wxMenuItem* item : bar.GetMenu(menu)->GetMenuItems()) {
                texts.push_back(item->GetItemLabel().utf8_string());
            }
        }
        for (const wxWindow* child : window().GetChildren()) {
            texts.push_back(child->GetLabel().utf8_string());
        }
        return texts;
    }

    /// The menu item brings a file dialog with this title.
    void expectTitle(wxMenuItem* MainFrameBaseClass::*item, const std::string& title) {
        dialogs.expect([&](wxDialog& dialog) -> int {
            EXPECT_EQ(dynamic_cast<wxFileDialog&>(dialog).GetMessage().utf8_string(), title);
            return wxID_CANCEL;
        });
        support::send(window(), the(item));
    }
};

TEST_F(Translation, ChangesTheTitleTheMenusAndTheLabels) {
    Texts expected;
    std::ranges::transform(InTheWindow, std::back_inserter(expected), translated);
    EXPECT_EQ(shown(), expected);
}

TEST_F(Translation, LeavesTheNamesOfThePresets) {
    Texts items;
    for (const wxString& item : the(&Members::set_pal).GetStrings()) {
        items.push_back(item.utf8_string());
    }
    EXPECT_EQ(items, NotTranslated);
}

TEST_F(Translation, ChangesTheCaptionOfTheFirstPlatformOnEitherBoard) {
    UIDString[0] = 'X';
    window().setConfig(config);
    EXPECT_EQ(the(&Members::wpc_Label).GetLabel(), "[Sega192x64]");
    UIDString[0] = '\0';
    window().setConfig(config);
    EXPECT_EQ(the(&Members::wpc_Label).GetLabel(), "[Bally/Williams]");
}

TEST_F(Translation, ChangesTheTitlesOfTheFileDialogs) {
    expectTitle(&Members::load_config, "[Open Config file]");
    expectTitle(&Members::save_config, "[Save Config file]");
    expectTitle(&Members::load_palette, "[Open PAL file]");
    expectTitle(&Members::save_palette, "[Save PAL file]");
    expectTitle(&Members::upload_Device, "[Upload File]");
}

}  // namespace
