#!/usr/bin/env bash
# Takes the pictures of docs/recordings.md from the real window: a recording of the simulated machine, and
# the three steps to an animated GIF. Run as scripts/recording_pictures.sh.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/lib/packages.sh
source scripts/lib/packages.sh
# shellcheck source=scripts/lib/session.sh
source scripts/lib/session.sh

build=$PWD/build/release
pictures=$PWD/docs/pictures

# window_is TITLE: leaves FOUND.
window_is() {
  FOUND=$(xdotool search --onlyvisible --name "$1" 2>/dev/null | tail -n 1)
  [[ -n $FOUND ]]
}

# The window with what lies before it: picture NAME
picture() {
  wait_until "the viewer rests" tool_rests
  sleep 0.3 # The server has drawn by then what the viewer has asked for; nothing tells.
  local x y width height
  read -r x y width height < <(xwininfo -id "$window" | awk '
    /Absolute upper-left X/ { x = $NF } /Absolute upper-left Y/ { y = $NF }
    /Width/ { w = $NF } /Height/ { h = $NF } END { print x, y, w, h }')
  import -silent -window root -strip -crop "${width}x${height}+${x}+${y}" +repage "$pictures/$1.png"
  echo "docs/pictures/$1.png"
}

record() {
  LD_LIBRARY_PATH="$build/simulated_bus" LUMADOT_SIM_BOARD=standard LUMADOT_SIM_TIME=real \
    LUMADOT_SIM_FRAME_MS=33 "$build/lumadotctl" record "$work" --mode 1 --frames 90 2>/dev/null
  mv "$work"/*_lumadot_dump.txt "$work/050324_140709_lumadot_dump.txt"
}

take_pictures() {
  local i
  "$build/lumadot-viewer" "$work/050324_140709_lumadot_dump.txt" &
  TOOL=$! # What tool_rests looks at.
  trap 'kill "$TOOL" 2>/dev/null || true; rm -rf "$work"' EXIT
  wait_until "the window is there" window_is '050324_140709_lumadot_dump.txt - LUMADOT Viewer'
  window=$FOUND
  activate "$window"
  xdotool mousemove 0 0 # No tooltips.
  for ((i = 0; i < 20; i++)); do
    press Right
  done
  press i
  picture viewer-mark-in
  press Page_Down o
  picture viewer-mark-out
  press ctrl+e
  wait_until "the dialog is there" window_is '^Export$'
  activate "$FOUND"
  picture viewer-export
  press Return
  wait_until "the GIF is there" test -s "$work/050324_140709_lumadot_dump.gif"
  cp "$work/050324_140709_lumadot_dump.gif" "$pictures/recording.gif"
  echo "docs/pictures/recording.gif"
}

if [[ ${LUMADOT_ON_DISPLAY:-} != yes ]]; then
  need_packages "${BUILD_PACKAGES[@]}" "${RUN_PACKAGES[@]}"
  cmake --preset release >build/configure.log
  cmake --build --preset release --target lumadot-viewer lumadotctl usb_standin
  LUMADOT_ON_DISPLAY=yes exec scripts/on_display.sh "$0" "$@"
fi

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export HOME=$work XDG_CONFIG_HOME=$work/config
mkdir -p "$pictures"
record
take_pictures
