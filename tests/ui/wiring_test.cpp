// How each menu item and control reaches its handler.

#include <gmock/gmock.h>
#include <wx/app.h>

#include <string>
#include <vector>

#include "tests/support/about_box.h"
#include "tests/support/toolkit.h"
#include "tests/support/window_test.h"
#include "tests/ui/sources.h"

namespace {

using support::raise;
using support::Source;
using testing::ElementsAre;
using testing::IsEmpty;

/// Overrides every handler and writes down which of them ran.
class Recorder : public MainFrameBaseClass {
public:
    Recorder() : MainFrameBaseClass(nullptr) {}

    void OnLoad_configMenuSelected(wxCommandEvent&) override { hear("OnLoad_configMenuSelected"); }
    void OnSave_configMenuSelected(wxCommandEvent&) override { hear("OnSave_configMenuSelected"); }
    void OnLoad_paletteMenuSelected(wxCommandEvent&) override {
        hear("OnLoad_paletteMenuSelected");
    }
    void OnSave_paletteMenuSelected(wxCommandEvent&) override {
        hear("OnSave_paletteMenuSelected");
    }
    void OnLoad_DeviceMenuSelected(wxCommandEvent&) override { hear("OnLoad_DeviceMenuSelected"); }
    void OnSave_DeviceMenuSelected(wxCommandEvent&) override { hear("OnSave_DeviceMenuSelected"); }
    void OnPalette_DeviceMenuSelected(wxCommandEvent&) override {
        hear("OnPalette_DeviceMenuSelected");
    }
    void OnUpload_DeviceMenuSelected(wxCommandEvent&) override {
        hear("OnUpload_DeviceMenuSelected");
    }
    void OnReset_DeviceMenuSelected(wxCommandEvent&) override {
        hear("OnReset_DeviceMenuSelected");
    }
    void OnAbout(wxCommandEvent&) override { hear("OnAbout"); }
    void OnSet_PinMame(wxCommandEvent&) override { hear("OnSet_PinMame"); }
    void OnSet_WPC(wxCommandEvent&) override { hear("OnSet_WPC"); }
    void OnSet_Stern(wxCommandEvent&) override { hear("OnSet_Stern"); }
    void OnSet_WhiteStar(wxCommandEvent&) override { hear("OnSet_WhiteStar"); }
    void OnSet_Spike(wxCommandEvent&) override { hear("OnSet_Spike"); }
    void OnSet_DataEast(wxCommandEvent&) override { hear("OnSet_DataEast"); }
    void OnSet_Gottlieb1(wxCommandEvent&) override { hear("OnSet_Gottlieb1"); }
    void OnSet_Gottlieb2(wxCommandEvent&) override { hear("OnSet_Gottlieb2"); }
    void OnSet_Gottlieb3(wxCommandEvent&) override { hear("OnSet_Gottlieb3"); }
    void OnSet_Capcom(wxCommandEvent&) override { hear("OnSet_Capcom"); }
    void OnSet_AlvinG(wxCommandEvent&) override { hear("OnSet_AlvinG"); }
    void OnSet_Spooky(wxCommandEvent&) override { hear("OnSet_Spooky"); }
    void OnSet_DE128x16(wxCommandEvent&) override { hear("OnSet_DE128x16"); }
    void OnSet_Inder(wxCommandEvent&) override { hear("OnSet_Inder"); }
    void OnSet_Sleic(wxCommandEvent&) override { hear("OnSet_Sleic"); }
    void OnSet_HomePin(wxCommandEvent&) override { hear("OnSet_HomePin"); }
    void enhancer_CheckBox_Clicked(wxCommandEvent&) override { hear("enhancer_CheckBox_Clicked"); }
    void dump_CheckBox_Clicked(wxCommandEvent&) override { hear("dump_CheckBox_Clicked"); }
    void OnSet_palChoiceSelected(wxCommandEvent&) override { hear("OnSet_palChoiceSelected"); }
    void OnSet_col0ButtonClicked(wxCommandEvent&) override { hear("OnSet_col0ButtonClicked"); }
    void OnSet_col1ButtonClicked(wxCommandEvent&) override { hear("OnSet_col1ButtonClicked"); }
    void OnSet_col2ButtonClicked(wxCommandEvent&) override { hear("OnSet_col2ButtonClicked"); }
    void OnSet_col3ButtonClicked(wxCommandEvent&) override { hear("OnSet_col3ButtonClicked"); }
    void OnSet_col4ButtonClicked(wxCommandEvent&) override { hear("OnSet_col4ButtonClicked"); }
    void OnSet_col5ButtonClicked(wxCommandEvent&) override { hear("OnSet_col5ButtonClicked"); }
    void OnSet_col6ButtonClicked(wxCommandEvent&) override { hear("OnSet_col6ButtonClicked"); }
    void OnSet_col7ButtonClicked(wxCommandEvent&) override { hear("OnSet_col7ButtonClicked"); }
    void OnSet_col8ButtonClicked(wxCommandEvent&) override { hear("OnSet_col8ButtonClicked"); }
    void OnSet_col9ButtonClicked(wxCommandEvent&) override { hear("OnSet_col9ButtonClicked"); }
    void OnSet_col10ButtonClicked(wxCommandEvent&) override { hear("OnSet_col10ButtonClicked"); }
    void OnSet_col11ButtonClicked(wxCommandEvent&) override { hear("OnSet_col11ButtonClicked"); }
    void OnSet_col12ButtonClicked(wxCommandEvent&) override { hear("OnSet_col12ButtonClicked"); }
    void OnSet_col13ButtonClicked(wxCommandEvent&) override { hear("OnSet_col13ButtonClicked"); }
    void OnSet_col14ButtonClicked(wxCommandEvent&) override { hear("OnSet_col14ButtonClicked"); }
    void OnSet_col15ButtonClicked(wxCommandEvent&) override { hear("OnSet_col15ButtonClicked"); }
    void OnTrack_Brightness(wxScrollEvent&) override { hear("OnTrack_Brightness"); }

