#!/usr/bin/env bash
# Plays a short session with the tool on the simulated controller: scripts/demo.sh BUILD_FOLDER
# Needs a display with a window manager. Leaves build/demo/window.png and build/demo/usb-log.txt.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/lib/session.sh
source scripts/lib/session.sh

build=$1
demo=build/demo
mkdir -p "$demo"
export LOG=$demo/usb-log.txt SIMULATOR=$build/lumadot-simulator
LUMADOT_SIM_STORE=$(mktemp -d)
HOME=$(mktemp -d) # The demo shall not move the user's own window.
export HOME LUMADOT_SIM_STORE LUMADOT_SIM_TIME=real LUMADOT_SIM_FRAME_MS=16
trap 'stop_simulator; rm -rf "$HOME" "$LUMADOT_SIM_STORE"' EXIT

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
import -window "$WINDOW" "$demo/window.png"
close_tool
echo "$demo/window.png"
echo "$demo/usb-log.txt"
