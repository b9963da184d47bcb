#ifndef LUMADOT_UI_MAINFRAME_H
#define LUMADOT_UI_MAINFRAME_H

#include "device/input_mode.h"
#include "device/settings_record.h"
#include "ui/layout/wxcrafter.h"

/// The controller window: reads the controller's settings when it is made, shows them, and answers
/// the user. It has no members of its own; what it works on are the device link's globals and
/// `palette`, and what happens to it during a capture is remembered beside it.
class MainFrame : public MainFrameBaseClass {
public:
    explicit MainFrame(wxWindow* parent);
    ~MainFrame() override = default;

    MainFrame(const MainFrame&) = delete;
    MainFrame& operator=(const MainFrame&) = delete;

    /// Shows `config` in the controls. Sends nothing and changes nothing in `config`; custom
    /// colours give way to the record's preset. The number of colour buttons shown stays as it is.
    void setConfig(configDescriptor settings);

    /// Loads preset `index` into `palette`, if there is one, and repaints the buttons in any case.
    void switchPalette(unsigned char index);
    /// Paints the sixteen colour buttons from a palette of 48 bytes.
    void setPal(unsigned char* pal);

    // Show the colour buttons of 4, 5 or 16 shades and hide the others.
    void set4Colour();
    void set5Colour();
    void set16Colour();

    /// Closes the window as its close box does. Connected to nothing.
    void OnExit(wxCommandEvent& event);

    // Menu "File": settings and palettes on the disk. Loading sends nothing to the controller.
    void OnLoad_configMenuSelected(wxCommandEvent& event) override;
    void OnSave_configMenuSelected(wxCommandEvent& event) override;
    void OnLoad_paletteMenuSelected(wxCommandEvent& event) override;
    void OnSave_paletteMenuSelected(wxCommandEvent& event) override;

    // Menu "Device"
    void OnLoad_DeviceMenuSelected(wxCommandEvent& event) override;
    void OnSave_DeviceMenuSelected(wxCommandEvent& event) override;
    void OnPalette_DeviceMenuSelected(wxCommandEvent& event) override;
    void OnUpload_DeviceMenuSelected(wxCommandEvent& event) override;
    void OnReset_DeviceMenuSelected(wxCommandEvent& event) override;

    void OnAbout(wxCommandEvent& event) override;

    void OnSet_PinMame(wxCommandEvent& event) override;
    void OnSet_WPC(wxCommandEvent& event) override;
    void OnSet_Stern(wxCommandEvent& event) override;
    void OnSet_WhiteStar(wxCommandEvent& event) override;
    void OnSet_Spike(wxCommandEvent& event) override;
    void OnSet_DataEast(wxCommandEvent& event) override;
    void OnSet_Gottlieb1(wxCommandEvent& event) override;
    void OnSet_Gottlieb2(wxCommandEvent& event) override;
    void OnSet_Gottlieb3(wxCommandEvent& event) override;
    void OnSet_Capcom(wxCommandEvent& event) override;
    void OnSet_AlvinG(wxCommandEvent& event) override;
    void OnSet_Spooky(wxCommandEvent& event) override;
    void OnSet_DE128x16(wxCommandEvent& event) override;
    void OnSet_Inder(wxCommandEvent& event) override;
    void OnSet_Sleic(wxCommandEvent& event) override;
    void OnSet_HomePin(wxCommandEvent& event) override;

    void enhancer_CheckBox_Clicked(wxCommandEvent& event) override;

    /// Starts a capture, which runs inside this call, or stops the one that is running.
    void dump_CheckBox_Clicked(wxCommandEvent& event) override;
    void OnSet_palChoiceSelected(wxCommandEvent& event) override;

    void OnSet_col0ButtonClicked(wxCommandEvent& event) override;
    void OnSet_col1ButtonClicked(wxCommandEvent& event) override;
    void OnSet_col2ButtonClicked(wxCommandEvent& event) override;
    void OnSet_col3ButtonClicked(wxCommandEvent& event) override;
    void OnSet_col4ButtonClicked(wxCommandEvent& event) override;
    void OnSet_col5ButtonClicked(wxCommandEvent& event) override;
    void OnSet_col6ButtonClicked(wxCommandEvent& event) override;
    void OnSet_col7ButtonClicked(wxCommandEvent& event) override;
    void OnSet_col8ButtonClicked(wxCommandEvent& event) override;
    void OnSet_col9ButtonClicked(wxCommandEvent& event) override;
    void OnSet_col10ButtonClicked(wxCommandEvent& event) override;
    void OnSet_col11ButtonClicked(wxCommandEvent& event) override;
    void OnSet_col12ButtonClicked(wxCommandEvent& event) override;
    void OnSet_col13ButtonClicked(wxCommandEvent& event) override;
    void OnSet_col14ButtonClicked(wxCommandEvent& event) override;
    void OnSet_col15ButtonClicked(wxCommandEvent& event) override;

    void OnTrack_Brightness(wxScrollEvent& event) override;

private:
    void showShades(ShadeSet shades);
    void showBoardVariant();
    void selectInputMode(InputMode mode);
    void capture(const wxString& folder);
    void onClose(wxCloseEvent& event);
    void onFirstIdle(wxIdleEvent& event);
    void onFirstPlatformsCaption(wxMouseEvent& event);
};

/// Lets the user pick the colour of palette entry `index` (0..15), stores it and sends the whole
/// palette. A cancelled dialog stores and sends the colour that the button had: the controller then
/// has the palette that the window shows.
void setColour(wxWindow* parent, wxButton* button, int index);

#endif
