#!/usr/bin/env bash
# A moved and resized window comes back where it was.
# shellcheck source=tests/end_to_end/common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh" "$@"

geometry() { xdotool getwindowgeometry --shell "$WINDOW" | grep -E '^(X|Y|WIDTH|HEIGHT)='; }
geometry_is() { [[ $(geometry) == "$1" ]]; }
size_is() { [[ $(geometry) == *"WIDTH=$1"*"HEIGHT=$2"* ]]; }

start_tool "$PROGRAM" "$BUS"
xdotool windowsize "$WINDOW" 520 800
wait_until "the window has its size" size_is 520 800
before=$(geometry)
xdotool windowmove "$WINDOW" 150 90
moved() { [[ $(geometry) != "$before" ]]; }
wait_until "the window has moved" moved
before=$(geometry)
press Down # The tool has seen the new geometry once it answers a key.
expect_frame "the input mode" "02 01 00"
check "exit code 0" close_tool

start_tool "$PROGRAM" "$BUS"
wait_until "the window is where it was ($before)" geometry_is "$before"
check "exit code 0" close_tool
