#!/usr/bin/env bash
# Plays a short session with the tool on the simulated controller: scripts/demo.sh BUILD_FOLDER
# Needs a display with a window manager. Leaves in build/demo: window.png, the tool; display.png, what the
# display shows; simulator.png, the simulator's window; usb-log.txt.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/lib/session.sh
source scripts/lib/session.sh

build=$(realpath "$1")
demo=build/demo
mkdir -p "$demo"
cd "$demo" # Where the simulator offers to save its picture.
export LOG=$PWD/usb-log.txt SIMULATOR=$build/lumadot-simulator SIMULATOR_MODE=
LUMADOT_SIM_STORE=$(mktemp -d)
HOME=$(mktemp -d) # The demo shall not move the user's own window.
export HOME LUMADOT_SIM_STORE LUMADOT_SIM_TIME=real LUMADOT_SIM_FRAME_MS=16
trap 'stop_simulator; rm -rf "$HOME" "$LUMADOT_SIM_STORE"' EXIT

# The name that the dialog offers is the right one.
picture_is_saved() {
  local dialog
  [[ ! -s display.png ]] || return 0
  dialog=$(xdotool search --onlyvisible --name '^Save a Picture$' 2>/dev/null) || return 1
  is_active "$dialog" && press Return && sleep 0.2
  return 1
}

echo "No display: playing a session on the simulated controller."
start_tool "$build/lumadot-tool" "$build/simulated_bus"
press Down
expect_frame "the input mode" "02 01 00"
echo "  mode        Bally/Williams     command 02, operand 01"
press Tab Tab Tab Down
expect_frame "the palette preset" "03 01 00"
echo "  preset      Palette 1 (Red)    command 03, operand 01"
press Tab Tab Tab Tab Tab Right Right Right
expect_frame "the brightness" "08 00\*12 21 00"
echo "  brightness  33                 command 08, byte 17 = 21"
choose_device_item 2
expect_frame "the settings record" "20 01 01"
expect_frame "the store command" "01 00"
echo "  store       Device, Save Config   commands 20 and 01"
import -window "$WINDOW" window.png
tool_window=$WINDOW
show_simulator
rm -f display.png
press ctrl+s
wait_until "the picture is saved" picture_is_saved
activate "$WINDOW"
import -window "$WINDOW" simulator.png
activate "$tool_window"
close_tool
echo "$demo/window.png"
echo "$demo/display.png"
echo "$demo/simulator.png"
echo "$demo/usb-log.txt"
