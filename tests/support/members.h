#ifndef LUMADOT_TESTS_SUPPORT_MEMBERS_H
#define LUMADOT_TESTS_SUPPORT_MEMBERS_H

#include <array>

#include "tests/support/print.h"
#include "ui/layout/wxcrafter.h"

namespace support {

/// Names the window's protected members for the tests, as `frame.*(&Members::set_Stern)`. Nobody
/// makes one: the windows of the tests are the tool's own.
struct Members : MainFrameBaseClass {
    using Base = MainFrameBaseClass;
    using Base::about_Item, Base::brightness_Label, Base::brightness_Slider, Base::custom_Label,
        Base::device_Menu, Base::dump_CheckBox, Base::enhancer_CheckBox, Base::file_Menu,
        Base::help_Menu, Base::load_config, Base::load_Device, Base::load_palette, Base::m_menuBar,
        Base::palette_Device, Base::palette_Label, Base::pinball_Label, Base::pinmame_Label,
        Base::reset_Device, Base::save_config, Base::save_Device, Base::save_palette,
        Base::set_AlvinG, Base::set_Capcom, Base::set_col0, Base::set_col1, Base::set_col10,
        Base::set_col11, Base::set_col12, Base::set_col13, Base::set_col14, Base::set_col15,
        Base::set_col2, Base::set_col3, Base::set_col4, Base::set_col5, Base::set_col6,
        Base::set_col7, Base::set_col8, Base::set_col9, Base::set_DataEast, Base::set_DE128x16,
        Base::set_Gottlieb1, Base::set_Gottlieb2, Base::set_Gottlieb3, Base::set_HomePin,
        Base::set_Inder, Base::set_pal, Base::set_PinMame, Base::set_Sleic, Base::set_Spike,
        Base::set_Spooky, Base::set_Stern, Base::set_WhiteStar, Base::set_WPC, Base::upload_Device,
        Base::wpc_Label;
};

/// The member that a pointer like &Members::set_Stern names.
template <typename Control>
Control& in(MainFrameBaseClass& frame, Control* MainFrameBaseClass::*member) {
    return *(frame.*member);
}

/// Whether the toolkit chose this identifier, as it does for wxID_ANY.
inline bool isFromToolkit(int id) { return id >= wxID_AUTO_LOWEST && id <= wxID_AUTO_HIGHEST; }

/// The radio buttons by the number of their input mode.
inline constexpr std::array<wxRadioButton * MainFrameBaseClass::*, 16> ModeButtons = {
    &Members::set_PinMame,   &Members::set_WPC,       &Members::set_Stern,
    &Members::set_WhiteStar, &Members::set_Spike,     &Members::set_DataEast,
    &Members::set_Gottlieb1, &Members::set_Gottlieb2, &Members::set_Gottlieb3,
    &Members::set_Capcom,    &Members::set_AlvinG,    &Members::set_Spooky,
    &Members::set_DE128x16,  &Members::set_Inder,     &Members::set_Sleic,
    &Members::set_HomePin};

/// The colour buttons by the number of their palette entry.
inline constexpr std::array<wxButton * MainFrameBaseClass::*, 16> ColourButtons = {
    &Members::set_col0,  &Members::set_col1,  &Members::set_col2,  &Members::set_col3,
    &Members::set_col4,  &Members::set_col5,  &Members::set_col6,  &Members::set_col7,
    &Members::set_col8,  &Members::set_col9,  &Members::set_col10, &Members::set_col11,
    &Members::set_col12, &Members::set_col13, &Members::set_col14, &Members::set_col15};

}  // namespace support

#endif
