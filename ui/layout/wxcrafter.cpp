#include "ui/layout/wxcrafter.h"

#include <wx/config.h>
#include <wx/log.h>
#include <wx/persist/toplevel.h>
#include <wx/xrc/xh_bmp.h>
#include <wx/xrc/xmlres.h>

#include <cstddef>
#include <string>
#include <string_view>

#include "device/settings_record.h"
#include "platform/window_icon.h"
#include "ui/layout/dialog_frame.h"
#include "ui/layout/wxcrafter_bitmaps.h"
#include "ui/palette.h"

//  +-- LUMADOT Spectra ------------------------------------------+
//  | File  Device  Help                                          |
//  +-------------------------------------------------------------+
//  | PinMame mode with input from :        Select Palette        |
//  | (o) USB port                        [ Palette 0 (VGA)  v ]  |
//  | Pinball mode with input from :                              |
//  | ( ) Bally/Williams                    Custom Palette        |
//  | ( ) Stern S.A.M.                  [ 0 ] [ 1 ] [ 2 ] [ 3 ]   |
//  | ( ) Stern Whitestar               [ 4 ] [ 5 ] [ 6 ] [ 7 ]   |
//  |  :  eleven more                   [ 8 ] [ 9 ] [10 ] [11 ]   |
//  | ( ) HomePin                       [12 ] [13 ] [14 ] [15 ]   |
//  | [ ] Signal Enhancer                     Brightness          |
//  | [ ] Create Dump File                -o------------------    |
//  +-------------------------------------------------------------+

bool bBitmapLoaded = false;

using Base = MainFrameBaseClass;

const std::array<wxRadioButton * Base::*, 16> Base::modeButtons = {
    &Base::set_PinMame,   &Base::set_WPC,      &Base::set_Stern,     &Base::set_WhiteStar,
    &Base::set_Spike,     &Base::set_DataEast, &Base::set_Gottlieb1, &Base::set_Gottlieb2,
    &Base::set_Gottlieb3, &Base::set_Capcom,   &Base::set_AlvinG,    &Base::set_Spooky,
    &Base::set_DE128x16,  &Base::set_Inder,    &Base::set_Sleic,     &Base::set_HomePin};

const std::array<wxButton * Base::*, 16> Base::colourButtons = {
    &Base::set_col0,  &Base::set_col1,  &Base::set_col2,  &Base::set_col3,
    &Base::set_col4,  &Base::set_col5,  &Base::set_col6,  &Base::set_col7,
    &Base::set_col8,  &Base::set_col9,  &Base::set_col10, &Base::set_col11,
    &Base::set_col12, &Base::set_col13, &Base::set_col14, &Base::set_col15};

namespace {

/// What the colour buttons show until a palette is painted on them.
constexpr std::array FirstColours = {
    "rgb(0,0,0)",       "rgb(128,0,0)",   "rgb(255,0,0)",   "rgb(255,0,255)",
    "rgb(0,128,128)",   "rgb(0,128,0)",   "rgb(0,255,0)",   "rgb(0,255,255)",
    "rgb(0,0,128)",     "rgb(128,0,128)", "rgb(0,0,255)",   "rgb(64,64,64)",
    "rgb(128,128,128)", "rgb(128,128,0)", "rgb(255,255,0)", "rgb(255,255,255)"};

constexpr int Border = 5;  // device-independent pixels

void registerResourcesOnce() {
    if (!bBitmapLoaded) {
        wxXmlResource::Get()->AddHandler(new wxBitmapXmlHandler);
        wxC9ED9InitBitmapResources();
        bBitmapLoaded = true;
    }
}

wxFlexGridSizer* flexGrid(int columns) {
    auto* grid = new wxFlexGridSizer(0, columns, 0, 0);
    grid->SetFlexibleDirection(wxBOTH);
    grid->SetNonFlexibleGrowMode(wxFLEX_GROWMODE_SPECIFIED);
    return grid;
}

wxMenu* addMenu(wxMenuBar* bar, const wxString& title) {
    auto* menu = new wxMenu;
    bar->Append(menu, title);
    return menu;
}

wxMenuItem* addItem(wxMenu* menu, const wxString& label) {
    return menu->Append(new wxMenuItem(menu, wxID_ANY, label, wxEmptyString, wxITEM_NORMAL));
}

/// Writes the configuration while the program still stands: one that cannot be written (no home, a
/// full disk) is logged, and at the program's end the toolkit's log has nowhere to go. The next
/// window reads it anew.
void closeConfiguration() {
    const wxLogNull silent;
    delete wxConfigBase::Set(nullptr);
}

wxString textOf(std::string_view text) { return wxString::FromUTF8(text.data(), text.size()); }

}  // namespace

