#ifndef LUMADOT_VIEWER_COMMANDS_H
#define LUMADOT_VIEWER_COMMANDS_H

#include <wx/menu.h>

#include <functional>
#include <optional>

namespace viewer {

/// All that the window does on request.
enum class Command {
    Open,
    Reload,
    Export,
    Quit,
    Play,
    Loop,
    FollowEnd,
    Faster,
    Slower,
    Next,
    Back,
    SecondOn,
    SecondBack,
    First,
    Last,
    GoToFrame,
    NextPlace,
    MarkIn,
    MarkOut,
    NoMarks,
    PaletteFile,
    Larger,
    Smaller,
    Fit,
    RoundDots,
    SquareDots,
    FullScreen,
    ShowPlaces,
    Keys,
    About,
};

/// The menus; their items have ids that `commandOf` knows.
wxMenuBar* makeMenus();

int idOf(Command command);
std::optional<Command> commandOf(int id);

/// The command of a key that is pressed while the display has the focus.
std::optional<Command> commandOfKey(int key);

/// The keys in words, for the help.
wxString keysInWords();

}  // namespace viewer

#endif
