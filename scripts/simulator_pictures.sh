#!/usr/bin/env bash
# Makes the pictures of the simulator's documentation, docs/pictures/simulator*.png, from its real window:
# scripts/on_display.sh scripts/simulator_pictures.sh BUILD_FOLDER
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/lib/session.sh
source scripts/lib/session.sh

build=$(realpath "$1")
pictures=$PWD/docs/pictures
work=$(mktemp -d)
mkdir -p "$pictures" "$work/home"
export HOME=$work/home LOG=$work/usb-log.txt LUMADOT_SIM_STORE=$work/state LUMADOT_SIM_FRAME_MS=16
export SIMULATOR=$build/lumadot-simulator SIMULATOR_MODE=
trap 'stop_simulator; rm -rf "$work"' EXIT

# A palette that shows all shades well, and a brightness to look at.
fill_memory() {
  local bytes entry text=
  bytes=(0 8 15 10 15 12 15 0 15 15 0 0 0 0 0 0 0 0 0 0 1 1 200)
  mkdir -p "$LUMADOT_SIM_STORE/files"
  printf -v text '\\x%02x' "${bytes[@]}"
  printf '%b' "$text" >"$LUMADOT_SIM_STORE/settings"
  bytes=()
  for ((entry = 0; entry < 16; entry++)); do
    bytes+=($((17 * entry)) $((9 * entry)) 0)
  done
  printf -v text '\\x%02x' "${bytes[@]}"
  printf '%b' "$text" >"$LUMADOT_SIM_STORE/palette"
  head -c 65536 /dev/zero >"$LUMADOT_SIM_STORE/files/attract.dat"
}

# Some commands of the tool, and a picture of what the simulator makes of them.
take_picture() {
  fill_memory
  start_tool "$build/lumadot-tool" "$build/simulated_bus"
  press Down
  expect_frame "an input mode" "02 01 00"
  press Down
  expect_frame "the next input mode" "02 02 00"
  show_simulator
  import -window "$WINDOW" "$pictures/$1"
  stop_simulator
  kill "$TOOL"
  wait "$TOOL" || true
}

take_picture simulator.png
GTK_THEME=Adwaita:dark LUMADOT_SIM_BOARD=xl take_picture simulator-xl.png