MainFrameBaseClass::MainFrameBaseClass(wxWindow* parent, wxWindowID id, const wxString& title,
                                       const wxPoint& pos, const wxSize& size, long style)
    : wxFrame(parent, id, title, pos, size, style) {
    registerResourcesOnce();
    buildMenus();

    auto* mainSizer = new wxBoxSizer(wxVERTICAL);
    SetSizer(mainSizer);
    wxFlexGridSizer* topGrid = flexGrid(3);  // The third column stays empty.
    mainSizer->Add(topGrid, 0, wxALL, FromDIP(Border));

    auto* modeColumn = new wxBoxSizer(wxVERTICAL);
    topGrid->Add(modeColumn, 0, wxALL, FromDIP(Border));
    fillModeColumn(modeColumn);
    auto* paletteColumn = new wxBoxSizer(wxVERTICAL);
    topGrid->Add(paletteColumn, 0, wxALL, FromDIP(Border));
    fillPaletteColumn(paletteColumn);

    setProgramIcon(*this);
    behaveAsDialog(*this);
    placeFrame();
    connectHandlers();
}

MainFrameBaseClass::~MainFrameBaseClass() { disconnectHandlers(); }

wxString MainFrameBaseClass::labelOf(InputMode mode) {
    return wxGetTranslation(textOf(inputMode(mode).label));
}

void MainFrameBaseClass::buildMenus() {
    m_menuBar = new wxMenuBar(0);
    SetMenuBar(m_menuBar);

    file_Menu = addMenu(m_menuBar, _("File"));
    load_config = addItem(file_Menu, _("Load Config"));
    save_config = addItem(file_Menu, _("Save Config"));
    load_palette = addItem(file_Menu, _("Load Palette"));
    save_palette = addItem(file_Menu, _("Save Palette"));

    // Three labels of the menu "File" again: here they mean the controller.
    device_Menu = addMenu(m_menuBar, _("Device"));
    load_Device = addItem(device_Menu, _("Load Config"));
    save_Device = addItem(device_Menu, _("Save Config"));
    palette_Device = addItem(device_Menu, _("Save Palette"));
    upload_Device = addItem(device_Menu, _("Upload File"));
    reset_Device = addItem(device_Menu, _("Reset"));

    help_Menu = addMenu(m_menuBar, _("Help"));
    about_Item = addItem(help_Menu, _("About"));
}

void MainFrameBaseClass::fillModeColumn(wxSizer* column) {
    const int border = FromDIP(Border);

    addLabel(column, pinmame_Label, _("PinMame mode with input from :"), 0);
    set_PinMame = addMode(column, labelOf(InputMode::PinMame), true);
    addLabel(column, pinball_Label, _("Pinball mode with input from :"), 0);

    // The first platform's caption is a text of its own, so that it can change with the board.
    wxFlexGridSizer* wpcRow = flexGrid(2);
    column->Add(wpcRow, 1, wxALL | wxEXPAND, border);
    set_WPC = new wxRadioButton(this, wxID_ANY, wxEmptyString);
    // GTK draws a button that is made with this flag without its ring.
    set_WPC->SetWindowStyleFlag(wxBORDER_NONE);
    set_WPC->SetValue(false);
    wpcRow->Add(set_WPC, 0, wxALL | wxEXPAND, 0);
    wpc_Label = new wxStaticText(this, wxID_ANY, labelOf(InputMode::WPC), wxDefaultPosition,
                                 wxDefaultSize, wxBORDER_NONE);
    wpcRow->Add(wpc_Label, 0, wxALL, 0);

    for (std::size_t mode = 2; mode < modeButtons.size(); ++mode) {
        this->*modeButtons[mode] = addMode(column, labelOf(static_cast<InputMode>(mode)), false);
    }

    column->Add(0, 0, 1, wxALL, border);
    enhancer_CheckBox = addCheckBox(column, _("Signal Enhancer"));
    dump_CheckBox = addCheckBox(column, _("Create Dump File"));
}

