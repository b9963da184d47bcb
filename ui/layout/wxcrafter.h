#ifndef LUMADOT_UI_LAYOUT_WXCRAFTER_H
#define LUMADOT_UI_LAYOUT_WXCRAFTER_H

#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/choice.h>
#include <wx/frame.h>
#include <wx/intl.h>
#include <wx/menu.h>
#include <wx/radiobut.h>
#include <wx/sizer.h>
#include <wx/slider.h>
#include <wx/stattext.h>

#include <array>

#include "device/input_mode.h"

/// Set once the embedded resource has been registered.
extern bool bBitmapLoaded;

/// The layout of the one window: makes every menu and control, and connects each of them to a
/// virtual handler of its own. It has no behaviour; a derived class overrides the handlers.
class MainFrameBaseClass : public wxFrame {
public:
    explicit MainFrameBaseClass(wxWindow* parent, wxWindowID id = wxID_ANY,
                                const wxString& title = _("LUMADOT Spectra"),
                                const wxPoint& pos = wxDefaultPosition,
                                const wxSize& size = wxSize(360, 570),
                                // Kept for compatibility: the default less wxCLIP_CHILDREN.
                                long style = wxCAPTION | wxRESIZE_BORDER | wxMAXIMIZE_BOX |
                                             wxMINIMIZE_BOX | wxSYSTEM_MENU | wxCLOSE_BOX);
    ~MainFrameBaseClass() override;

    MainFrameBaseClass(const MainFrameBaseClass&) = delete;
    MainFrameBaseClass& operator=(const MainFrameBaseClass&) = delete;

    // Menu "File"
    virtual void OnLoad_configMenuSelected(wxCommandEvent& event) { event.Skip(); }
    virtual void OnSave_configMenuSelected(wxCommandEvent& event) { event.Skip(); }
    virtual void OnLoad_paletteMenuSelected(wxCommandEvent& event) { event.Skip(); }
    virtual void OnSave_paletteMenuSelected(wxCommandEvent& event) { event.Skip(); }

    // Menu "Device"
    virtual void OnLoad_DeviceMenuSelected(wxCommandEvent& event) { event.Skip(); }
    virtual void OnSave_DeviceMenuSelected(wxCommandEvent& event) { event.Skip(); }
    virtual void OnPalette_DeviceMenuSelected(wxCommandEvent& event) { event.Skip(); }
    virtual void OnUpload_DeviceMenuSelected(wxCommandEvent& event) { event.Skip(); }
    virtual void OnReset_DeviceMenuSelected(wxCommandEvent& event) { event.Skip(); }

    // Menu "Help"
    virtual void OnAbout(wxCommandEvent& event) { event.Skip(); }

    // Input modes
    virtual void OnSet_PinMame(wxCommandEvent& event) { event.Skip(); }
    virtual void OnSet_WPC(wxCommandEvent& event) { event.Skip(); }
    virtual void OnSet_Stern(wxCommandEvent& event) { event.Skip(); }
    virtual void OnSet_WhiteStar(wxCommandEvent& event) { event.Skip(); }
    virtual void OnSet_Spike(wxCommandEvent& event) { event.Skip(); }
    virtual void OnSet_DataEast(wxCommandEvent& event) { event.Skip(); }
    virtual void OnSet_Gottlieb1(wxCommandEvent& event) { event.Skip(); }
    virtual void OnSet_Gottlieb2(wxCommandEvent& event) { event.Skip(); }
    virtual void OnSet_Gottlieb3(wxCommandEvent& event) { event.Skip(); }
    virtual void OnSet_Capcom(wxCommandEvent& event) { event.Skip(); }
    virtual void OnSet_AlvinG(wxCommandEvent& event) { event.Skip(); }
    virtual void OnSet_Spooky(wxCommandEvent& event) { event.Skip(); }
    virtual void OnSet_DE128x16(wxCommandEvent& event) { event.Skip(); }
    virtual void OnSet_Inder(wxCommandEvent& event) { event.Skip(); }
    virtual void OnSet_Sleic(wxCommandEvent& event) { event.Skip(); }
    virtual void OnSet_HomePin(wxCommandEvent& event) { event.Skip(); }

