// How the controls are laid out: the sizer tree, row by row.

#include <gmock/gmock.h>

#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/members.h"

namespace {

using support::Members;
using testing::ElementsAre;

/// In the order in which a walk from the root, depth first, meets them.
constexpr const char* SizerNames[] = {"mainSizer",     "topGrid",       "modeColumn",    "wpcRow",
                                      "paletteColumn", "colourGridLow", "colourGridHigh"};

std::string flagsOf(int flags) {
    std::string text;
    for (const auto& [flag, name] : {std::pair<int, const char*>{wxALL, " wxALL"},
                                     {wxEXPAND, " wxEXPAND"},
                                     {wxALIGN_CENTER_HORIZONTAL, " wxALIGN_CENTER_HORIZONTAL"}}) {
        if ((flags & flag) == flag) {
            text += name;
            flags &= ~flag;
        }
    }
    return flags == 0 ? text : text + " and " + std::to_string(flags);
}

/// The tree as text: each item as "name in sizer: proportion flags border".
class SizerTree : public testing::Test {
protected:
    SizerTree() { walk(*frame.GetSizer()); }

    void walk(wxSizer& sizer) {
        const std::string name = SizerNames[sizers.size()];
        sizers.push_back(&sizer);
        for (const wxSizerItem* item : sizer.GetChildren()) {
            std::ostringstream row;
            row << nameOf(*item) << " in " << name << ": " << item->GetProportion()
                << flagsOf(item->GetFlag()) << " " << frame.ToDIP(item->GetBorder());
            rows.push_back(row.str());
            if (item->IsSizer()) {
                walk(*item->GetSizer());
            }
        }
    }

    std::string nameOf(const wxSizerItem& item) {
        if (item.IsSizer()) {
            return SizerNames[sizers.size()];
        }
        if (item.IsSpacer()) {
            EXPECT_EQ(item.GetMinSize(), wxSize(0, 0));
            return "spacer";
        }
        const wxWindow* const window = item.GetWindow();
        if (window == &support::in(frame, &Members::set_WPC)) {
            return "set_WPC";
        }
        if (window == &support::in(frame, &Members::set_pal)) {
            return "set_pal";
        }
        if (window == &support::in(frame, &Members::brightness_Slider)) {
            return "brightness_Slider";
        }
        return "'" + window->GetLabel().utf8_string() + "'";
    }