    std::vector<std::string> heard;

private:
    void hear(const char* handler) { heard.emplace_back(handler); }
};

class EverySource : public support::WindowTest, public testing::WithParamInterface<Source> {};

std::string nameOf(const testing::TestParamInfo<Source>& info) {
    const bool isDrag = info.param.scrollEvent == &wxEVT_SCROLL_THUMBTRACK;
    return std::string(info.param.handler) + (isDrag ? "_WhileDragged" : "");
}

INSTANTIATE_TEST_SUITE_P(Window, EverySource, testing::ValuesIn(support::Sources), nameOf);

TEST_P(EverySource, ReachesItsOwnHandlerAndNoOther) {
    Recorder recorder;
    EXPECT_TRUE(raise(recorder, GetParam()));
    EXPECT_THAT(recorder.heard, ElementsAre(std::string(GetParam().handler)));
}

TEST_P(EverySource, IsPassedOnToTheToolkitByTheLayoutAlone) {
    MainFrameBaseClass layout(nullptr);
    std::vector<wxEventType> passedOn;
    const auto note = [&](wxEvent& event) { passedOn.push_back(event.GetEventType()); };
    const auto raiseAndListen = [&](auto type) {
        wxTheApp->Bind(type, note);
        raise(layout, GetParam());
        wxTheApp->Unbind(type, note);
    };
    if (GetParam().event != nullptr) {
        raiseAndListen(*GetParam().event);
    } else {
        raiseAndListen(*GetParam().scrollEvent);
    }
    EXPECT_THAT(passedOn, ElementsAre(GetParam().type()));
    EXPECT_EQ(dialogs.seen(), 0);
    EXPECT_THAT(bus.calls(), IsEmpty());
}

TEST_P(EverySource, IsTakenByTheControllerWindow) {
    open();
    for (int i = 0; i < GetParam().dialogs; ++i) {
        dialogs.expect([](wxDialog&) { return wxID_CANCEL; });
    }
    EXPECT_TRUE(raise(window(), GetParam()));
    support::AboutBoxes().close();
}

}  // namespace
