#include "viewer/commands.h"

#include <wx/defs.h>

#include <algorithm>
#include <iterator>

namespace viewer {

namespace {

enum class Menu { File, Play, Go, Part, View, Help };

constexpr const char* MenuLabels[] = {"&File", "&Playback", "&Go", "P&art", "&View", "&Help"};

struct Entry {
    Menu menu;
    Command command;
    const char* label;
    wxItemKind kind = wxITEM_NORMAL;
    int key = WXK_NONE;  ///< on the display
    const char* keyName = "";
};

constexpr Entry Entries[] = {
    {Menu::File, Command::Open, "&Open...\tCtrl+O"},
    {Menu::File, Command::Reload, "&Reload\tF5"},
    {Menu::File, Command::Export, "&Export...\tCtrl+E"},
    {Menu::File, Command::Quit, "&Quit\tCtrl+Q"},
    {Menu::Play, Command::Play, "&Play or Pause\tCtrl+P", wxITEM_NORMAL, WXK_SPACE, "Space"},
    {Menu::Play, Command::Loop, "&Loop\tCtrl+L", wxITEM_CHECK, 'L', "L"},
    {Menu::Play, Command::FollowEnd, "&Follow the End\tCtrl+F", wxITEM_CHECK, 'F', "F"},
    {Menu::Play, Command::Faster, "Fas&ter\tCtrl+Up", wxITEM_NORMAL, WXK_UP, "Up"},
    {Menu::Play, Command::Slower, "&Slower\tCtrl+Down", wxITEM_NORMAL, WXK_DOWN, "Down"},
    {Menu::Go, Command::Next, "&Next Frame\tAlt+Right", wxITEM_NORMAL, WXK_RIGHT, "Right"},
    {Menu::Go, Command::Back, "Frame &Before\tAlt+Left", wxITEM_NORMAL, WXK_LEFT, "Left"},
    {Menu::Go, Command::SecondOn, "A &Second On\tAlt+PageDown", wxITEM_NORMAL, WXK_PAGEDOWN,
     "Page Down"},
    {Menu::Go, Command::SecondBack, "A Second Ba&ck\tAlt+PageUp", wxITEM_NORMAL, WXK_PAGEUP,
     "Page Up"},
    {Menu::Go, Command::First, "&First Frame\tAlt+Home", wxITEM_NORMAL, WXK_HOME, "Home"},
    {Menu::Go, Command::Last, "&Last Frame\tAlt+End", wxITEM_NORMAL, WXK_END, "End"},
    {Menu::Go, Command::GoToFrame, "&Go to Frame\tCtrl+G", wxITEM_NORMAL, 'G', "G"},
    {Menu::Go, Command::NextPlace, "Next &Damaged Place or Gap\tCtrl+D", wxITEM_NORMAL, 'D', "D"},
    {Menu::Part, Command::MarkIn, "Mark &In\tCtrl+Shift+I", wxITEM_NORMAL, 'I', "I"},
    {Menu::Part, Command::MarkOut, "Mark &Out\tCtrl+Shift+O", wxITEM_NORMAL, 'O', "O"},
    {Menu::Part, Command::NoMarks, "&No Marks\tCtrl+Shift+N", wxITEM_NORMAL, WXK_BACK, "Backspace"},
    {Menu::View, Command::PaletteFile, "&Palette File...\tCtrl+Shift+P"},
    {Menu::View, Command::Larger, "&Larger Dots\tCtrl++", wxITEM_NORMAL, '+', "+"},
    {Menu::View, Command::Smaller, "&Smaller Dots\tCtrl+-", wxITEM_NORMAL, '-', "-"},
    {Menu::View, Command::Fit, "&Fit\tCtrl+0", wxITEM_NORMAL, '0', "0"},
    {Menu::View, Command::RoundDots, "&Round Dots\tCtrl+R", wxITEM_RADIO},
    {Menu::View, Command::SquareDots, "S&quare Dots\tCtrl+Shift+R", wxITEM_RADIO},
    {Menu::View, Command::ShowPlaces, "Damaged Places and &Gaps\tCtrl+Shift+D", wxITEM_CHECK},
    {Menu::View, Command::FullScreen, "F&ull Screen\tF11", wxITEM_CHECK},
    {Menu::Help, Command::Keys, "&Keys\tF1"},
    {Menu::Help, Command::About, "&About"},
};

constexpr int FirstId = wxID_HIGHEST + 1;

}  // namespace

int idOf(Command command) { return FirstId + static_cast<int>(command); }

std::optional<Command> commandOf(int id) {
    const int number = id - FirstId;
    const bool isOurs = number >= 0 && number <= static_cast<int>(Command::About);
    return isOurs ? std::optional(static_cast<Command>(number)) : std::nullopt;
}

wxMenuBar* makeMenus() {
    wxMenu* menus[std::size(MenuLabels)];
    std::ranges::generate(menus, [] { return new wxMenu; });
    for (const Entry& entry : Entries) {
        menus[static_cast<int>(entry.menu)]->Append(idOf(entry.command), entry.label, "",
                                                    entry.kind);
    }
    auto* const bar = new wxMenuBar;
    for (std::size_t i = 0; i < std::size(MenuLabels); ++i) {
        bar->Append(menus[i], MenuLabels[i]);
    }
    return bar;
}

std::optional<Command> commandOfKey(int key) {
    switch (key) {
        case WXK_NONE:
            return std::nullopt;
        case WXK_NUMPAD_ADD:
        case '=':  // Where + needs the shift key.
            key = '+';
            break;
        case WXK_NUMPAD_SUBTRACT:
            key = '-';
            break;
        default:
            break;
    }
    const auto* const found = std::ranges::find(Entries, key, &Entry::key);
    return found == std::end(Entries) ? std::nullopt : std::optional(found->command);
}

wxString keysInWords() {
    wxString text = "While the display has the focus:\n";
    for (const Entry& entry : Entries) {
        if (entry.key != WXK_NONE) {
            text += wxString(entry.keyName) + ": " +
                    wxMenuItem::GetLabelText(wxString(entry.label).BeforeFirst('\t')) + "\n";
        }
    }
    return text +
           "Shift and an arrow: scroll\nEscape: leave the full screen\n\nThe menus name the keys "
           "that work everywhere.";
}

}  // namespace viewer
