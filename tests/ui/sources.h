#ifndef LUMADOT_TESTS_UI_SOURCES_H
#define LUMADOT_TESTS_UI_SOURCES_H

#include <array>
#include <ostream>
#include <string_view>
#include <variant>

#include "tests/support/window_test.h"

namespace support {

/// The member that raises an event.
using SourceMember =
    std::variant<wxMenuItem * MainFrameBaseClass::*, wxRadioButton * MainFrameBaseClass::*,
                 wxCheckBox * MainFrameBaseClass::*, wxChoice * MainFrameBaseClass::*,
                 wxButton * MainFrameBaseClass::*, wxSlider * MainFrameBaseClass::*>;

/// One source of events of the window, and the handler that it belongs to.
struct Source {
    std::string_view handler;
    SourceMember member;
    const wxEventTypeTag<wxCommandEvent>* event = nullptr;
    const wxEventTypeTag<wxScrollEvent>* scrollEvent = nullptr;
    int dialogs = 0;  ///< that the tool's own handler opens

    wxEventType type() const {
        return event != nullptr ? wxEventType(*event) : wxEventType(*scrollEvent);
    }
};

inline void PrintTo(const Source& source, std::ostream* out) { *out << source.handler; }

// clang-format off
/// The connections of the window in their order.
inline const std::array Sources = std::to_array<Source>({
    {"OnLoad_configMenuSelected", &Members::load_config, &wxEVT_MENU, nullptr, 1},
    {"OnSave_configMenuSelected", &Members::save_config, &wxEVT_MENU, nullptr, 1},
    {"OnLoad_paletteMenuSelected", &Members::load_palette, &wxEVT_MENU, nullptr, 1},
    {"OnSave_paletteMenuSelected", &Members::save_palette, &wxEVT_MENU, nullptr, 1},
    {"OnLoad_DeviceMenuSelected", &Members::load_Device, &wxEVT_MENU, nullptr, 1},
    {"OnSave_DeviceMenuSelected", &Members::save_Device, &wxEVT_MENU},
    {"OnPalette_DeviceMenuSelected", &Members::palette_Device, &wxEVT_MENU},
    {"OnUpload_DeviceMenuSelected", &Members::upload_Device, &wxEVT_MENU, nullptr, 1},
    {"OnReset_DeviceMenuSelected", &Members::reset_Device, &wxEVT_MENU},
    {"OnAbout", &Members::about_Item, &wxEVT_MENU},
    {"OnSet_PinMame", &Members::set_PinMame, &wxEVT_RADIOBUTTON},
    {"OnSet_WPC", &Members::set_WPC, &wxEVT_RADIOBUTTON},
    {"OnSet_Stern", &Members::set_Stern, &wxEVT_RADIOBUTTON},
    {"OnSet_WhiteStar", &Members::set_WhiteStar, &wxEVT_RADIOBUTTON},
    {"OnSet_Spike", &Members::set_Spike, &wxEVT_RADIOBUTTON},
    {"OnSet_DataEast", &Members::set_DataEast, &wxEVT_RADIOBUTTON},
    {"OnSet_Gottlieb1", &Members::set_Gottlieb1, &wxEVT_RADIOBUTTON},
    {"OnSet_Gottlieb2", &Members::set_Gottlieb2, &wxEVT_RADIOBUTTON},
    {"OnSet_Gottlieb3", &Members::set_Gottlieb3, &wxEVT_RADIOBUTTON},
    {"OnSet_Capcom", &Members::set_Capcom, &wxEVT_RADIOBUTTON},
    {"OnSet_AlvinG", &Members::set_AlvinG, &wxEVT_RADIOBUTTON},
    {"OnSet_Spooky", &Members::set_Spooky, &wxEVT_RADIOBUTTON},
    {"OnSet_DE128x16", &Members::set_DE128x16, &wxEVT_RADIOBUTTON},
    {"OnSet_Inder", &Members::set_Inder, &wxEVT_RADIOBUTTON},
    {"OnSet_Sleic", &Members::set_Sleic, &wxEVT_RADIOBUTTON},
    {"OnSet_HomePin", &Members::set_HomePin, &wxEVT_RADIOBUTTON},
    {"enhancer_CheckBox_Clicked", &Members::enhancer_CheckBox, &wxEVT_CHECKBOX},
    {"dump_CheckBox_Clicked", &Members::dump_CheckBox, &wxEVT_CHECKBOX},
    {"OnSet_palChoiceSelected", &Members::set_pal, &wxEVT_CHOICE},
    {"OnSet_col0ButtonClicked", &Members::set_col0, &wxEVT_BUTTON, nullptr, 1},
    {"OnSet_col1ButtonClicked", &Members::set_col1, &wxEVT_BUTTON, nullptr, 1},
    {"OnSet_col2ButtonClicked", &Members::set_col2, &wxEVT_BUTTON, nullptr, 1},
    {"OnSet_col3ButtonClicked", &Members::set_col3, &wxEVT_BUTTON, nullptr, 1},
    {"OnSet_col4ButtonClicked", &Members::set_col4, &wxEVT_BUTTON, nullptr, 1},
    {"OnSet_col5ButtonClicked", &Members::set_col5, &wxEVT_BUTTON, nullptr, 1},
    {"OnSet_col6ButtonClicked", &Members::set_col6, &wxEVT_BUTTON, nullptr, 1},
    {"OnSet_col7ButtonClicked", &Members::set_col7, &wxEVT_BUTTON, nullptr, 1},
    {"OnSet_col8ButtonClicked", &Members::set_col8, &wxEVT_BUTTON, nullptr, 1},
    {"OnSet_col9ButtonClicked", &Members::set_col9, &wxEVT_BUTTON, nullptr, 1},
    {"OnSet_col10ButtonClicked", &Members::set_col10, &wxEVT_BUTTON, nullptr, 1},
    {"OnSet_col11ButtonClicked", &Members::set_col11, &wxEVT_BUTTON, nullptr, 1},
    {"OnSet_col12ButtonClicked", &Members::set_col12, &wxEVT_BUTTON, nullptr, 1},
    {"OnSet_col13ButtonClicked", &Members::set_col13, &wxEVT_BUTTON, nullptr, 1},
    {"OnSet_col14ButtonClicked", &Members::set_col14, &wxEVT_BUTTON, nullptr, 1},
    {"OnSet_col15ButtonClicked", &Members::set_col15, &wxEVT_BUTTON, nullptr, 1},
    {"OnTrack_Brightness", &Members::brightness_Slider, nullptr, &wxEVT_SCROLL_THUMBTRACK},
    {"OnTrack_Brightness", &Members::brightness_Slider, nullptr, &wxEVT_SCROLL_CHANGED},
});
// clang-format on

/// Raises the source's event as the user's action does. Returns whether a handler took it without
/// skipping it.
inline bool raise(MainFrameBaseClass& frame, const Source& source) {
    return std::visit(
        [&](auto member) {
            auto& object = in(frame, member);
            if constexpr (std::is_same_v<decltype(object), wxMenuItem&>) {
                return send(frame, object);
            } else {
                return send(object, source.type());
            }
        },
        source.member);
}

}  // namespace support

#endif
