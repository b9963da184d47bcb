#!/usr/bin/env bash
# Usage: program_window.sh SIMULATOR, on a display.
# The program with its window: how it ends, and what it costs.
# shellcheck source=tests/simulator/server/program.sh
source "$(dirname "${BASH_SOURCE[0]}")/../server/program.sh" "$1"
export HOME=$WORK/home MODE=
mkdir "$HOME"
cd "$WORK"

window_is_there() {
  WINDOW=$(xdotool search --onlyvisible --name "$1" 2>/dev/null | head -n 1)
  [[ -n $WINDOW ]]
}
is_active() {
  xdotool windowactivate "$WINDOW" 2>/dev/null || return 1
  [[ $(xdotool getactivewindow 2>/dev/null) == "$WINDOW" ]]
}
start_window() {
  start_simulator "$@"
  wait_until "the window is there" window_is_there '^LUMADOT Simulator$'
  wait_until "the window is active" is_active
}
is_gone() { ! kill -0 "$PROCESS" 2>/dev/null; }

start_window
stop_simulator

start_window
xdotool key --clearmodifiers alt+F4
wait_until "the program has ended" is_gone
result=0
wait "$PROCESS" || result=$?
PROCESS=''
check "exit code 0 when the window is closed, not $result" [ "$result" = 0 ]

start_window
xdotool key --clearmodifiers ctrl+s
wait_until "it asks for a name" window_is_there '^Save a Picture$'
stop_simulator
check "nothing was saved" [ ! -e display.png ]

# The clock ticks that it uses in two seconds, at 100 a second.
ticks() { awk '{ print $14 + $15 }' "/proc/$PROCESS/stat"; }
used_in_two_seconds() {
  local before
  before=$(ticks)
  sleep 2 # The measure, not a wait.
  echo $(($(ticks) - before))
}
start_window --board xl
echo "192 x 64 dots at scale 4, 60 pictures a second: $(used_in_two_seconds) ticks in 2 s"
xdotool windowminimize "$WINDOW"
is_hidden() { xprop -id "$WINDOW" WM_STATE | grep -q Iconic; }
wait_until "the window is hidden" is_hidden
used=$(used_in_two_seconds)
echo "hidden: $used ticks in 2 s"
check "under 1 % of a core when it is hidden" [ "$used" -le 2 ]
xdotool windowactivate "$WINDOW"
plays() { (($(used_in_two_seconds) > 2)); }
wait_until "it plays on when it is shown again" plays
stop_simulator

result=0
env -u DISPLAY -u WAYLAND_DISPLAY "$SIMULATOR" --port 0 >"$WORK/out" 2>"$WORK/errors" || result=$?
check "exit code 1 without a display, not $result" [ "$result" = 1 ]
check "the message says what to do" \
  grep -q 'no display for the window; start it with --headless' "$WORK/errors"
