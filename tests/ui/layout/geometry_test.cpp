// Where the window comes up, and what it remembers.

#include <gmock/gmock.h>
#include <wx/config.h>
#include <wx/display.h>
#include <wx/persist.h>

#include "tests/support/toolkit.h"
#include "tests/support/window_test.h"

namespace {

using support::runUntil;

class Geometry : public support::WindowTest {
protected:
    void resizeTo(const wxRect& rect) {
        window().SetSize(rect);
        ASSERT_TRUE(runUntil([&] { return window().GetRect() == rect; }));
    }
};

TEST_F(Geometry, IsTheContentsMinimumInAFirstRun) {
    show();
    const wxSize needed = window().GetSizer()->ComputeFittingClientSize(&window());
    EXPECT_TRUE(runUntil([&] { return window().GetClientSize() == needed; }));
    EXPECT_NE(window().GetSize(), wxSize(360, 570));
    EXPECT_TRUE(window().GetClientRect().Contains(
        the(&support::Members::dump_CheckBox).GetRect().GetBottomRight()));
    EXPECT_TRUE(window().GetClientRect().Contains(
        the(&support::Members::brightness_Slider).GetRect().GetBottomRight()));
}

TEST_F(Geometry, IsCentredOnTheScreenInAFirstRun) {
    show();
    const wxRect screen = wxDisplay(&window()).GetClientArea();
    constexpr int Tolerance = 2;  // Odd sizes round either way.
    const auto centre = [](const wxRect& rect) { return rect.GetPosition() + rect.GetSize() / 2; };
    const wxPoint off = centre(window().GetScreenRect()) - centre(screen);
    EXPECT_NEAR(off.x, 0, Tolerance);
    EXPECT_NEAR(off.y, 0, Tolerance);
}

TEST_F(Geometry, ComesBackInTheNextRun) {
    const wxRect left(60, 80, 640, 760);
    show();
    resizeTo(left);
    destroy();
    show();
    EXPECT_TRUE(runUntil([&] { return window().GetRect() == left; }))
        << window().GetRect().x << "," << window().GetRect().y << " " << window().GetRect().width
        << "x" << window().GetRect().height;
    EXPECT_FALSE(window().IsMaximized());
}

TEST_F(Geometry, ComesBackMaximisedInTheNextRun) {
    show();
    window().Maximize();
    ASSERT_TRUE(runUntil([&] { return window().IsMaximized(); }));
    destroy();
    show();
    EXPECT_TRUE(runUntil([&] { return window().IsMaximized(); }));
}

TEST_F(Geometry, IsKeptUnderTheNameOfTheLayoutClass) {
    const wxString group = "/Persistent_Options/Window/MainFrameBaseClass";
    show();
    EXPECT_FALSE(wxConfigBase::Get()->HasEntry(group + "/w"));
    const wxRect left(60, 80, 640, 760);
    resizeTo(left);
    destroy();
    EXPECT_EQ(wxConfigBase::Get()->ReadLong(group + "/x", -1), 60);
    EXPECT_EQ(wxConfigBase::Get()->ReadLong(group + "/y", -1), 80);
    EXPECT_EQ(wxConfigBase::Get()->ReadLong(group + "/w", -1), 640);
    EXPECT_EQ(wxConfigBase::Get()->ReadLong(group + "/h", -1), 760);
}

TEST_F(Geometry, IsWatchedByTheToolkitAsLongAsTheWindowLives) {
    open();
    EXPECT_NE(wxPersistenceManager::Get().Find(&window()), nullptr);
    const wxWindow* const gone = &window();
    destroy();
    EXPECT_EQ(wxPersistenceManager::Get().Find(const_cast<wxWindow*>(gone)), nullptr);
}

TEST_F(Geometry, CentresAWindowWithAParentOnThatParent) {
    wxFrame parent(nullptr, wxID_ANY, "Parent", wxPoint(40, 50), wxSize(700, 800));
    support::showAndWait(parent);
    ASSERT_TRUE(runUntil([&] { return parent.GetPosition() == wxPoint(40, 50); }));
    auto* const child = new MainFrameBaseClass(&parent);
    const auto centre = [](const wxRect& rect) { return rect.GetPosition() + rect.GetSize() / 2; };
    const wxPoint off = centre(child->GetRect()) - centre(parent.GetRect());
    EXPECT_NEAR(off.x, 0, 1);
    EXPECT_NEAR(off.y, 0, 1);
    child->Destroy();
    support::deleteClosedWindows();
}

}  // namespace
