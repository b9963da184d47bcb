#include "ui/MainFrame.h"

#include <wx/aboutdlg.h>
#include <wx/colordlg.h>
#include <wx/dirdlg.h>
#include <wx/filedlg.h>
#include <wx/msgdlg.h>
#include <wx/textdlg.h>
#include <wx/utils.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "accessibility/accessibility.h"
#include "device/command_frame.h"
#include "device/file_stream.h"
#include "device/interfaceUSB.h"
#include "device/narrow_text.h"
#include "device/wire.h"
#include "ui/palette.h"
#include "ui/palette_file.h"

namespace {

/// The command's code, as `sendConfigCmd` takes it.
constexpr char codeOf(Command command) { return static_cast<char>(command); }

/// What happened to the window while a capture was running further down the call stack.
struct {
    bool running = false;
    bool closeAsked = false;
    std::optional<wxString> nextFolder;
} captures;

constexpr const char* ConfigFiles = "Config files (lumadot.dat)|lumadot.dat";
constexpr const char* PaletteFiles = "Palette files (*.pal)|*.pal";

constexpr const char* FileError = "File Error";

/// A text from the controller; bytes that cannot be decoded as \xNN.
wxString shown(const char* text) {
    const wxString decoded(text, narrowEncoding());
    if (!decoded.empty()) {
        return decoded;
    }
    wxString escaped;
    for (; *text != '\0'; ++text) {
        const auto byte = static_cast<unsigned char>(*text);
        escaped += byte < 0x80 ? wxString(*text) : wxString::Format("\\x%02X", byte);
    }
    return escaped;
}

/// A channel's share of the light, 0..1, from its value on the screen.
double lightOf(unsigned char channel) {
    const double value = channel / 255.0;
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

/// Black or white, whichever stands out more from this background (4.5:1 at least).
const wxColour& textColourOn(const wxColour& background) {
    constexpr double AsFarFromBlackAsFromWhite = 0.179;
    const double light = 0.2126 * lightOf(background.Red()) + 0.7152 * lightOf(background.Green()) +
                         0.0722 * lightOf(background.Blue());
    return light > AsFarFromBlackAsFromWhite ? *wxBLACK : *wxWHITE;
}

/// Shows a palette entry on its button.
void paint(wxButton& button, const wxColour& colour) {
    button.SetBackgroundColour(colour);
    button.SetForegroundColour(textColourOn(colour));
    accessibility::setDescription(
        button, wxString::Format(_("red %d, green %d, blue %d"), colour.Red(), colour.Green(),
                                 colour.Blue()));
}

}  // namespace

MainFrame::MainFrame(wxWindow* parent) : MainFrameBaseClass(parent) {
    Bind(wxEVT_CLOSE_WINDOW, &MainFrame::onClose, this);
    wpc_Label->Bind(wxEVT_LEFT_UP, &MainFrame::onFirstPlatformsCaption, this);
    for (const auto button : colourButtons) {
        accessibility::keepReadable(*(this->*button));
    }
    Bind(wxEVT_IDLE, &MainFrame::onFirstIdle, this);
    config = usb.getSettings(config, versionString);
    usb.getUniqueId(UIDString);
    setConfig(config);
}

void MainFrame::setConfig(configDescriptor /*settings*/) {
    brightness_Slider->SetValue(config.brightness);
    enhancer_CheckBox->SetValue(config.enhancer != 0);
    set_pal->SetSelection(config.paletteIndex);
    switchPalette(config.paletteIndex);
    showBoardVariant();
    // Kept for compatibility: mode 0 checks nothing, the button that was checked stays checked.
    if (config.inputMode != 0 && config.inputMode < modeButtons.size()) {
        (this->*modeButtons[config.inputMode])->SetValue(true);
    }
    Refresh();
}

/// The large board has the modes 0 and 1 only, and mode 1 has a caption of its own there.
void MainFrame::showBoardVariant() {
    constexpr std::size_t FirstHidden = 2;
    const bool large = unique_id::isLargeBoard(UIDString[0]);
    wpc_Label->SetLabel(large ? _("Sega192x64") : labelOf(InputMode::WPC));
    accessibility::setName(*set_WPC, wpc_Label->GetLabel());
    for (std::size_t mode = FirstHidden; mode < modeButtons.size(); ++mode) {
        (this->*modeButtons[mode])->Show(!large);
    }
    Layout();  // Otherwise the gaps would close at the next resize only.
}

void MainFrame::switchPalette(unsigned char index) {
    if (index < presets::Count) {
        palette = presets::colours(index);
    }
    setPal(palette.data());
}

void MainFrame::setPal(unsigned char* pal) {
    for (std::size_t i = 0; i < PaletteEntries; ++i) {
        const unsigned char* const entry = pal + 3 * i;
        paint(*(this->*colourButtons[i]), wxColour(entry[0], entry[1], entry[2]));
    }
}

void MainFrame::showShades(ShadeSet shades) {
    for (std::size_t i = 0; i < PaletteEntries; ++i) {
        (this->*colourButtons[i])->Show(isShown(shades, i));
    }
    Layout();  // Otherwise the gaps would close at the next resize only.
}

void MainFrame::set4Colour() { showShades(ShadeSet::Four); }
void MainFrame::set5Colour() { showShades(ShadeSet::Five); }
void MainFrame::set16Colour() { showShades(ShadeSet::Sixteen); }

void setColour(wxWindow* parent, wxButton* button, int index) {
    wxColour colour = button->GetBackgroundColour();
    wxColourData data;
    data.SetColour(colour);
    wxColourDialog dialog(parent, &data);
    if (dialog.ShowModal() == wxID_OK) {
        colour = dialog.GetColourData().GetColour();
    }
    paint(*button, colour);
    unsigned char* const entry = palette.data() + 3 * static_cast<std::ptrdiff_t>(index);
    entry[0] = colour.Red();
    entry[1] = colour.Green();
    entry[2] = colour.Blue();
    usb.sendPal(palette.data());
}

void MainFrame::OnLoad_configMenuSelected(wxCommandEvent&) {
    wxFileDialog dialog(this, _("Open Config file"), "", "", ConfigFiles,
                        wxFD_OPEN | wxFD_FILE_MUST_EXIST);
    if (dialog.ShowModal() == wxID_CANCEL) {
        return;
    }
    file::Stream stream = file::open(narrowText(dialog.GetPath()).c_str(), "rb");
    if (!stream) {
        wxMessageBox(FileError);
        return;
    }
    file::Head head = file::readHead(stream.get(), settings::FileHead);
    const auto record = settings::fromFile({head.bytes.get(), head.size});
    if (!record) {
        wxMessageBox(FileError);
        // Kept for compatibility: the buffer stays allocated and the file open.
        static_cast<void>(head.bytes.release());
        static_cast<void>(stream.release());
        return;
    }
    config = *record;
    setConfig(config);
}

/// Kept for compatibility: says nothing, neither of success nor, unlike the saving of a palette, of
/// failure.
void MainFrame::OnSave_configMenuSelected(wxCommandEvent&) {
    wxFileDialog dialog(this, _("Save Config file"), "", "", ConfigFiles,
                        wxFD_SAVE | wxFD_OVERWRITE_PROMPT);
    dialog.SetFilename("lumadot.dat");
    if (dialog.ShowModal() == wxID_CANCEL) {
        return;
    }
    if (const file::Stream stream = file::open(narrowText(dialog.GetPath()).c_str(), "wb")) {
        const auto bytes = settings::bytesOf(config);
        std::fwrite(bytes.data(), 1, bytes.size(), stream.get());
    }
}

void MainFrame::OnLoad_paletteMenuSelected(wxCommandEvent&) {
    wxFileDialog dialog(this, _("Open PAL file"), "", "", PaletteFiles,
                        wxFD_OPEN | wxFD_FILE_MUST_EXIST);
    if (dialog.ShowModal() == wxID_CANCEL) {
        return;
    }
    const file::Stream stream = file::open(narrowText(dialog.GetPath()).c_str(), "rb");
    if (!stream) {
        wxMessageBox(FileError);
        return;
    }
    const file::Head head = file::readHead(stream.get(), palette_file::Size);
    if (const auto colours = palette_file::decode({head.bytes.get(), head.size})) {
        palette = *colours;
    }
    setPal(palette.data());
}

void MainFrame::OnSave_paletteMenuSelected(wxCommandEvent&) {
    wxFileDialog dialog(this, _("Save PAL file"), "", "", PaletteFiles,
                        wxFD_SAVE | wxFD_OVERWRITE_PROMPT);
    dialog.SetFilename("lumadot.pal");
    if (dialog.ShowModal() == wxID_CANCEL) {
        return;
    }
    // Before the file is opened, which empties it: what takes memory must not come after that.
    auto bytes = std::make_unique<palette_file::Bytes>(palette_file::encode(palette));
    const file::Stream stream = file::open(narrowText(dialog.GetPath()).c_str(), "wb");
    if (!stream) {
        wxMessageBox(FileError);
        static_cast<void>(bytes.release());  // Kept for compatibility: they stay allocated.
        return;
    }
    std::fwrite(bytes->data(), 1, bytes->size(), stream.get());
}

void MainFrame::OnLoad_DeviceMenuSelected(wxCommandEvent&) {
    config = usb.getSettings(config, versionString);
    usb.getUniqueId(UIDString);
    wxMessageBox(wxString::Format("Firmware Version: %s\nUnique ID: %s", shown(versionString),
                                  shown(UIDString)),
                 "Configuration Loaded", wxOK | wxCENTRE);
    setConfig(config);  // When the box has been closed: until then the window shows the old ones.
}

void MainFrame::OnSave_DeviceMenuSelected(wxCommandEvent&) {
    usb.sendConfig(config);
    wxMilliSleep(wire::StorePause);
    usb.sendConfigCmd(codeOf(Command::Store), 0);
}

void MainFrame::OnPalette_DeviceMenuSelected(wxCommandEvent&) {
    usb.sendConfigCmd(codeOf(Command::SelectPreset), 0);
    usb.sendPal(palette.data());
    usb.sendConfigCmd(codeOf(Command::StorePalette), 0);
}

void MainFrame::OnUpload_DeviceMenuSelected(wxCommandEvent&) {
    wxFileDialog files(this, _("Upload File"), "", "", "All files (*.*)|*.*",
                       wxFD_OPEN | wxFD_FILE_MUST_EXIST);
    if (files.ShowModal() == wxID_CANCEL) {
        return;
    }
    wxTextEntryDialog names(this, "Destination Filename", "Upload File", "",
                            wxOK | wxCANCEL | wxCENTRE);
    names.SetValue(files.GetFilename());
    if (names.ShowModal() == wxID_CANCEL) {
        return;
    }
    const std::string name = narrowText(names.GetValue());
    if (name.empty() && !names.GetValue().empty()) {
        wxMessageBox(FileError);  // The locale has no bytes for it; an empty name is another one.
        return;
    }
    usb.uploadFile(narrowText(files.GetPath()).c_str(), name.c_str());
}

void MainFrame::OnReset_DeviceMenuSelected(wxCommandEvent&) {
    usb.sendConfigCmd(codeOf(Command::Reset), 0);
    wxMilliSleep(wire::RestartPause);
    config = usb.getSettings(config, versionString);
    setConfig(config);
}

void MainFrame::OnExit(wxCommandEvent&) { Close(); }

void MainFrame::OnAbout(wxCommandEvent&) {
    wxAboutDialogInfo info;
    info.SetName("LUMADOT Tool");
    info.SetVersion("V" LUMADOT_VERSION);
    info.SetDescription(__TIME__);
    info.SetCopyright(__DATE__);
    wxAboutBox(info);
}

/// Shows the mode's shades, remembers the mode and switches the controller to it at once.
void MainFrame::selectInputMode(InputMode mode) {
    constexpr std::array ShowShades = {&MainFrame::set4Colour, &MainFrame::set5Colour,
                                       &MainFrame::set16Colour};  // By ShadeSet.
    const InputModeInfo& info = inputMode(mode);
    (this->*ShowShades.at(static_cast<std::size_t>(info.shades)))();
    config.inputMode = info.number;
    usb.sendConfigCmd(codeOf(Command::SelectMode), static_cast<char>(config.inputMode));
}

void MainFrame::OnSet_PinMame(wxCommandEvent&) { selectInputMode(InputMode::PinMame); }
void MainFrame::OnSet_WPC(wxCommandEvent&) { selectInputMode(InputMode::WPC); }
void MainFrame::OnSet_Stern(wxCommandEvent&) { selectInputMode(InputMode::Stern); }
void MainFrame::OnSet_WhiteStar(wxCommandEvent&) { selectInputMode(InputMode::WhiteStar); }
void MainFrame::OnSet_Spike(wxCommandEvent&) { selectInputMode(InputMode::Spike); }
void MainFrame::OnSet_DataEast(wxCommandEvent&) { selectInputMode(InputMode::DataEast); }
void MainFrame::OnSet_Gottlieb1(wxCommandEvent&) { selectInputMode(InputMode::Gottlieb1); }
void MainFrame::OnSet_Gottlieb2(wxCommandEvent&) { selectInputMode(InputMode::Gottlieb2); }
void MainFrame::OnSet_Gottlieb3(wxCommandEvent&) { selectInputMode(InputMode::Gottlieb3); }
void MainFrame::OnSet_Capcom(wxCommandEvent&) { selectInputMode(InputMode::Capcom); }
void MainFrame::OnSet_AlvinG(wxCommandEvent&) { selectInputMode(InputMode::AlvinG); }
void MainFrame::OnSet_Spooky(wxCommandEvent&) { selectInputMode(InputMode::Spooky); }
void MainFrame::OnSet_DE128x16(wxCommandEvent&) { selectInputMode(InputMode::DE128x16); }
void MainFrame::OnSet_Inder(wxCommandEvent&) { selectInputMode(InputMode::Inder); }
void MainFrame::OnSet_Sleic(wxCommandEvent&) { selectInputMode(InputMode::Sleic); }
void MainFrame::OnSet_HomePin(wxCommandEvent&) { selectInputMode(InputMode::HomePin); }

/// A click on the text beside the button, which is no part of it, does what a click on it does.
void MainFrame::onFirstPlatformsCaption(wxMouseEvent& event) {
    event.Skip();
    if (set_WPC->GetValue()) {
        return;
    }
    set_WPC->SetFocus();
    set_WPC->SetValue(true);
    wxCommandEvent selected(wxEVT_RADIOBUTTON, set_WPC->GetId());
    selected.SetEventObject(set_WPC);
    selected.SetInt(1);
    set_WPC->ProcessWindowEvent(selected);
}

/// When the toolkit is idle for the first time it takes each text for the caption of the control
/// after it. Two of them are headings, and one stands behind its button.
void MainFrame::onFirstIdle(wxIdleEvent& event) {
    event.Skip();
    Unbind(wxEVT_IDLE, &MainFrame::onFirstIdle, this);
    accessibility::setCaptionOf(*pinball_Label, nullptr);
    accessibility::setCaptionOf(*custom_Label, nullptr);
    accessibility::setCaptionOf(*wpc_Label, set_WPC);
}

/// The record's byte only: the controller hears of it when the settings are saved.
void MainFrame::enhancer_CheckBox_Clicked(wxCommandEvent& event) {
    config.enhancer = event.IsChecked() ? 1 : 0;
}

void MainFrame::dump_CheckBox_Clicked(wxCommandEvent& event) {
    if (!event.IsChecked()) {
        dump_running = false;
        captures.nextFolder.reset();
        return;
    }
    config = usb.getSettings(config, versionString);
    setConfig(config);
    wxDirDialog dialog(nullptr, "Choose dump directory", "",
                       wxDD_DEFAULT_STYLE | wxDD_DIR_MUST_EXIST);
    if (dialog.ShowModal() == wxID_CANCEL) {
        dump_CheckBox->SetValue(false);
        return;
    }
    capture(dialog.GetPath());
}

/// Captures into `folder` until the box is unticked or the window is closed, not at all without a
/// controller, and goes on with the next folder if the box was ticked again before the capture had
/// come to its end: inside its own event handling it could neither be left nor be heard.
void MainFrame::capture(const wxString& folder) {
    if (captures.closeAsked) {
        return;
    }
    captures.nextFolder = folder;
    if (captures.running) {
        dump_running = false;
        return;
    }
    captures.running = true;
    while (captures.nextFolder) {
        const wxString current = *std::exchange(captures.nextFolder, std::nullopt);
        dump_running = true;
        usb.receiveDump(config.inputMode, current);
    }
    captures.running = false;
    if (captures.closeAsked) {
        captures.closeAsked = false;
        Close();
    }
}

/// A capture runs inside a handler of this window, which must outlive it.
void MainFrame::onClose(wxCloseEvent& event) {
    if (!captures.running) {
        event.Skip();
        return;
    }
    dump_running = false;
    captures.nextFolder.reset();
    captures.closeAsked = true;
    if (event.CanVeto()) {
        event.Veto();
    }
}

void MainFrame::OnSet_palChoiceSelected(wxCommandEvent&) {
    const int selection = set_pal->GetSelection();
    config.paletteIndex = static_cast<std::uint8_t>(selection);
    switchPalette(config.paletteIndex);
    usb.sendConfigCmd(codeOf(Command::SelectPreset), static_cast<char>(selection));
}

void MainFrame::OnSet_col0ButtonClicked(wxCommandEvent&) { setColour(this, set_col0, 0); }
void MainFrame::OnSet_col1ButtonClicked(wxCommandEvent&) { setColour(this, set_col1, 1); }
void MainFrame::OnSet_col2ButtonClicked(wxCommandEvent&) { setColour(this, set_col2, 2); }
void MainFrame::OnSet_col3ButtonClicked(wxCommandEvent&) { setColour(this, set_col3, 3); }
void MainFrame::OnSet_col4ButtonClicked(wxCommandEvent&) { setColour(this, set_col4, 4); }
void MainFrame::OnSet_col5ButtonClicked(wxCommandEvent&) { setColour(this, set_col5, 5); }
void MainFrame::OnSet_col6ButtonClicked(wxCommandEvent&) { setColour(this, set_col6, 6); }
void MainFrame::OnSet_col7ButtonClicked(wxCommandEvent&) { setColour(this, set_col7, 7); }
void MainFrame::OnSet_col8ButtonClicked(wxCommandEvent&) { setColour(this, set_col8, 8); }
void MainFrame::OnSet_col9ButtonClicked(wxCommandEvent&) { setColour(this, set_col9, 9); }
void MainFrame::OnSet_col10ButtonClicked(wxCommandEvent&) { setColour(this, set_col10, 10); }
void MainFrame::OnSet_col11ButtonClicked(wxCommandEvent&) { setColour(this, set_col11, 11); }
void MainFrame::OnSet_col12ButtonClicked(wxCommandEvent&) { setColour(this, set_col12, 12); }
void MainFrame::OnSet_col13ButtonClicked(wxCommandEvent&) { setColour(this, set_col13, 13); }
void MainFrame::OnSet_col14ButtonClicked(wxCommandEvent&) { setColour(this, set_col14, 14); }
void MainFrame::OnSet_col15ButtonClicked(wxCommandEvent&) { setColour(this, set_col15, 15); }

void MainFrame::OnTrack_Brightness(wxScrollEvent&) {
    config.brightness = static_cast<std::uint8_t>(brightness_Slider->GetValue());
    usb.setBrightness(config.brightness);
}
