// The menu bar, and the frame around everything.

#include <gmock/gmock.h>

#include <set>
#include <string>
#include <vector>

#include "tests/support/members.h"

namespace {

using support::in;
using support::Members;
using testing::ElementsAre;

class Menus : public testing::Test {
protected:
    std::vector<std::string> labelsOf(std::size_t menu) {
        std::vector<std::string> labels;
        for (const wxMenuItem* item : frame.GetMenuBar()->GetMenu(menu)->GetMenuItems()) {
            labels.push_back(item->GetItemLabel().utf8_string());
        }
        return labels;
    }

    std::vector<const wxMenuItem*> allItems() {
        std::vector<const wxMenuItem*> items;
        for (std::size_t menu = 0; menu < frame.GetMenuBar()->GetMenuCount(); ++menu) {
            const auto& list = frame.GetMenuBar()->GetMenu(menu)->GetMenuItems();
            items.insert(items.end(), list.begin(), list.end());
        }
        return items;
    }

    MainFrameBaseClass frame{nullptr};
};

TEST_F(Menus, AreFileDeviceAndHelp) {
    ASSERT_EQ(frame.GetMenuBar(), &in(frame, &Members::m_menuBar));
    ASSERT_EQ(frame.GetMenuBar()->GetMenuCount(), 3U);
    EXPECT_EQ(frame.GetMenuBar()->GetMenuLabel(0), "File");
    EXPECT_EQ(frame.GetMenuBar()->GetMenuLabel(1), "Device");
    EXPECT_EQ(frame.GetMenuBar()->GetMenuLabel(2), "Help");
    EXPECT_EQ(frame.GetMenuBar()->GetMenu(0), &in(frame, &Members::file_Menu));
    EXPECT_EQ(frame.GetMenuBar()->GetMenu(1), &in(frame, &Members::device_Menu));
    EXPECT_EQ(frame.GetMenuBar()->GetMenu(2), &in(frame, &Members::help_Menu));
}

TEST_F(Menus, HaveTheirItemsInOrder) {
    EXPECT_THAT(labelsOf(0),
                ElementsAre("Load Config", "Save Config", "Load Palette", "Save Palette"));
    EXPECT_THAT(labelsOf(1),
                ElementsAre("Load Config", "Save Config", "Save Palette", "Upload File", "Reset"));
    EXPECT_THAT(labelsOf(2), ElementsAre("About"));
}

TEST_F(Menus, HaveTheMembersOfTheirNamesAsItems) {
    const std::vector<const wxMenuItem*> members = {
        &in(frame, &Members::load_config),    &in(frame, &Members::save_config),
        &in(frame, &Members::load_palette),   &in(frame, &Members::save_palette),
        &in(frame, &Members::load_Device),    &in(frame, &Members::save_Device),
        &in(frame, &Members::palette_Device), &in(frame, &Members::upload_Device),
        &in(frame, &Members::reset_Device),   &in(frame, &Members::about_Item)};
    EXPECT_EQ(allItems(), members);
}

TEST_F(Menus, HavePlainItemsWithIdsFromTheToolkit) {
    std::set<int> ids;
    for (const wxMenuItem* item : allItems()) {
        SCOPED_TRACE(item->GetItemLabel().utf8_string());
        EXPECT_EQ(item->GetKind(), wxITEM_NORMAL);
        EXPECT_EQ(item->GetHelp(), "");
        EXPECT_EQ(item->GetAccel(), nullptr);
        EXPECT_EQ(item->GetSubMenu(), nullptr);
        EXPECT_FALSE(item->GetBitmap().IsOk());
        EXPECT_TRUE(item->IsEnabled());
        EXPECT_TRUE(support::isFromToolkit(item->GetId()));
        ids.insert(item->GetId());
    }
    EXPECT_EQ(ids.size(), 10U);
}

TEST_F(Menus, HaveNoStyle) {
    EXPECT_EQ(frame.GetMenuBar()->GetWindowStyleFlag(), 0);
    for (std::size_t menu = 0; menu < 3; ++menu) {
        EXPECT_EQ(frame.GetMenuBar()->GetMenu(menu)->GetStyle(), 0);
    }
}

TEST_F(Menus, StandOverAFrameWithoutParentAndWithoutClippedChildren) {
    EXPECT_EQ(frame.GetParent(), nullptr);
    EXPECT_EQ(frame.GetTitle(), "LUMADOT Spectra");
    EXPECT_EQ(frame.GetName(), "MainFrameBaseClass");
    EXPECT_EQ(frame.GetWindowStyleFlag(), wxCAPTION | wxRESIZE_BORDER | wxMAXIMIZE_BOX |
                                              wxMINIMIZE_BOX | wxSYSTEM_MENU | wxCLOSE_BOX);
    EXPECT_TRUE(support::isFromToolkit(frame.GetId()));
    EXPECT_EQ(frame.GetStatusBar(), nullptr);
    EXPECT_EQ(frame.GetToolBar(), nullptr);
    EXPECT_FALSE(frame.GetIcon().IsOk());
    EXPECT_EQ(frame.GetMinSize(), wxDefaultSize);
    EXPECT_EQ(frame.GetMaxSize(), wxDefaultSize);
    EXPECT_FALSE(frame.IsShown());
}

}  // namespace
