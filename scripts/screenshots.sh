#!/usr/bin/env bash
# Takes pictures of the real windows on the simulated controller:
#   scripts/screenshots.sh         those of the user's guide, into docs/pictures
#   scripts/screenshots.sh looks   the tool, the viewer and the simulator at 100 and 200 %, light, dark and
#                                  in high contrast, into build/looks, for people to look at
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/lib/packages.sh
source scripts/lib/packages.sh
# shellcheck source=scripts/lib/session.sh
source scripts/lib/session.sh

build=$PWD/build/release
what=${1:-guide}

# The picture of a window with its frame, and of what lies before it: picture NAME [WINDOW]
picture() {
  wait_until "the tool rests" tool_rests
  picture_now "$@"
}

# The same, of a tool that never rests.
picture_now() {
  local window=${2:-$WINDOW} x y width height left right top bottom
  sleep 0.3 # The server has drawn by then what the tool has asked for; nothing tells.
  read -r x y width height < <(xwininfo -id "$window" | awk '
    /Absolute upper-left X/ { x = $NF } /Absolute upper-left Y/ { y = $NF }
    /Width/ { w = $NF } /Height/ { h = $NF } END { print x, y, w, h }')
  read -r left right top bottom < <(xprop -id "$window" _NET_FRAME_EXTENTS | sed 's/.*= //; s/,//g')
  import -silent -window root +repage -strip \
    -crop "$((width + left + right))x$((height + top + bottom))+$((x - left))+$((y - top))" \
    "$pictures/$1.png"
  echo "${pictures#"$PWD/"}/$1.png"
}

# dialog_is_there TITLE: leaves DIALOG. A message of the tool has no title.
dialog_is_there() {
  if [[ -n $1 ]]; then
    DIALOG=$(xdotool search --onlyvisible --name "^$1\$" 2>/dev/null | tail -n 1)
  else
    DIALOG=$(xdotool search --onlyvisible --class lumadot-tool 2>/dev/null | grep -vx "$WINDOW" | tail -n 1)
  fi
  [[ -n $DIALOG ]]
}

wait_for_dialog() {
  wait_until "the dialog \"$1\" is there" dialog_is_there "$1"
  activate "$DIALOG"
}

dialog_is_gone() { ! dialog_is_there "$1"; }

# The picture of a dialog alone, then the key that ends it: dialog_picture NAME TITLE KEY...
dialog_picture() {
  local name=$1 title=$2
  shift 2
  wait_for_dialog "$title"
  picture "$name" "$DIALOG"
  press "$@"
  wait_until "the dialog \"$title\" is gone" dialog_is_gone "$title"
}

# downs NUMBER: so many modes below the chosen one.
downs() {
  local i
  for ((i = 0; i < $1; i++)); do
    press Down
  done
}

start() {
  rm -rf "${work:?}"/*
  mkdir -p "$work/home" "$work/store"
  export HOME=$work/home XDG_CONFIG_HOME=$work/home/config LOG=$work/usb-log.txt
  export LUMADOT_SIM_STORE=$work/store LUMADOT_SIM_TIME=real LUMADOT_SIM_FRAME_MS=16
  xdotool mousemove 0 0 # No tooltips.
  start_tool "$build/lumadot-tool" "$build/simulated_bus"
}

guide() {
  start
  picture window
  press F10
  picture menu-file
  press Right
  picture menu-device
  press Escape Escape
  downs 1
  expect_frame "the input mode" "02 01 00"
  picture four-shades
  downs 5
  expect_frame "the input mode" "02 06 00"
  picture five-shades
  press Tab Tab Tab Down
  expect_frame "the palette preset" "03 01 00"
  picture preset
  press Tab Tab Tab space
  dialog_picture colour "" Escape
  choose_device_item 1
  dialog_picture loaded "Configuration Loaded" Return
  printf 'hello' >"$HOME/intro.txt"
  choose_device_item 4
  wait_for_dialog "Upload File"
  xdotool type "$HOME/intro.txt"
  press Return
  wait_until "the file dialog is gone" name_is_asked
  dialog_picture upload-name "Upload File" Return
  dialog_picture uploaded "" Return
  close_tool
  recording
}

recording() {
  start
  cd "$HOME"
  downs 1
  expect_frame "the input mode" "02 01 00"
  press Tab Tab space
  wait_for_dialog "Choose dump directory"
  press alt+Home
  wait_until "the home folder is taken" folder_is_taken
  wait_until "frames are recorded" frames_are_there
  cd "$OLDPWD"
  picture_now recording
  close_tool
}

folder_is_taken() {
  dialog_is_there "Choose dump directory" || return 0
  press alt+o # "Open" can be pressed once the folder has been read.
  return 1
}

frames_are_there() { [[ $(cat "$HOME"/*_lumadot_dump.txt 2>/dev/null | grep -c '^0x') -ge 10 ]]; }

# The second dialog of an upload has the caption of the first, but not its size.
name_is_asked() {
  local height
  dialog_is_there "Upload File" || return 1
  height=$(xwininfo -id "$DIALOG" 2>/dev/null | sed -n 's/.*Height: //p')
  ((${height:-1000} < 300))
}

# look NAME SCALE THEME
look() {
  export GDK_SCALE=$2 GTK_THEME=$3
  start
  downs 1
  picture "tool-$1"
  close_tool
  look_at_viewer "$1"
  look_at_simulator "$1"
}

look_at_viewer() {
  LD_LIBRARY_PATH=$build/simulated_bus LUMADOT_SIM_BOARD=standard "$build/lumadotctl" --quiet record \
    --mode 1 --seconds 1 "$work"
  "$build/lumadot-viewer" "$work"/*_lumadot_dump.txt &
  TOOL=$!
  wait_until "the viewer's window is there" window_of "$TOOL"
  activate "$WINDOW"
  wait_until "the recording is read" tool_rests
  press Page_Up Right Right i
  picture "viewer-$1"
  press ctrl+e
  wait_until "the dialog is there" dialog_is_there "Export"
  activate "$DIALOG"
  picture "viewer-export-$1" "$DIALOG"
  press Escape
  wait_until "the dialog is gone" dialog_is_gone "Export"
  close_tool
}

look_at_simulator() {
  "$build/lumadot-simulator" --port 0 >/dev/null &
  TOOL=$!
  show_simulator
  picture_now "simulator-$1"
  close_tool
}

looks() {
  local scale
  for scale in 1 2; do
    look "light-${scale}00" "$scale" Adwaita
    look "dark-${scale}00" "$scale" Adwaita:dark
    look "high-contrast-${scale}00" "$scale" HighContrast
  done
}

if [[ ${LUMADOT_ON_DISPLAY:-} != yes ]]; then
  need_packages "${BUILD_PACKAGES[@]}" "${RUN_PACKAGES[@]}"
  cmake --preset release >build/configure.log
  cmake --build --preset release --target lumadot-tool lumadot-viewer lumadot-simulator lumadotctl usb_standin
  LUMADOT_SCREEN=2560x1800x24 LUMADOT_ON_DISPLAY=yes exec scripts/on_display.sh "$0" "$@"
fi

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
case $what in
  guide) pictures=$PWD/docs/pictures ;;
  looks) pictures=$PWD/build/looks ;;
  *)
    echo "error: guide or looks, not \"$what\"" >&2
    exit 2
    ;;
esac
mkdir -p "$pictures"
"$what"