    // Options, palette, brightness
    virtual void enhancer_CheckBox_Clicked(wxCommandEvent& event) { event.Skip(); }
    virtual void dump_CheckBox_Clicked(wxCommandEvent& event) { event.Skip(); }
    virtual void OnSet_palChoiceSelected(wxCommandEvent& event) { event.Skip(); }
    virtual void OnSet_col0ButtonClicked(wxCommandEvent& event) { event.Skip(); }
    virtual void OnSet_col1ButtonClicked(wxCommandEvent& event) { event.Skip(); }
    virtual void OnSet_col2ButtonClicked(wxCommandEvent& event) { event.Skip(); }
    virtual void OnSet_col3ButtonClicked(wxCommandEvent& event) { event.Skip(); }
    virtual void OnSet_col4ButtonClicked(wxCommandEvent& event) { event.Skip(); }
    virtual void OnSet_col5ButtonClicked(wxCommandEvent& event) { event.Skip(); }
    virtual void OnSet_col6ButtonClicked(wxCommandEvent& event) { event.Skip(); }
    virtual void OnSet_col7ButtonClicked(wxCommandEvent& event) { event.Skip(); }
    virtual void OnSet_col8ButtonClicked(wxCommandEvent& event) { event.Skip(); }
    virtual void OnSet_col9ButtonClicked(wxCommandEvent& event) { event.Skip(); }
    virtual void OnSet_col10ButtonClicked(wxCommandEvent& event) { event.Skip(); }
    virtual void OnSet_col11ButtonClicked(wxCommandEvent& event) { event.Skip(); }
    virtual void OnSet_col12ButtonClicked(wxCommandEvent& event) { event.Skip(); }
    virtual void OnSet_col13ButtonClicked(wxCommandEvent& event) { event.Skip(); }
    virtual void OnSet_col14ButtonClicked(wxCommandEvent& event) { event.Skip(); }
    virtual void OnSet_col15ButtonClicked(wxCommandEvent& event) { event.Skip(); }
    virtual void OnTrack_Brightness(wxScrollEvent& event) { event.Skip(); }

protected:
    // Owned by the toolkit. In the order in which they are made.
    wxMenuBar* m_menuBar = nullptr;
    wxMenu* file_Menu = nullptr;
    wxMenuItem* load_config = nullptr;
    wxMenuItem* save_config = nullptr;
    wxMenuItem* load_palette = nullptr;
    wxMenuItem* save_palette = nullptr;
    wxMenu* device_Menu = nullptr;
    wxMenuItem* load_Device = nullptr;
    wxMenuItem* save_Device = nullptr;
    wxMenuItem* palette_Device = nullptr;
    wxMenuItem* upload_Device = nullptr;
    wxMenuItem* reset_Device = nullptr;
    wxMenu* help_Menu = nullptr;
    wxMenuItem* about_Item = nullptr;
    wxStaticText* pinmame_Label = nullptr;
    wxRadioButton* set_PinMame = nullptr;
    wxStaticText* pinball_Label = nullptr;
    wxRadioButton* set_WPC = nullptr;
    wxStaticText* wpc_Label = nullptr;
    wxRadioButton* set_Stern = nullptr;
    wxRadioButton* set_WhiteStar = nullptr;
    wxRadioButton* set_Spike = nullptr;
    wxRadioButton* set_DataEast = nullptr;
    wxRadioButton* set_Gottlieb1 = nullptr;
    wxRadioButton* set_Gottlieb2 = nullptr;
    wxRadioButton* set_Gottlieb3 = nullptr;
    wxRadioButton* set_Capcom = nullptr;
    wxRadioButton* set_AlvinG = nullptr;
    wxRadioButton* set_Spooky = nullptr;
    wxRadioButton* set_DE128x16 = nullptr;
    wxRadioButton* set_Inder = nullptr;
    wxRadioButton* set_Sleic = nullptr;
    wxRadioButton* set_HomePin = nullptr;
    wxCheckBox* enhancer_CheckBox = nullptr;
    wxCheckBox* dump_CheckBox = nullptr;
    wxStaticText* palette_Label = nullptr;
    wxChoice* set_pal = nullptr;
    wxStaticText* custom_Label = nullptr;
    wxButton* set_col0 = nullptr;
    wxButton* set_col1 = nullptr;
    wxButton* set_col2 = nullptr;
    wxButton* set_col3 = nullptr;
    wxButton* set_col4 = nullptr;
    wxButton* set_col5 = nullptr;
    wxButton* set_col6 = nullptr;
    wxButton* set_col7 = nullptr;
    wxButton* set_col8 = nullptr;
    wxButton* set_col9 = nullptr;
    wxButton* set_col10 = nullptr;
    wxButton* set_col11 = nullptr;
    wxButton* set_col12 = nullptr;
    wxButton* set_col13 = nullptr;
    wxButton* set_col14 = nullptr;
    wxButton* set_col15 = nullptr;
    wxStaticText* brightness_Label = nullptr;
    wxSlider* brightness_Slider = nullptr;

    /// A mode's label, translated.
    static wxString labelOf(InputMode mode);

    /// The radio buttons by the number of their input mode, 0..15.
    static const std::array<wxRadioButton * MainFrameBaseClass::*, 16> modeButtons;
    /// The colour buttons by the number of their palette entry, 0..15.
    static const std::array<wxButton * MainFrameBaseClass::*, 16> colourButtons;

private:
    struct Connection;
    static constexpr std::size_t ConnectionCount = 47;

    void buildMenus();
    void fillModeColumn(wxSizer* column);
    void fillPaletteColumn(wxSizer* column);
    wxRadioButton* addMode(wxSizer* column, const wxString& label, bool selected);
    wxCheckBox* addCheckBox(wxSizer* column, const wxString& label);
    void addLabel(wxSizer* column, wxStaticText*& member, const wxString& label, int align);
    void addColours(wxSizer* column, std::size_t first, std::size_t count);
    void placeFrame();
    std::array<Connection, ConnectionCount> connections();
    void connectHandlers();
    void disconnectHandlers();
};

#endif