void MainFrameBaseClass::fillPaletteColumn(wxSizer* column) {
    const int border = FromDIP(Border);

    addLabel(column, palette_Label, _("Select Palette"), wxALIGN_CENTER_HORIZONTAL);
    wxArrayString names;
    for (const std::string_view name : presets::Names) {
        names.Add(textOf(name));
    }
    set_pal = new wxChoice(this, wxID_ANY, wxDefaultPosition, wxDefaultSize, names);
    set_pal->SetSelection(0);
    column->Add(set_pal, 0, wxALL | wxEXPAND, 0);

    column->Add(0, 0, 1, wxALL, border);
    addLabel(column, custom_Label, _("Custom Palette"), wxALIGN_CENTER_HORIZONTAL);
    addColours(column, 0, 8);
    addColours(column, 8, 8);

    column->Add(0, 0, 1, wxALL, border);
    addLabel(column, brightness_Label, _("Brightness"), wxALIGN_CENTER_HORIZONTAL);
    brightness_Slider =
        new wxSlider(this, wxID_ANY, settings::MinBrightness, settings::MinBrightness,
                     settings::MaxBrightness, wxDefaultPosition, wxDefaultSize, wxSL_HORIZONTAL);
    column->Add(brightness_Slider, 0, wxALL | wxEXPAND, border);
}

void MainFrameBaseClass::addLabel(wxSizer* column, wxStaticText*& member, const wxString& label,
                                  int align) {
    member = new wxStaticText(this, wxID_ANY, label);
    column->Add(member, 0, wxALL | align, FromDIP(Border));
}

/// No button starts a group (wxRB_GROUP), so that all sixteen exclude each other.
wxRadioButton* MainFrameBaseClass::addMode(wxSizer* column, const wxString& label, bool selected) {
    auto* button = new wxRadioButton(this, wxID_ANY, label);
    button->SetValue(selected);
    column->Add(button, 0, wxALL, FromDIP(Border));
    return button;
}

wxCheckBox* MainFrameBaseClass::addCheckBox(wxSizer* column, const wxString& label) {
    auto* box = new wxCheckBox(this, wxID_ANY, label);
    box->SetValue(false);
    column->Add(box, 0, wxALL, FromDIP(Border));
    return box;
}

/// A grid with the colour buttons `first` .. `first` + `count` - 1, four in a row.
void MainFrameBaseClass::addColours(wxSizer* column, std::size_t first, std::size_t count) {
    wxFlexGridSizer* grid = flexGrid(4);
    column->Add(grid, 1, wxALL | wxEXPAND, 0);
    for (std::size_t i = first; i < first + count; ++i) {
        auto* button = new wxButton(this, wxID_ANY, wxGetTranslation(wxString(std::to_string(i))),
                                    wxDefaultPosition, ConvertDialogToPixels(wxSize(20, 20)));
        button->SetBackgroundColour(wxColour(FirstColours.at(i)));
        grid->Add(button, 0, wxALL, 0);
        this->*colourButtons[i] = button;
    }
}

