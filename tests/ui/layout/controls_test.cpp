// Which controls the window has, in which order, and how each of them begins.

#include <gmock/gmock.h>

#include <array>
#include <deque>
#include <string>
#include <vector>

#include "tests/support/members.h"

namespace {

using support::Members;
using testing::ElementsAreArray;

/// The layout alone, without a controller window's behaviour.
class Controls : public testing::Test {
protected:
    template <typename Control>
    Control& the(Control* MainFrameBaseClass::*member) {
        return support::in(frame, member);
    }

    MainFrameBaseClass frame{nullptr};
};

struct Row {
    const char* type;
    const char* label;
    long style;
};

void PrintTo(const Row& row, std::ostream* out) {
    *out << row.type << " '" << row.label << "' style 0x" << std::hex << row.style << std::dec;
}

bool operator==(const Row& a, const Row& b) {
    return std::string_view(a.type) == b.type && std::string_view(a.label) == b.label &&
           a.style == b.style;
}

// A check box without style calls itself one of two states.
constexpr long CheckBoxDefault = wxCHK_2STATE;

constexpr std::array InOrder = {
    Row{"wxStaticText", "PinMame mode with input from :", 0},
    Row{"wxRadioButton", "USB port", 0},
    Row{"wxStaticText", "Pinball mode with input from :", 0},
    Row{"wxRadioButton", "", wxBORDER_NONE},
    Row{"wxStaticText", "Bally/Williams", wxBORDER_NONE},
    Row{"wxRadioButton", "Stern S.A.M.", 0},
    Row{"wxRadioButton", "Stern Whitestar", 0},
    Row{"wxRadioButton", "Stern Spike", 0},
    Row{"wxRadioButton", "Data East / Sega", 0},
    Row{"wxRadioButton", "Premier Gottlieb V1", 0},
    Row{"wxRadioButton", "Premier Gottlieb V2", 0},
    Row{"wxRadioButton", "Premier Gottlieb V3", 0},
    Row{"wxRadioButton", "Capcom", 0},
    Row{"wxRadioButton", "Alvin G", 0},
    Row{"wxRadioButton", "Spooky", 0},
    Row{"wxRadioButton", "Data East 128x16", 0},
    Row{"wxRadioButton", "Inder / SPinball", 0},
    Row{"wxRadioButton", "Sleic / Petaco", 0},
    Row{"wxRadioButton", "HomePin", 0},
    Row{"wxCheckBox", "Signal Enhancer", CheckBoxDefault},
    Row{"wxCheckBox", "Create Dump File", CheckBoxDefault},
    Row{"wxStaticText", "Select Palette", 0},
    Row{"wxChoice", "", 0},
    Row{"wxStaticText", "Custom Palette", 0},
    Row{"wxButton", "0", 0},
    Row{"wxButton", "1", 0},
    Row{"wxButton", "2", 0},
    Row{"wxButton", "3", 0},
    Row{"wxButton", "4", 0},
    Row{"wxButton", "5", 0},
    Row{"wxButton", "6", 0},
    Row{"wxButton", "7", 0},
    Row{"wxButton", "8", 0},
    Row{"wxButton", "9", 0},
    Row{"wxButton", "10", 0},
    Row{"wxButton", "11", 0},
    Row{"wxButton", "12", 0},
    Row{"wxButton", "13", 0},
    Row{"wxButton", "14", 0},
    Row{"wxButton", "15", 0},
    Row{"wxStaticText", "Brightness", 0},
    Row{"wxSlider", "", wxSL_HORIZONTAL},
};

TEST_F(Controls, AreTheFramesOwnChildrenInTheOrderOfTheColumnsWithTheirLabelsAndStyles) {
    std::deque<std::string> texts;  // Keeps what the rows point at.
    std::vector<Row> children;
    for (const wxWindow* child : frame.GetChildren()) {
        const auto& type =
            texts.emplace_back(wxString(child->GetClassInfo()->GetClassName()).utf8_string());
        const auto& label = texts.emplace_back(child->GetLabel().utf8_string());
        children.push_back({type.c_str(), label.c_str(), child->GetWindowStyleFlag()});
    }
    EXPECT_THAT(children, ElementsAreArray(InOrder));
}

TEST_F(Controls, AreTheMembersOfTheirNamesInTheSameOrder) {
    std::vector<const wxWindow*> members = {
        &the(&Members::pinmame_Label), &the(&Members::set_PinMame), &the(&Members::pinball_Label),
        &the(&Members::set_WPC), &the(&Members::wpc_Label)};
    for (std::size_t platform = 2; platform < 16; ++platform) {
        members.push_back(&the(support::ModeButtons[platform]));
    }
    members.insert(members.end(), {&the(&Members::enhancer_CheckBox), &the(&Members::dump_CheckBox),
                                   &the(&Members::palette_Label), &the(&Members::set_pal),
                                   &the(&Members::custom_Label)});
    for (const auto button : support::ColourButtons) {
        members.push_back(&the(button));
    }
    members.insert(members.end(),
                   {&the(&Members::brightness_Label), &the(&Members::brightness_Slider)});
    EXPECT_THAT(
        std::vector<const wxWindow*>(frame.GetChildren().begin(), frame.GetChildren().end()),
        ElementsAreArray(members));
}

TEST_F(Controls, HaveNothingOfTheirOwnThatTheToolkitDidNotGiveThem) {
    for (const wxWindow* child : frame.GetChildren()) {
        SCOPED_TRACE(child->GetLabel().utf8_string());
        EXPECT_TRUE(support::isFromToolkit(child->GetId()));
        EXPECT_TRUE(child->IsEnabled());
        EXPECT_TRUE(child->IsShown());
        EXPECT_EQ(child->GetToolTip(), nullptr);
        EXPECT_EQ(child->GetFont(), frame.GetFont());
        EXPECT_EQ(child->GetMaxSize(), wxDefaultSize);
        EXPECT_FALSE(child->UseForegroundColour());
    }
}

TEST_F(Controls, BeginWithTheUsbPortSelectedAndBothBoxesClear) {
    for (const auto button : support::ModeButtons) {
        EXPECT_EQ(the(button).GetValue(), button == &Members::set_PinMame);
    }
    EXPECT_FALSE(the(&Members::enhancer_CheckBox).GetValue());
    EXPECT_FALSE(the(&Members::dump_CheckBox).GetValue());
}

TEST_F(Controls, OfferTheSixteenInputModesAsOneGroup) {
    for (const auto chosen : support::ModeButtons) {
        the(chosen).SetValue(true);
        for (const auto button : support::ModeButtons) {
            EXPECT_EQ(the(button).GetValue(), button == chosen);
        }
    }
}

TEST_F(Controls, OfferNinePresetsOfWhichTheFirstIsSelected) {
    const wxChoice& choice = the(&Members::set_pal);
    std::vector<std::string> items;
    for (const wxString& item : choice.GetStrings()) {
        items.push_back(item.utf8_string());
    }
    EXPECT_THAT(items, testing::ElementsAre(
                           "Palette 0 (VGA)", "Palette 1 (Red)", "Palette 2 (Green)",
                           "Palette 3 (Blue)", "Palette 4 (Violet)", "Palette 5 (Cyan)",
                           "Palette 6 (Yellow)", "Palette 7 (White)", "Palette 8 (Orange)"));
    EXPECT_EQ(choice.GetSelection(), 0);
}

TEST_F(Controls, ShowTheSixteenFirstColours) {
    constexpr std::array<const char*, 16> Colours = {
        "#000000", "#800000", "#FF0000", "#FF00FF", "#008080", "#008000", "#00FF00", "#00FFFF",
        "#000080", "#800080", "#0000FF", "#404040", "#808080", "#808000", "#FFFF00", "#FFFFFF"};
    for (std::size_t i = 0; i < Colours.size(); ++i) {
        const wxColour colour = the(support::ColourButtons[i]).GetBackgroundColour();
        EXPECT_EQ(colour.GetAsString(wxC2S_HTML_SYNTAX), Colours[i]) << "button " << i;
        EXPECT_EQ(colour.Alpha(), 255) << "button " << i;
    }
}

TEST_F(Controls, AskForColourButtonsOfTwentyByTwentyDialogUnitsAndLeaveTheRestToTheToolkit) {
    const wxSize twenty = frame.ConvertDialogToPixels(wxSize(20, 20));
    for (wxWindow* child : frame.GetChildren()) {
        const bool isColour = dynamic_cast<const wxButton*>(child) != nullptr;
        EXPECT_EQ(child->GetMinSize(), isColour ? twenty : wxDefaultSize)
            << child->GetLabel().utf8_string();
    }
}

TEST_F(Controls, LetTheBrightnessGoFromTenTo255AndBeginAtTen) {
    wxSlider& slider = the(&Members::brightness_Slider);
    EXPECT_EQ(slider.GetMin(), 10);
    EXPECT_EQ(slider.GetMax(), 255);
    EXPECT_EQ(slider.GetValue(), 10);
    slider.SetValue(9);
    EXPECT_EQ(slider.GetValue(), 10);
    slider.SetValue(256);
    EXPECT_EQ(slider.GetValue(), 255);
}

}  // namespace
