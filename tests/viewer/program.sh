#!/usr/bin/env bash
# The program as a user starts it: program.sh PROGRAM
set -euo pipefail
program=$1
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
# shellcheck source=scripts/lib/session.sh
source "$here/../../scripts/lib/session.sh"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export HOME=$work XDG_CONFIG_HOME=$work/config

# start ARGUMENT...: leaves VIEWER and WINDOW.
start() {
  "$program" "$@" 2>"$work/errors" &
  VIEWER=$!
  wait_until "the window is there" window_of "$VIEWER"
  activate "$WINDOW"
}
title_is() { [[ $(xdotool getwindowname "$WINDOW" 2>/dev/null) == "$1" ]]; }
has_ended() { ! kill -0 "$VIEWER" 2>/dev/null; }
quit() {
  press ctrl+q
  wait_until "the viewer has ended" has_ended
  wait "$VIEWER"
}

# A frame of 128 x 32 dots: frame TIME DIGIT
frame() {
  printf '0x%08x\r\n' "$1"
  for _ in {1..32}; do
    printf "%s\r\n" "$(printf "$2%.0s" {1..128})"
  done
  printf '\r\n'
}

recording="$work/für mich_lumadot_dump.txt"
{ frame 1 1 && frame 2 2; } >"$recording"
start "$recording"
wait_until "the title names the file" title_is "für mich_lumadot_dump.txt - LUMADOT Viewer"
check "exit code 0" quit

start -- "$recording"
wait_until "the title names the file behind --" title_is "für mich_lumadot_dump.txt - LUMADOT Viewer"
check "exit code 0" quit

start "$work/missing.raw" # The window comes, and says so.
check "the title names no file" title_is "LUMADOT Viewer"
check "exit code 0" quit

check "help" grep -q 'lumadot-viewer \[FILE\]' <("$program" --help)
check "version" grep -Eq '^lumadot-viewer [0-9.]+$' <(DISPLAY='' "$program" --version)
result=0
env -u DISPLAY -u WAYLAND_DISPLAY "$program" 2>"$work/errors" || result=$?
check "exit code 1 without a display, not $result" [ "$result" = 1 ]
check "the message says what to do" grep -q 'no display for the window; in a terminal' "$work/errors"

result=0
"$program" one.raw two.raw 2>"$work/errors" || result=$?
check "exit code 2 for two files, not $result" [ "$result" = 2 ]
check "the message says where to look" grep -q 'lumadot-viewer: one recording' "$work/errors"
result=0
"$program" --bad 2>"$work/errors" || result=$?
check "exit code 2 for an option that there is not, not $result" [ "$result" = 2 ]
check "the message names the option" grep -qx 'lumadot-viewer: "--bad" is no option; see --help' "$work/errors"