/// Sizes and centres the frame, then restores the geometry that the last run left.
void MainFrameBaseClass::placeFrame() {
    SetName("MainFrameBaseClass");
    SetSize(360, 570);
    if (GetSizer() != nullptr) {
        GetSizer()->Fit(this);
    }
    if (GetParent() != nullptr) {
        CentreOnParent(wxBOTH);
    } else {
        CentreOnScreen(wxBOTH);
    }
    // Bound before the geometry's own handler, so that it runs after it.
    Bind(wxEVT_DESTROY, [this](wxWindowDestroyEvent& event) {
        event.Skip();
        if (event.GetEventObject() == this) {
            closeConfiguration();
        }
    });
    const wxLogNull silent;  // A configuration that cannot be read is no reason for a box.
    auto& geometry = wxPersistenceManager::Get();
    if (geometry.Find(this) != nullptr) {
        geometry.Restore(this);
    } else {
        geometry.RegisterAndRestore(this);
    }
    growToContents(*this);
}

/// One way from a source's event to a handler of the frame.
struct MainFrameBaseClass::Connection {
    Connection(wxMenuItem* item, wxObjectEventFunction method)
        : menuId(item->GetId()), event(wxEVT_MENU), handler(method) {}
    Connection(wxControl* source, wxEventType type, wxObjectEventFunction method)
        : control(source), event(type), handler(method) {}

    wxControl* control = nullptr;  // A menu item has none: its events are caught on the frame.
    int menuId = wxID_ANY;
    wxEventType event;
    wxObjectEventFunction handler;
};

