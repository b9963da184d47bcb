#include "ui/layout/dialog_frame.h"

#ifdef __WXMSW__

#include <wx/containr.h>
#include <wx/display.h>
#include <wx/msw/wrapwin.h>
#include <wx/radiobut.h>
#include <wx/settings.h>
#include <wx/sizer.h>

#include <algorithm>
#include <memory>

namespace {

void paintAsDialog(wxFrame& frame) {
    frame.SetBackgroundColour(wxSystemSettings::GetColour(wxSYS_COLOUR_BTNFACE));
}

/// The toolkit looks for keys of dialogs in windows with both of these styles, and gives frames
/// neither.
void takeDialogKeys(wxFrame& frame) {
    frame.ToggleWindowStyle(wxTAB_TRAVERSAL);
    const HWND window = frame.GetHWND();
    SetWindowLongPtrW(window, GWL_EXSTYLE,
                      GetWindowLongPtrW(window, GWL_EXSTYLE) | WS_EX_CONTROLPARENT);
}

/// Tab stops at the selected button of a group, and a group has to say where it starts. With
/// nothing before it that is the same group as without the flag.
void startGroup(const wxFrame& frame) {
    for (wxWindow* const child : frame.GetChildren()) {
        if (wxDynamicCast(child, wxRadioButton) != nullptr) {
            child->ToggleWindowStyle(wxRB_GROUP);
            return;
        }
    }
}

/// A radio button that the arrows have moved to is selected; some versions of Windows do so by
/// themselves.
void selectFocused() {
    auto* const button = wxDynamicCast(wxWindow::FindFocus(), wxRadioButton);
    if (button != nullptr && !button->GetValue()) {
        wxCommandEvent selected(wxEVT_RADIOBUTTON, button->GetId());
        selected.SetEventObject(button);
        selected.SetInt(1);
        button->Command(selected);
    }
}

}  // namespace

void behaveAsDialog(wxFrame& frame) {
    paintAsDialog(frame);
    frame.Bind(wxEVT_SYS_COLOUR_CHANGED, [&frame](wxSysColourChangedEvent& event) {
        paintAsDialog(frame);
        event.Skip();
    });
    takeDialogKeys(frame);
    startGroup(frame);
    const auto focus = std::make_shared<wxControlContainer>();
    focus->SetContainerWindow(&frame);
    focus->UpdateCanFocusChildren();
    frame.Bind(wxEVT_NAVIGATION_KEY, [focus](wxNavigationKeyEvent& event) {
        focus->HandleOnNavigationKey(event);
        selectFocused();
    });
    frame.Bind(wxEVT_SET_FOCUS, [focus](wxFocusEvent& event) { focus->HandleOnFocus(event); });
    frame.Bind(wxEVT_CHILD_FOCUS, [focus](wxChildFocusEvent& event) {
        focus->SetLastFocus(event.GetWindow());
        event.Skip();
    });
}

void growToContents(wxFrame& frame) {
    const wxSize needed = frame.GetSizer()->ComputeFittingWindowSize(&frame);
    wxSize size = frame.GetSize();
    size.IncTo(needed);
    if (size == frame.GetSize() || frame.IsMaximized() || frame.IsIconized()) {
        return;
    }
    const wxRect screen = wxDisplay(&frame).GetClientArea();
    wxPoint place = frame.GetPosition();
    place.x = std::max(std::min(place.x, screen.GetRight() + 1 - size.x), screen.x);
    place.y = std::max(std::min(place.y, screen.GetBottom() + 1 - size.y), screen.y);
    frame.SetSize(wxRect(place, size));
}

#else

void behaveAsDialog(wxFrame& /*frame*/) {}

void growToContents(wxFrame& /*frame*/) {}

#endif