    MainFrameBaseClass frame{nullptr};
    std::vector<wxSizer*> sizers;
    std::vector<std::string> rows;
};

TEST_F(SizerTree, HasEveryItemInItsPlaceWithItsProportionFlagsAndBorder) {
    EXPECT_THAT(
        rows,
        ElementsAre("topGrid in mainSizer: 0 wxALL 5",                                         //
                    "modeColumn in topGrid: 0 wxALL 5",                                        //
                    "'PinMame mode with input from :' in modeColumn: 0 wxALL 5",               //
                    "'USB port' in modeColumn: 0 wxALL 5",                                     //
                    "'Pinball mode with input from :' in modeColumn: 0 wxALL 5",               //
                    "wpcRow in modeColumn: 1 wxALL wxEXPAND 5",                                //
                    "set_WPC in wpcRow: 0 wxALL wxEXPAND 0",                                   //
                    "'Bally/Williams' in wpcRow: 0 wxALL 0",                                   //
                    "'Stern S.A.M.' in modeColumn: 0 wxALL 5",                                 //
                    "'Stern Whitestar' in modeColumn: 0 wxALL 5",                              //
                    "'Stern Spike' in modeColumn: 0 wxALL 5",                                  //
                    "'Data East / Sega' in modeColumn: 0 wxALL 5",                             //
                    "'Premier Gottlieb V1' in modeColumn: 0 wxALL 5",                          //
                    "'Premier Gottlieb V2' in modeColumn: 0 wxALL 5",                          //
                    "'Premier Gottlieb V3' in modeColumn: 0 wxALL 5",                          //
                    "'Capcom' in modeColumn: 0 wxALL 5",                                       //
                    "'Alvin G' in modeColumn: 0 wxALL 5",                                      //
                    "'Spooky' in modeColumn: 0 wxALL 5",                                       //
                    "'Data East 128x16' in modeColumn: 0 wxALL 5",                             //
                    "'Inder / SPinball' in modeColumn: 0 wxALL 5",                             //
                    "'Sleic / Petaco' in modeColumn: 0 wxALL 5",                               //
                    "'HomePin' in modeColumn: 0 wxALL 5",                                      //
                    "spacer in modeColumn: 1 wxALL 5",                                         //
                    "'Signal Enhancer' in modeColumn: 0 wxALL 5",                              //
                    "'Create Dump File' in modeColumn: 0 wxALL 5",                             //
                    "paletteColumn in topGrid: 0 wxALL 5",                                     //
                    "'Select Palette' in paletteColumn: 0 wxALL wxALIGN_CENTER_HORIZONTAL 5",  //
                    "set_pal in paletteColumn: 0 wxALL wxEXPAND 0",                            //
                    "spacer in paletteColumn: 1 wxALL 5",                                      //
                    "'Custom Palette' in paletteColumn: 0 wxALL wxALIGN_CENTER_HORIZONTAL 5",  //
                    "colourGridLow in paletteColumn: 1 wxALL wxEXPAND 0",                      //
                    "'0' in colourGridLow: 0 wxALL 0", "'1' in colourGridLow: 0 wxALL 0",      //
                    "'2' in colourGridLow: 0 wxALL 0", "'3' in colourGridLow: 0 wxALL 0",      //
                    "'4' in colourGridLow: 0 wxALL 0", "'5' in colourGridLow: 0 wxALL 0",      //
                    "'6' in colourGridLow: 0 wxALL 0", "'7' in colourGridLow: 0 wxALL 0",      //
                    "colourGridHigh in paletteColumn: 1 wxALL wxEXPAND 0",                     //
                    "'8' in colourGridHigh: 0 wxALL 0", "'9' in colourGridHigh: 0 wxALL 0",    //
                    "'10' in colourGridHigh: 0 wxALL 0", "'11' in colourGridHigh: 0 wxALL 0",  //
                    "'12' in colourGridHigh: 0 wxALL 0", "'13' in colourGridHigh: 0 wxALL 0",  //
                    "'14' in colourGridHigh: 0 wxALL 0", "'15' in colourGridHigh: 0 wxALL 0",  //
                    "spacer in paletteColumn: 1 wxALL 5",                                      //
                    "'Brightness' in paletteColumn: 0 wxALL wxALIGN_CENTER_HORIZONTAL 5",      //
                    "brightness_Slider in paletteColumn: 0 wxALL wxEXPAND 5"));
}

TEST_F(SizerTree, StacksTheWindowAndItsTwoColumnsVertically) {
    for (const std::size_t box : {0U, 2U, 4U}) {
        const auto* const sizer = dynamic_cast<wxBoxSizer*>(sizers[box]);
        ASSERT_NE(sizer, nullptr) << SizerNames[box];
        EXPECT_EQ(sizer->GetOrientation(), wxVERTICAL) << SizerNames[box];
    }
}

TEST_F(SizerTree, HasFlexibleGridsWithoutGapsForThePairsAndTheColours) {
    for (const auto& [grid, columns] : std::map<std::size_t, int>{{1, 3}, {3, 2}, {5, 4}, {6, 4}}) {
        SCOPED_TRACE(SizerNames[grid]);
        auto* const sizer = dynamic_cast<wxFlexGridSizer*>(sizers[grid]);
        ASSERT_NE(sizer, nullptr);
        EXPECT_EQ(sizer->GetCols(), columns);
        EXPECT_EQ(sizer->GetRows(), 0);
        EXPECT_EQ(sizer->GetHGap(), 0);
        EXPECT_EQ(sizer->GetVGap(), 0);
        EXPECT_EQ(sizer->GetFlexibleDirection(), wxBOTH);
        EXPECT_EQ(sizer->GetNonFlexibleGrowMode(), wxFLEX_GROWMODE_SPECIFIED);
        EXPECT_FALSE(sizer->IsColGrowable(0));
        EXPECT_FALSE(sizer->IsRowGrowable(0));
    }
}

}  // namespace