std::array<MainFrameBaseClass::Connection, MainFrameBaseClass::ConnectionCount>
MainFrameBaseClass::connections() {
    return {{
        {load_config, wxCommandEventHandler(Base::OnLoad_configMenuSelected)},
        {save_config, wxCommandEventHandler(Base::OnSave_configMenuSelected)},
        {load_palette, wxCommandEventHandler(Base::OnLoad_paletteMenuSelected)},
        {save_palette, wxCommandEventHandler(Base::OnSave_paletteMenuSelected)},
        {load_Device, wxCommandEventHandler(Base::OnLoad_DeviceMenuSelected)},
        {save_Device, wxCommandEventHandler(Base::OnSave_DeviceMenuSelected)},
        {palette_Device, wxCommandEventHandler(Base::OnPalette_DeviceMenuSelected)},
        {upload_Device, wxCommandEventHandler(Base::OnUpload_DeviceMenuSelected)},
        {reset_Device, wxCommandEventHandler(Base::OnReset_DeviceMenuSelected)},
        {about_Item, wxCommandEventHandler(Base::OnAbout)},
        {set_PinMame, wxEVT_RADIOBUTTON, wxCommandEventHandler(Base::OnSet_PinMame)},
        {set_WPC, wxEVT_RADIOBUTTON, wxCommandEventHandler(Base::OnSet_WPC)},
        {set_Stern, wxEVT_RADIOBUTTON, wxCommandEventHandler(Base::OnSet_Stern)},
        {set_WhiteStar, wxEVT_RADIOBUTTON, wxCommandEventHandler(Base::OnSet_WhiteStar)},
        {set_Spike, wxEVT_RADIOBUTTON, wxCommandEventHandler(Base::OnSet_Spike)},
        {set_DataEast, wxEVT_RADIOBUTTON, wxCommandEventHandler(Base::OnSet_DataEast)},
        {set_Gottlieb1, wxEVT_RADIOBUTTON, wxCommandEventHandler(Base::OnSet_Gottlieb1)},
        {set_Gottlieb2, wxEVT_RADIOBUTTON, wxCommandEventHandler(Base::OnSet_Gottlieb2)},
        {set_Gottlieb3, wxEVT_RADIOBUTTON, wxCommandEventHandler(Base::OnSet_Gottlieb3)},
        {set_Capcom, wxEVT_RADIOBUTTON, wxCommandEventHandler(Base::OnSet_Capcom)},
        {set_AlvinG, wxEVT_RADIOBUTTON, wxCommandEventHandler(Base::OnSet_AlvinG)},
        {set_Spooky, wxEVT_RADIOBUTTON, wxCommandEventHandler(Base::OnSet_Spooky)},
        {set_DE128x16, wxEVT_RADIOBUTTON, wxCommandEventHandler(Base::OnSet_DE128x16)},
        {set_Inder, wxEVT_RADIOBUTTON, wxCommandEventHandler(Base::OnSet_Inder)},
        {set_Sleic, wxEVT_RADIOBUTTON, wxCommandEventHandler(Base::OnSet_Sleic)},
        {set_HomePin, wxEVT_RADIOBUTTON, wxCommandEventHandler(Base::OnSet_HomePin)},
        {enhancer_CheckBox, wxEVT_CHECKBOX, wxCommandEventHandler(Base::enhancer_CheckBox_Clicked)},
        {dump_CheckBox, wxEVT_CHECKBOX, wxCommandEventHandler(Base::dump_CheckBox_Clicked)},
        {set_pal, wxEVT_CHOICE, wxCommandEventHandler(Base::OnSet_palChoiceSelected)},
        {set_col0, wxEVT_BUTTON, wxCommandEventHandler(Base::OnSet_col0ButtonClicked)},
        {set_col1, wxEVT_BUTTON, wxCommandEventHandler(Base::OnSet_col1ButtonClicked)},
        {set_col2, wxEVT_BUTTON, wxCommandEventHandler(Base::OnSet_col2ButtonClicked)},
        {set_col3, wxEVT_BUTTON, wxCommandEventHandler(Base::OnSet_col3ButtonClicked)},
        {set_col4, wxEVT_BUTTON, wxCommandEventHandler(Base::OnSet_col4ButtonClicked)},
        {set_col5, wxEVT_BUTTON, wxCommandEventHandler(Base::OnSet_col5ButtonClicked)},
        {set_col6, wxEVT_BUTTON, wxCommandEventHandler(Base::OnSet_col6ButtonClicked)},
        {set_col7, wxEVT_BUTTON, wxCommandEventHandler(Base::OnSet_col7ButtonClicked)},
        {set_col8, wxEVT_BUTTON, wxCommandEventHandler(Base::OnSet_col8ButtonClicked)},
        {set_col9, wxEVT_BUTTON, wxCommandEventHandler(Base::OnSet_col9ButtonClicked)},
        {set_col10, wxEVT_BUTTON, wxCommandEventHandler(Base::OnSet_col10ButtonClicked)},
        {set_col11, wxEVT_BUTTON, wxCommandEventHandler(Base::OnSet_col11ButtonClicked)},
        {set_col12, wxEVT_BUTTON, wxCommandEventHandler(Base::OnSet_col12ButtonClicked)},
        {set_col13, wxEVT_BUTTON, wxCommandEventHandler(Base::OnSet_col13ButtonClicked)},
        {set_col14, wxEVT_BUTTON, wxCommandEventHandler(Base::OnSet_col14ButtonClicked)},
        {set_col15, wxEVT_BUTTON, wxCommandEventHandler(Base::OnSet_col15ButtonClicked)},
        // Twice: the display follows the thumb, and where that comes to rest is sent once more.
        {brightness_Slider, wxEVT_SCROLL_THUMBTRACK,
         wxScrollEventHandler(Base::OnTrack_Brightness)},
        {brightness_Slider, wxEVT_SCROLL_CHANGED, wxScrollEventHandler(Base::OnTrack_Brightness)},
    }};
}

void MainFrameBaseClass::connectHandlers() {
    for (const Connection& c : connections()) {
        if (c.control != nullptr) {
            c.control->Connect(c.event, c.handler, nullptr, this);
        } else {
            Connect(c.menuId, c.event, c.handler, nullptr, this);
        }
    }
}

/// In the order of the list, as they were made: none depends on another.
void MainFrameBaseClass::disconnectHandlers() {
    for (const Connection& c : connections()) {
        if (c.control != nullptr) {
            c.control->Disconnect(c.event, c.handler, nullptr, this);
        } else {
            Disconnect(c.menuId, c.event, c.handler, nullptr, this);
        }
    }
}
