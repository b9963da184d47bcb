#!/usr/bin/env bash
# Usage: demo.sh CMAKE BUILD_FOLDER, on a display.
# What is installed can be tried: lumadot-demo starts the tool on a simulated controller, which keeps
# what the tool stores and ends with it.
set -euo pipefail
# shellcheck source=scripts/lib/session.sh
source "$(dirname "${BASH_SOURCE[0]}")/../../scripts/lib/session.sh"

prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT
"$1" --install "$2" --prefix "$prefix" >/dev/null
export HOME=$prefix/home LOG=$prefix/usb-log.txt LUMADOT_SIM_LOG=$prefix/usb-log.txt
unset XDG_DATA_HOME
mkdir "$HOME"

"$prefix/bin/lumadot-demo" --help | grep -q 'simulated controller'
result=0
"$prefix/bin/lumadot-demo" --verbose 2>/dev/null || result=$?
[[ $result -eq 2 ]]

"$prefix/bin/lumadot-demo" >"$prefix/out" &
TOOL=$!
wait_until "the display is there" simulator_is_there
wait_until "the window is there" window_is_there
activate "$WINDOW"
DEMO=$TOOL
TOOL=$(pgrep -P "$DEMO" lumadot-tool)
wait_until "the tool rests" tool_rests
press Down
expect_frame "the input mode" "02 01 00"
choose_device_item 2
expect_frame "the store command" "01 00"
simulator=$(pgrep -P "$DEMO" lumadot-simulat)
TOOL=$DEMO
close_tool
grep -q 'simulated controller; its memory is .*/home/.local/share/lumadot-demo' "$prefix/out"
[[ $(od -An -N1 -tu1 "$HOME/.local/share/lumadot-demo/settings") -eq 1 ]]
simulator_is_gone() { ! kill -0 "$simulator" 2>/dev/null; }
wait_until "the simulator is gone" simulator_is_gone
