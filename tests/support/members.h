#ifndef LUMADOT_TESTS_SUPPORT_MEMBERS_H
#define LUMADOT_TESTS_SUPPORT_MEMBERS_H

#include <array>

#include "tests/support/print.h"
#include "ui/layout/wxcrafter.h"

namespace support {

/// Names the window's protected members for the tests, as `frame.*(&Members::set_Stern)`. Nobody
/// makes one: the windows of the tests are the tool's own.
struct Members : MainFrameBaseClass {
    using MainFrameBaseClass::about_Item;
    using MainFrameBaseClass::brightness_Label;
    using MainFrameBaseClass::brightness_Slider;
    using MainFrameBaseClass::custom_Label;
    using MainFrameBaseClass::device_Menu;
    using MainFrameBaseClass::dump_CheckBox;
    using MainFrameBaseClass::enhancer_CheckBox;
    using MainFrameBaseClass::file_Menu;
    using MainFrameBaseClass::help_Menu;
    using MainFrameBaseClass::load_config;
    using MainFrameBaseClass::load_Device;
    using MainFrameBaseClass::load_palette;
    using MainFrameBaseClass::m_menuBar;
    using MainFrameBaseClass::palette_Device;
    using MainFrameBaseClass::palette_Label;
    using MainFrameBaseClass::pinball_Label;
    using MainFrameBaseClass::pinmame_Label;
    using MainFrameBaseClass::reset_Device;
    using MainFrameBaseClass::save_config;
    using MainFrameBaseClass::save_Device;
    using MainFrameBaseClass::save_palette;
    using MainFrameBaseClass::set_AlvinG;
    using MainFrameBaseClass::set_Capcom;
    using MainFrameBaseClass::set_col0;
    using MainFrameBaseClass::set_col1;
    using MainFrameBaseClass::set_col10;
    using MainFrameBaseClass::set_col11;
    using MainFrameBaseClass::set_col12;
    using MainFrameBaseClass::set_col13;
    using MainFrameBaseClass::set_col14;
    using MainFrameBaseClass::set_col15;
    using MainFrameBaseClass::set_col2;
    using MainFrameBaseClass::set_col3;
    using MainFrameBaseClass::set_col4;
    using MainFrameBaseClass::set_col5;
    using MainFrameBaseClass::set_col6;
    using MainFrameBaseClass::set_col7;
    using MainFrameBaseClass::set_col8;
    using MainFrameBaseClass::set_col9;
    using MainFrameBaseClass::set_DataEast;
    using MainFrameBaseClass::set_DE128x16;
    using MainFrameBaseClass::set_Gottlieb1;
    using MainFrameBaseClass::set_Gottlieb2;
    using MainFrameBaseClass::set_Gottlieb3;
    using MainFrameBaseClass::set_HomePin;
    using MainFrameBaseClass::set_Inder;
    using MainFrameBaseClass::set_pal;
    using MainFrameBaseClass::set_PinMame;
    using MainFrameBaseClass::set_Sleic;
    using MainFrameBaseClass::set_Spike;
    using MainFrameBaseClass::set_Spooky;
    using MainFrameBaseClass::set_Stern;
    using MainFrameBaseClass::set_WhiteStar;
    using MainFrameBaseClass::set_WPC;
    using MainFrameBaseClass::upload_Device;
    using MainFrameBaseClass::wpc_Label;
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
